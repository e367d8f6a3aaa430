#include "reports/catalog/definition.h"

namespace reports {

namespace {

using enum CellKind;

constexpr auto Rows =
    "SELECT W.*, R.RUN, R.ROUTEID, R.SCHOOLNAME, R.VEHICLE, R.RUN & ', ' & R.SCHOOLNAME AS "
    "RUNTITLE, SWITCH(W.KIND='PASSENGERS','More passengers than seats',W.KIND='RIGHTSIDE',"
    "'Right-hand side stops served from the left',W.KIND='EARLY BELL','Leaves before the bell',"
    "W.KIND='LATE BELL','Arrives after the bell',W.KIND='RIDETIME','Rides longer than "
    "allowed',W.KIND='SPECIAL','Special needs the vehicle cannot carry',W.KIND='CONFLICTING TIME',"
    "'Stops with overlapping times',True,W.KIND) AS RULE FROM RPT_NOTE AS W INNER JOIN RPT_RUN AS "
    "R ON W.RUNID=R.ID WHERE W.SESSION={0}";

Definition byRule() {
    return {.report = {.id = "warnings-by-rule",
                       .title = "Warnings by rule",
                       .purpose = "Which rules the found runs break, and which runs break them",
                       .columns = {strong({"RUN", "Run", Text, 60}),
                                   condensed({"SCHOOLNAME", "School", Text, 90}),
                                   {"VEHICLE", "Bus", Text, 40},
                                   {"NOTED", "Checked", DateTime, 100},
                                   growing({"NOTE", "Warning", Text, 300})},
                       .groups = {{"KIND", "RULE", "warning"}},
                       .foot = "As the last validation of each run left them."},
            .fills = {fillWarnings},
            .rows = Rows,
            .table = "RPT_NOTE",
            .alias = "W",
            .order = "W.KIND, W.RUNID, W.ID",
            .sortsRows = true,
            .sortedBy = "W.KIND",
            .counts = "warning",
            .nothing = "The last validation left no warning."};
}

Definition byRun() {
    Definition definition = byRule();
    definition.report.id = "warnings-by-run";
    definition.report.title = "Warnings by run";
    definition.report.purpose = "What is to be mended on each run";
    definition.report.columns = {strong({"RULE", "Rule", Text, 170}),
                                 {"NOTED", "Checked", DateTime, 100},
                                 growing({"NOTE", "Warning", Text, 280})};
    definition.report.groups = {{"RUNID", "RUNTITLE", "warning"}};
    definition.report.breaks = {PageBreak::None, PageBreak::Run, PageBreak::Route,
                                PageBreak::School};
    definition.ofOneRun = true;
    definition.sortedBy = "W.RUNID";
    definition.order = "W.RUNID, W.KIND, W.ID";
    return definition;
}

}  // namespace

std::vector<Definition> warningLists() { return {byRule(), byRun()}; }

}  // namespace reports
