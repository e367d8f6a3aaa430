#include "reports/catalog/definition.h"

namespace reports {

namespace {

using enum CellKind;

constexpr auto Runs =
    "SELECT R.*, IIF(R.SEATS>0,R.RIDERS*100/R.SEATS,Null) AS LOADED FROM RPT_RUN AS R WHERE "
    "R.ID BETWEEN {1} AND {2}";

Column load() { return ratio({"LOADED", "Load %", Load, 66}, "RIDERS", "SEATS"); }

std::vector<Column> longColumns() {
    return {
        strong({"RUN", "Run", Text, 50}),     growing({"PLACE", "From", Text, 90}),
        {"DAYS", "Days", Days, 60},           strong({"STARTTIME", "Start", Time, 48}),
        {"ENDTIME", "End", Time, 54},         {"BELLTIME", "Bell", Time, 46},
        added({"MINUTES", "Min", Whole, 36}), added({"MILES", "Miles", Decimal, 42}),
        added({"STOPS", "Stops", Whole, 38}), added({"RIDERS", "Riders", Whole, 42}),
        added({"SEATS", "Seats", Whole, 40}), load(),
        strong({"VEHICLE", "Bus", Text, 34}), condensed(growing({"DRIVER", "Driver", Text, 80}))};
}

Definition longList() {
    return {
        .report = {.id = "run-list",
                   .title = "Run list",
                   .purpose = "Compare the runs of each school: times, miles, riders and load",
                   .columns = longColumns(),
                   .groups = {{"SCHOOLNAME", "SCHOOLNAME", "run"}},
                   .breaks = {PageBreak::None, PageBreak::School},
                   .landscape = true,
                   .foot = "Load is riders over the seats of the bus at the run's capacity level."},
        .groupOrder = "SCHOOLNAME",
        .runOrder = "STARTTIME, RUN",
        .rows = Runs,
        .table = "RPT_RUN",
        .alias = "R",
        .order = "R.ID",
        .all = "All schools"};
}

Definition byRoute() {
    Definition definition = longList();
    definition.report.id = "run-list-by-route";
    definition.report.title = "Run list by route";
    definition.report.purpose = "Follow each bus through its day";
    definition.report.groups = {{"ROUTEID", "ROUTETITLE", "run"}};
    definition.report.breaks = {PageBreak::None, PageBreak::Route};
    definition.groupOrder = "ROUTEID";
    definition.rows =
        "SELECT R.*, IIF(R.SEATS>0,R.RIDERS*100/R.SEATS,Null) AS LOADED, "
        "IIF(NZ(R.ROUTEID,' ')=' ','On no route','Route ' & R.ROUTEID) AS ROUTETITLE FROM RPT_RUN "
        "AS R WHERE R.ID BETWEEN {1} AND {2}";
    definition.all = "All routes";
    return definition;
}

Definition shortList() {
    return {.report = {.id = "run-list-short",
                       .title = "Run list, short",
                       .purpose = "Find a run, its times and its bus on one line",
                       .columns = {strong({"RUN", "Run", Text, 54}),
                                   growing({"DESCRIPTION", "Description", Text, 170}),
                                   condensed(growing({"SCHOOLNAME", "School", Text, 110})),
                                   {"STARTTIME", "Start", Time, 54},
                                   {"ENDTIME", "End", Time, 54},
                                   added({"STOPS", "Stops", Whole, 36}),
                                   added({"RIDERS", "Riders", Whole, 40}),
                                   strong({"VEHICLE", "Bus", Text, 40})}},
            .rows = Runs,
            .table = "RPT_RUN",
            .alias = "R",
            .order = "R.ID"};
}

}  // namespace

std::vector<Definition> runLists() { return {longList(), byRoute(), shortList()}; }

}  // namespace reports
