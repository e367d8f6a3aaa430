#include <algorithm>
#include <functional>
#include <map>
#include <utility>

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "platform/base/text.h"
#include "reports/catalog/reading.h"
#include "reports/catalog/sheetwords.h"

namespace reports {

namespace {

constexpr auto Sheets = "SELECT R.* FROM RPT_RUN AS R WHERE R.ID BETWEEN {1} AND {2}";
constexpr auto AllStops = "SELECT S.* FROM RPT_STOP AS S WHERE S.SESSION={0} ORDER BY S.ID";
constexpr auto AllLines = "SELECT L.* FROM RPT_LINE AS L WHERE L.SESSION={0} ORDER BY L.ID";
constexpr auto AllNames = "SELECT N.* FROM RPT_STUDENT AS N WHERE N.SESSION={0} ORDER BY N.ID";

struct SheetRow {
    std::int64_t id = 0;  ///< RPT_STOP.ID
    std::int64_t stop = 0;
    std::string type = {};
    SheetStop shown = {};

    [[nodiscard]] bool is(std::string_view wanted) const {
        return base::equalsNoCase(type, wanted);
    }
};

std::string orDash(const std::string& text) { return text.empty() ? "–" : text; }

int wholeOf(const ado::Field& field) {
    return field.isNull() ? 0 : static_cast<int>(field.asInteger());
}

/// A school is called by its name, any other stop by its address.
void name(SheetStop& shown, bool isSchool, const std::string& address,
          const std::string& description) {
    const std::string& first = isSchool ? description : address;
    const std::string& second = isSchool ? address : description;
    shown.place = first.empty() ? second : first;
    if (!first.empty()) {
        shown.corner = isSchool ? second : cornerOf(second, first);
    }
}

/// A stop by itself, without its number and who gets on or off.
SheetRow rowOf(ado::Recordset& rows) {
    SheetRow row{.id = rows["ID"].asInteger(),
                 .stop = rows["INT_STOPID"].asInteger(),
                 .type = wordsOf(rows["STOPTYPE"])};
    const bool isSchool = row.is(data::stoptype::School);
    row.shown.kind = isSchool ? SheetStop::Kind::School : SheetStop::Kind::Stop;
    row.shown.time = rows["TIME_AT_STOP"].Value();
    row.shown.id = wordsOf(rows["STOPID"]);
    row.shown.note = wordsOf(rows["COMMENT"]);
    row.shown.leftSide = !isSchool && rows["LEFTSIDE"].asBoolean();
    name(row.shown, isSchool, wordsOf(rows["ADDRESS"]), wordsOf(rows["DESCRIPTION"]));
    return row;
}

/// The directions of a run: for each stop the lines that lead to it, in the order of its visits.
class WayTo {
public:
    void add(std::int64_t stop) { ways_[stop].push_back(std::exchange(pending_, {})); }
    void add(SheetWay way) { pending_.push_back(std::move(way)); }
    [[nodiscard]] std::vector<SheetWay> take(std::int64_t stop);
    [[nodiscard]] bool empty() const { return ways_.empty(); }

private:
    std::vector<SheetWay> pending_;
    std::map<std::int64_t, std::deque<std::vector<SheetWay>>> ways_;
};

std::vector<SheetWay> WayTo::take(std::int64_t stop) {
    auto& visits = ways_[stop];
    if (visits.empty()) {
        return {};
    }
    auto lines = std::move(visits.front());
    visits.pop_front();
    return lines;
}

class SheetContent final : public StoredContent {
public:
    explicit SheetContent(const Stored& stored);

protected:
    bool readOn() override;

private:
    /// The rows that belong to the run; all of them stand in the order of the runs.
    void forEach(ado::Recordset& rows, const std::function<void()>& row) const;
    [[nodiscard]] std::vector<SheetRow> readStops() const;
    [[nodiscard]] WayTo readWays() const;
    void readNames(std::vector<SheetRow>& stops) const;
    void countRiders(std::vector<SheetRow>& stops) const;
    [[nodiscard]] std::vector<Fact> facts() const;
    void addHead();
    void addStops();
    void addRemarks();
    void addRemark(std::vector<SheetWay::Piece> pieces, bool quiet = false);
    void addBefore();
    void addAfter();
    void addMap();
    void addEmpty(std::string place, const char* time, const char* miles);
    [[nodiscard]] std::string text(const char* field) const { return wordsOf(run(field)); }
    [[nodiscard]] bool flag(const char* field) const {
        return !run(field).isNull() && run(field).asBoolean();
    }
    [[nodiscard]] std::string shown(CellKind kind, const char* field) const {
        return cellText(kind, run(field).Value());
    }
    [[nodiscard]] const ado::Field& run(const char* field) const { return runs_.Fields(field); }

    mutable ado::Recordset runs_, stops_, lines_, names_;
    bool hasDirections_ = false;
};

SheetContent::SheetContent(const Stored& stored) : StoredContent(stored) {
    size_ = static_cast<std::size_t>(stored.last - stored.first + 1);
    open(runs_, fmt::format("{} ORDER BY R.ID", Sheets));
    open(stops_, AllStops);
    open(lines_, AllLines);
    open(names_, AllNames);
}

void SheetContent::forEach(ado::Recordset& rows, const std::function<void()>& row) const {
    const auto id = run("ID").asInteger();
    for (; !rows.Eof() && rows["RUNID"].asInteger() <= id; rows.MoveNext()) {
        if (rows["RUNID"].asInteger() == id) {
            row();
        }
    }
}

bool SheetContent::readOn() {
    if (runs_.Eof()) {
        return false;
    }
    addHead();
    addBefore();
    addStops();
    addAfter();
    addRemarks();
    addMap();
    runs_.MoveNext();
    return true;
}

std::vector<Fact> SheetContent::facts() const {
    const auto time = [this](const char* field) { return orDash(shown(CellKind::Time, field)); };
    const auto person = [this](const char* field) { return orDash(calledName(text(field))); };
    std::vector<Fact> all{{"DRIVER", person("DRIVER")}, {"AIDE", person("AIDE")}};
    if (flag("PICKUP")) {
        all.push_back({"FIRST STOP", time("STARTTIME")});
        all.push_back({"AT SCHOOL", time("ENDTIME")});
        all.push_back({"BELL", time("BELLTIME")});
    } else {
        all.push_back({"BELL", time("BELLTIME")});
        all.push_back({"FROM SCHOOL", time("STARTTIME")});
        all.push_back({"LAST STOP", time("ENDTIME")});
    }
    all.push_back({"STUDENTS", shown(CellKind::Whole, "RIDING")});
    all.push_back({"MILES", orDash(shown(CellKind::Decimal, "MILES"))});
    return all;
}

void SheetContent::addHead() {
    const auto bus = text("VEHICLE");
    const auto route = text("ROUTEID");
    waiting_.emplace_back(
        SheetHead{.plate = text("RUN"),
                  .title = text("SCHOOLNAME"),
                  .subtitle = fmt::format("{} · {}", text("TRIPTYPENAME"), weekdays(text("DAYS"))),
                  .right = bus.empty() ? "No bus" : "Bus " + bus,
                  .rightSub = route.empty() ? "On no route" : "Route " + route,
                  .facts = facts()});
}

std::vector<SheetRow> SheetContent::readStops() const {
    std::vector<SheetRow> stops;
    const bool toSchool = flag("PICKUP");
    int number = 0;
    forEach(stops_, [&] {
        SheetRow& row = stops.emplace_back(rowOf(stops_));
        if (row.is(data::stoptype::Regular)) {
            const int riders = wholeOf(stops_["RIDERS"]);
            row.shown.students = toSchool ? riders : -riders;
        }
        const bool isNumbered = !row.is(data::stoptype::School) && !row.is(data::stoptype::Garage);
        row.shown.number = isNumbered ? ++number : 0;
    });
    return stops;
}

/// Along a run to school they get on and leave the bus at its last school; on a run home they are
/// on it from its first one.
void SheetContent::countRiders(std::vector<SheetRow>& stops) const {
    const auto isSchool = [](const SheetRow& row) { return row.is(data::stoptype::School); };
    const bool toSchool = flag("PICKUP");
    const int all = wholeOf(run("RIDING"));
    const auto first = std::ranges::find_if(stops, isSchool);
    const auto last = std::find_if(stops.rbegin(), stops.rend(), isSchool);
    if (first != stops.end()) {
        (toSchool ? *last : *first).shown.students = toSchool ? -all : all;
    }
    int onBus = toSchool || first != stops.end() ? 0 : all;
    for (SheetRow& row : stops) {
        onBus += row.shown.students.value_or(0);
        row.shown.onBus = onBus;
    }
}

WayTo SheetContent::readWays() const {
    WayTo ways;
    forEach(lines_, [&] {
        const auto type = wordsOf(lines_["LINETYPE"]);
        if (base::equalsNoCase(type, "Stop")) {
            ways.add(wholeOf(lines_["INT_STOPID"]));
        } else if (!base::equalsNoCase(type, "Start") && !base::equalsNoCase(type, "Total")) {
            ways.add(wayOf(type, wordsOf(lines_["LINETEXT1"]), wordsOf(lines_["LINETEXT2"])));
        }
    });
    return ways;
}

void SheetContent::readNames(std::vector<SheetRow>& stops) const {
    forEach(names_, [&] {
        const auto stop = std::ranges::find(stops, names_["STOPROW"].asInteger(), &SheetRow::id);
        if (stop != stops.end()) {
            const auto needs = wordsOf(names_["NEEDS"]);
            stop->shown.names.push_back(wordsOf(names_["NAME"]) +
                                        (needs.empty() ? "" : fmt::format(" ({})", needs)));
        }
    });
}

void SheetContent::addStops() {
    auto stops = readStops();
    countRiders(stops);
    if (stored_.options.names) {
        readNames(stops);
    }
    auto ways = readWays();
    hasDirections_ = !ways.empty();
    for (SheetRow& row : stops) {
        for (SheetWay& way : ways.take(row.stop)) {
            waiting_.emplace_back(std::move(way));
        }
        waiting_.emplace_back(std::move(row.shown));
    }
    if (stops.empty()) {
        addRemark({{"There are no stops on this run."}});
    }
}

void SheetContent::addEmpty(std::string place, const char* time, const char* miles) {
    SheetStop leg{.kind = SheetStop::Kind::Empty, .place = std::move(place)};
    leg.time = run(time).Value();
    leg.miles = run(miles).Value();
    waiting_.emplace_back(std::move(leg));
}

/// Out of the garage for the first run of the route, and where the bus was there since the last.
void SheetContent::addBefore() {
    if (run("BEFOREMINUTES").isNull()) {
        return;
    }
    const auto before = text("PREVRUN");
    const bool fromGarage = before.empty() || flag("FROMGARAGE");
    const auto garage = text("GARAGE");
    addEmpty(fromGarage ? fmt::format("Leave the bus garage{}; empty to the first stop",
                                      garage.empty() ? "" : ", " + garage)
                        : fmt::format("Empty from the end of run {} to the first stop", before),
             "BEFORESTART", "BEFOREMILES");
}

/// The way to the next run stands on that run's sheet.
void SheetContent::addAfter() {
    const bool toGarage = text("NEXTRUN").empty() || flag("TOGARAGE");
    if (run("AFTERMINUTES").isNull() || !toGarage) {
        return;
    }
    const auto garage = text("GARAGE");
    addEmpty(fmt::format("Empty back to the bus garage{}", garage.empty() ? "" : ", " + garage),
             "ENDTIME", "AFTERMILES");
}

void SheetContent::addRemark(std::vector<SheetWay::Piece> pieces, bool quiet) {
    waiting_.emplace_back(SheetRemark{std::move(pieces), quiet});
}

void SheetContent::addRemarks() {
    if (const auto next = text("BUSRUN"); !next.empty()) {
        const auto start = shown(CellKind::Time, "BUSSTART");
        addRemark({{"Next: run "},
                   {next, true},
                   {fmt::format(", {}, {} {}", text("BUSSCHOOL"),
                                flag("BUSPICKUP") ? "first stop at" : "from school at", start)}});
    }
    if (const auto comment = text("COMMENT"); !comment.empty()) {
        addRemark({{comment}});
    }
    if (!hasDirections_) {
        addRemark({{"There are no directions: the map has not solved this run yet."}});
    } else if (flag("REGENERATE")) {
        addRemark({{"The run was changed after these directions were made.", true}});
    }
    addRemark({{"Pick up on the right-hand side unless the stop is marked LEFT SIDE."}}, true);
}

void SheetContent::addMap() {
    if (stored_.maps) {
        waiting_.emplace_back(
            SheetMap{[find = stored_.maps, id = text("RUN")] { return find(id); }});
    }
}

}  // namespace

std::unique_ptr<Content> sheetContent(const Stored& stored) {
    return std::make_unique<SheetContent>(stored);
}

}  // namespace reports
