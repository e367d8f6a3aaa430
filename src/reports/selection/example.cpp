#include "reports/selection/example.h"

#include <array>
#include <utility>

#include <fmt/format.h>

namespace reports {

namespace {

constexpr int Groups = 5;
constexpr int RowsInGroup = 8;

constexpr std::array Streets{"65th Street", "17th Avenue", "Main Street", "81st Street",
                             "Oak Lane",    "Hill Road",   "7th Avenue"};
constexpr std::array Names{"Garza, Grace", "Farrell, Chloe", "Novak, Mateo", "Ito, Violet",
                           "Reyes, Kai"};
constexpr std::array Schools{"Clear Brook Middle School", "East Valley High School",
                             "Mill Lane Elementary School", "North Fork Elementary School",
                             "West Ridge High School"};

template <class List>
const char* of(const List& list, int number) {
    return list[static_cast<std::size_t>(number) % list.size()];
}

base::Value textOf(const Column& column, int row) {
    if (column.condensed) {
        return of(Names, row);
    }
    return column.strong ? base::Value(fmt::format("{}-{}", 101 + row, 1 + row % 2))
                         : base::Value(of(Streets, row));
}

base::Value valueOf(const Column& column, int row) {
    switch (column.kind) {
        case CellKind::Text:
            return textOf(column, row);
        case CellKind::Whole:
            return 40 + row * 7 % 27;
        case CellKind::Decimal:
        case CellKind::Money:
            return 10.5 + row % 9;
        case CellKind::Time:
            return base::Date::timeOfDay(7, 5 + row * 3 % 50);
        case CellKind::Date:
        case CellKind::DateTime:
            return base::Date::of(2026, 9, 1 + row % 28);
        case CellKind::Days:
            return "MTWTF";
        case CellKind::Load:
            return 85 + row * 5 % 33;
    }
    return {};
}

std::vector<Item> listOf(const Report& report) {
    std::vector<Item> items;
    const auto total = [&](std::optional<std::size_t> level, const std::string& title) {
        Totals totals{level, title, {}};
        for (const Column& column : report.columns) {
            totals.cells.push_back(column.total == Total::None ? base::Value()
                                                               : valueOf(column, 3));
        }
        items.emplace_back(std::move(totals));
    };
    for (int group = 0; group < Groups; ++group) {
        if (!report.groups.empty()) {
            items.emplace_back(GroupHead{0, of(Schools, group), "8 runs", false});
        }
        for (int row = 0; row < RowsInGroup; ++row) {
            Row made;
            for (const Column& column : report.columns) {
                made.cells.push_back(valueOf(column, group * RowsInGroup + row));
            }
            items.emplace_back(std::move(made));
        }
        if (!report.groups.empty() && report.groups.front().totals) {
            total(0, fmt::format("{}, total", of(Schools, group)));
        }
    }
    return items;
}

/// A stop and the way to the next one.
void addStop(std::vector<Item>& items, int number) {
    SheetStop stop;
    stop.number = number;
    stop.time = base::Date::timeOfDay(5, 23 + number * 5);
    stop.place = fmt::format("{} {}", 960 + number * 34, of(Streets, number));
    stop.corner = fmt::format("at {}", of(Streets, number + 3));
    stop.leftSide = number == 3;
    stop.students = 1 + number * 3;
    stop.onBus = number * 10;
    stop.id = fmt::format("{}", 100100 + number);
    items.emplace_back(std::move(stop));
    items.emplace_back(
        SheetWay{SheetWay::Sign::Straight,
                 {{"Follow ", false}, {of(Streets, number), true}, {", go west", false}},
                 1.6});
    items.emplace_back(
        SheetWay{number % 2 == 0 ? SheetWay::Sign::Left : SheetWay::Sign::Right,
                 {{"Turn onto ", false}, {of(Streets, number + 1), true}, {", go south", false}},
                 0.6});
}

std::vector<Item> sheet() {
    std::vector<Item> items;
    items.emplace_back(SheetHead{"107-1",
                                 "West Ridge High School",
                                 "Morning to school · Monday to Friday",
                                 "Bus 107",
                                 "Route 107",
                                 {{"Driver", "Grace Garza"},
                                  {"First stop", "5:23 AM"},
                                  {"At school", "6:07 AM"},
                                  {"Bell", "6:40 AM"},
                                  {"Students", "64"},
                                  {"Miles", "13.1"}}});
    constexpr int Stops = 6;
    for (int stop = 1; stop <= Stops; ++stop) {
        addStop(items, stop);
    }
    SheetStop school;
    school.kind = SheetStop::Kind::School;
    school.time = base::Date::timeOfDay(6, 7);
    school.place = "West Ridge High School";
    school.corner = "120 91st Street";
    school.students = -64;
    school.onBus = 0;
    items.emplace_back(std::move(school));
    return items;
}

class Example : public Content {
public:
    Example(const Report& report, const Options& options)
        : report_(report),
          options_(options),
          items_(report.form == Form::Sheet ? sheet() : listOf(report)) {
        heading_ = {.title = report.title,
                    .selection = "Morning runs",
                    .district = "Four Towns Unified School District",
                    .printed = "Sep 15, 2026 7:30 AM",
                    .user = "PLANNER",
                    .foot = report.foot,
                    .confidential = report.confidential == Confidential::Always};
    }

    [[nodiscard]] const Report& report() const override { return report_; }
    [[nodiscard]] const Options& options() const override { return options_; }
    [[nodiscard]] const Heading& heading() const override { return heading_; }
    [[nodiscard]] std::size_t size() const override { return items_.size(); }
    std::optional<Item> next() override {
        return next_ < items_.size() ? std::optional(items_[next_++]) : std::nullopt;
    }

private:
    const Report& report_;
    Options options_;
    Heading heading_;
    std::vector<Item> items_;
    std::size_t next_ = 0;
};

}  // namespace

std::unique_ptr<Content> exampleOf(const Report& report, const Options& options) {
    return std::make_unique<Example>(report, options);
}

}  // namespace reports
