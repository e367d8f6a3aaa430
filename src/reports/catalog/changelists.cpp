#include "reports/catalog/definition.h"

namespace reports {

namespace {

using enum CellKind;

Definition changedRuns() {
    return {
        .report = {.id = "changed-runs",
                   .title = "Changed runs",
                   .purpose = "Who changed which run, and when: print only those anew",
                   .columns = {{"NOTED", "When", DateTime, 104},
                               strong({"WHO", "By", Text, 70}),
                               strong({"KIND", "What", Text, 80}),
                               {"STOPID", "Stop", Text, 54},
                               growing({"NOTE", "Description", Text, 240})},
                   .groups = {{"RUNID", "RUNTITLE", "change"}},
                   .breaks = {PageBreak::None, PageBreak::Run, PageBreak::Route, PageBreak::School},
                   .foot = "Without a date, the changes of the last 30 days."},
        .fills = {fillChanges},
        .rows =
            "SELECT C.*, R.RUN, R.ROUTEID, R.SCHOOLNAME, R.RUN & ', ' & R.SCHOOLNAME AS "
            "RUNTITLE FROM RPT_NOTE AS C INNER JOIN RPT_RUN AS R ON C.RUNID=R.ID WHERE "
            "C.SESSION={0}",
        .table = "RPT_NOTE",
        .alias = "C",
        .order = "C.RUNID, C.NOTED, C.ID",
        .sortsRows = true,
        .sortedBy = "C.RUNID",
        .counts = "change",
        .nothing = "None of these runs was changed."};
}

}  // namespace

std::vector<Definition> changeLists() { return {changedRuns()}; }

}  // namespace reports
