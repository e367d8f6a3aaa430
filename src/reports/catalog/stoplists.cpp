#include "reports/catalog/definition.h"

namespace reports {

namespace {

using enum CellKind;

constexpr auto StopRows =
    "SELECT S.*, S.ID AS ROWID, R.RUN, R.ROUTEID, R.SCHOOLNAME, R.PICKUP, R.RIDING, R.RUN & ', ' & "
    "R.SCHOOLNAME AS RUNTITLE, IIF(S.LEFTSIDE,'Left',Null) AS SIDE, 0 AS NO, 0 AS ONBUS FROM "
    "RPT_STOP AS S INNER JOIN RPT_RUN AS R ON S.RUNID=R.ID WHERE S.SESSION={0}";

/// Numbers a run's stops and counts who is on the bus when it leaves them.
class AlongTheRun {
public:
    void operator()(ado::Recordset& row, std::vector<base::Value>& cells);

private:
    std::int64_t run_ = 0, number_ = 0, onBus_ = 0;
};

void AlongTheRun::operator()(ado::Recordset& row, std::vector<base::Value>& cells) {
    const auto whole = [&](const char* field) {
        return row[field].isNull() ? 0 : row[field].asInteger();
    };
    const bool toSchool = row["PICKUP"].asBoolean();
    if (whole("RUNID") != run_) {
        run_ = whole("RUNID");
        number_ = 0;
        onBus_ = toSchool ? 0 : whole("RIDING");
    }
    onBus_ += toSchool ? whole("RIDERS") : -whole("RIDERS");
    cells.front() = ++number_;
    cells.back() = onBus_;
}

Definition stopList() {
    return {
        .report = {.id = "run-stops",
                   .title = "Run stop list",
                   .purpose = "Every stop of each run: place, time, side and riders",
                   .columns = {{"NO", "No.", Whole, 26},
                               strong({"TIME_AT_STOP", "Time", Time, 56}),
                               {"STOPID", "Stop", Text, 52},
                               strong(growing({"ADDRESS", "Address", Text, 130})),
                               growing({"DESCRIPTION", "Description", Text, 140}),
                               {"SIDE", "Side", Text, 30},
                               {"MINUTES", "Min", Decimal, 36},
                               added({"MILES", "Miles", Decimal, 38}),
                               added({"RIDERS", "Riders", Whole, 40}),
                               {"ONBUS", "On Bus", Whole, 42}},
                   .groups = {{"RUNID", "RUNTITLE", "stop"}},
                   .breaks = {PageBreak::None, PageBreak::Run, PageBreak::Route, PageBreak::School},
                   .foot = "Min and Miles lead from the stop before. The side is the right one "
                           "unless it says Left."},
        .ofOneRun = true,
        .fills = {fillStops, fillRidersHome},
        .rows = StopRows,
        .table = "RPT_STOP",
        .alias = "S",
        .order = "S.ID",
        .counts = "stop",
        .all = "All runs",
        .nothing = "There is no stop on these runs.",
        .change = [] { return AlongTheRun(); }};
}

Definition studentList() {
    return {
        .report = {.id = "run-students",
                   .title = "Run student list",
                   .purpose = "Who gets on where, with address, phone and special needs",
                   .columns = {{"TIME_AT_STOP", "Time", Time, 54},
                               growing({"STOPADDRESS", "Stop", Text, 100}),
                               strong(growing({"NAME", "Student", Text, 110})),
                               {"STUID", "Number", Text, 50},
                               growing({"ADDRESS", "Address", Text, 120}),
                               {"PHONE", "Phone", Text, 62},
                               {"DAYS", "Days", Days, 58},
                               condensed(growing({"NEEDS", "Special Needs", Text, 90}))},
                   .groups = {{"RUNID", "RUNTITLE", "student"}},
                   .breaks = {PageBreak::None, PageBreak::Run, PageBreak::Route, PageBreak::School},
                   .landscape = true,
                   .confidential = Confidential::Always,
                   .foot = "Students whose ride at the stop holds today."},
        .ofOneRun = true,
        .fills = {fillStops, fillStudents},
        .rows =
            "SELECT N.*, S.TIME_AT_STOP, S.ADDRESS AS STOPADDRESS, R.RUN, R.ROUTEID, "
            "R.SCHOOLNAME, R.RUN & ', ' & R.SCHOOLNAME AS RUNTITLE FROM (RPT_STUDENT AS N "
            "INNER JOIN RPT_STOP AS S ON N.STOPROW=S.ID) INNER JOIN RPT_RUN AS R ON "
            "N.RUNID=R.ID WHERE N.SESSION={0}",
        .table = "RPT_STUDENT",
        .alias = "N",
        .order = "N.ID",
        .sortsRows = true,
        .sortedBy = "N.RUNID",
        .counts = "student",
        .nothing = "No student rides on these runs today."};
}

}  // namespace

std::vector<Definition> stopLists() { return {stopList(), studentList()}; }

}  // namespace reports
