#include "tools/district/make/plan.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/text.h"

namespace tools::district {

namespace {

/// One line of a file, cut into cells, that knows where it stands.
class Line {
public:
    Line(std::string_view file, int number, std::string_view text, char separator)
        : file_(file), number_(number) {
        while (true) {
            const auto end = text.find(separator);
            cells_.push_back(unquoted(base::trim(text.substr(0, end))));
            if (end == std::string_view::npos) {
                return;
            }
            text.remove_prefix(end + 1);
        }
    }

    [[nodiscard]] std::string_view text(std::size_t cell) const {
        if (cell >= cells_.size()) {
            wrong("has too few cells");
        }
        return cells_[cell];
    }

    [[nodiscard]] double number(std::size_t cell) const { return parsed<double>(text(cell)); }
    [[nodiscard]] int whole(std::size_t cell) const { return parsed<int>(text(cell)); }

    /// "510" is 5:10; in seconds.
    [[nodiscard]] std::int64_t clock(std::size_t cell) const {
        const int value = whole(cell);
        return std::int64_t{value / 100} * 3600 + std::int64_t{value % 100} * 60;
    }

    /// "03:19:11.888", in milliseconds.
    [[nodiscard]] std::int64_t milliseconds(std::size_t cell) const {
        const auto value = text(cell);
        if (value.size() < 8 || value[2] != ':' || value[5] != ':') {
            wrong(fmt::format("holds \"{}\" where a time of day is expected", value));
        }
        const auto hours = parsed<std::int64_t>(value.substr(0, 2));
        const auto minutes = parsed<std::int64_t>(value.substr(3, 2));
        return (hours * 60 + minutes) * 60'000 +
               std::llround(parsed<double>(value.substr(6)) * 1000);
    }

    [[noreturn]] void wrong(const std::string& what) const {
        throw base::RunTimeError(base::errors::TypeMismatch,
                                 fmt::format("{}, line {}: {}.", file_, number_, what));
    }

private:
    static std::string_view unquoted(std::string_view cell) {
        const bool quoted = cell.size() >= 2 && cell.front() == '"' && cell.back() == '"';
        return quoted ? cell.substr(1, cell.size() - 2) : cell;
    }

    template <class Number>
    [[nodiscard]] Number parsed(std::string_view cell) const {
        Number value{};
        const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), value);
        if (error != std::errc{} || end != cell.data() + cell.size()) {
            wrong(fmt::format("holds \"{}\" where a number is expected", cell));
        }
        return value;
    }

    std::string_view file_;
    int number_;
    std::vector<std::string_view> cells_;
};

/// Every line behind the header.
template <class Each>
void eachLine(std::string_view file, std::string_view text, char separator, const Each& each) {
    for (int number = 1; !text.empty(); ++number) {
        const auto end = text.find('\n');
        auto one = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (one.ends_with('\r')) {
            one.remove_suffix(1);
        }
        if (number > 1 && !base::trim(one).empty()) {
            each(Line(file, number, one, separator));
        }
    }
}

PlanLeg readLeg(const Line& line) {
    return {.bus = line.whole(0),
            .from = line.whole(1),
            .to = line.whole(2),
            .action = std::string(line.text(3)),
            .start = line.milliseconds(4),
            .end = line.milliseconds(5)};
}

/// Cuts each bus's legs at its dead-heads.
class RunCutter {
public:
    explicit RunCutter(Plan& plan) : plan_(plan) {}

    void add(const PlanLeg& leg, const Line& line) {
        if (leg.bus != bus_) {
            bus_ = leg.bus;
            ordinal_ = 0;
            open_ = false;
        }
        if (leg.action == "deadhead") {
            open_ = false;
        } else if (leg.action == "pickup") {
            pickup(leg, line);
        } else if (leg.action == "dropoff") {
            dropoff(leg, line);
        } else if (leg.action != "travel" && leg.action != "wait") {
            line.wrong(fmt::format("holds the unknown action \"{}\"", leg.action));
        }
    }

private:
    void pickup(const PlanLeg& leg, const Line& line) {
        if (std::ranges::find(plan_.stops, leg.from, &PlanStop::id) == plan_.stops.end()) {
            line.wrong(fmt::format("picks up at the unknown stop {}", leg.from));
        }
        if (!open_) {
            plan_.runs.push_back(
                {.bus = leg.bus, .ordinal = ++ordinal_, .pickups = {}, .school = {}});
            open_ = true;
        }
        plan_.runs.back().pickups.push_back({leg.from, leg.start});
    }

    void dropoff(const PlanLeg& leg, const Line& line) {
        if (!open_) {
            line.wrong("drops off where nobody was picked up");
        }
        if (std::ranges::find(plan_.schools, leg.from, &PlanSchool::id) == plan_.schools.end()) {
            line.wrong(fmt::format("drops off at the unknown school {}", leg.from));
        }
        plan_.runs.back().school = {leg.from, leg.start};
    }

    Plan& plan_;
    int bus_ = 0;
    int ordinal_ = 0;
    bool open_ = false;
};

template <class Items>
const auto& withId(const Items& items, int id) {
    const auto found =
        std::ranges::lower_bound(items, id, {}, [](const auto& one) { return one.id; });
    if (found == items.end() || found->id != id) {
        base::raise(base::errors::SubscriptOutOfRange);
    }
    return *found;
}

}  // namespace

const PlanSchool& Plan::school(int id) const { return withId(schools, id); }

const PlanStop& Plan::stop(int id) const { return withId(stops, id); }

Plan readPlan(const PlanFiles& files) {
    Plan plan;
    eachLine("Schools.txt", files.schools, '\t', [&](const Line& line) {
        plan.schools.push_back(
            {line.whole(0), {line.number(1), line.number(2)}, line.clock(3), line.clock(4)});
    });
    eachLine("Stops.txt", files.stops, '\t', [&](const Line& line) {
        plan.stops.push_back(
            {line.whole(0), {line.number(1), line.number(2)}, line.whole(3), line.whole(4)});
    });
    std::ranges::sort(plan.schools, {}, &PlanSchool::id);
    std::ranges::sort(plan.stops, {}, &PlanStop::id);
    RunCutter cutter(plan);
    eachLine("Plan.csv", files.plan, ',', [&](const Line& line) {
        plan.legs.push_back(readLeg(line));
        cutter.add(plan.legs.back(), line);
    });
    for (const PlanRun& run : plan.runs) {
        if (run.school.stop == 0) {
            throw base::RunTimeError(
                base::errors::TypeMismatch,
                fmt::format("Plan.csv: run {} of bus {} ends at no school.", run.ordinal, run.bus));
        }
    }
    return plan;
}

}  // namespace tools::district
