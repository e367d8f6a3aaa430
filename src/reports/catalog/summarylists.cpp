#include <string>

#include <fmt/format.h>

#include "reports/catalog/definition.h"

namespace reports {

namespace {

using enum CellKind;

/// What the runs of a summary have in common; a new summary is a line more.
struct Summary {
    const char* id;
    const char* title;
    const char* caption;
    const char* field;  ///< of RPT_RUN
    const char* none;   ///< of the runs without one, where the field itself is blank
    const char* counts;
};

constexpr Summary Summaries[]{
    {"summary-school", "Summary by school", "School", "SCHOOLNAME", "No school", "school"},
    {"summary-school-type", "Summary by school type", "School Type", "SCHOOLTYPENAME",
     "No school type", "school type"},
    {"summary-trip-type", "Summary by trip type", "Trip Type", "TRIPTYPENAME", "No trip type",
     "trip type"},
    {"summary-family", "Summary by run family", "Run Family", "RUNFAMILYNAME", "No run family",
     "run family"},
    {"summary-location", "Summary by location", "Location", "LOCNAME", "No location", "location"},
    {"summary-vehicle", "Summary by vehicle", "Vehicle", "VEHICLE", "No vehicle", "vehicle"}};

std::string rowsOf(const Summary& summary) {
    return fmt::format(
               "SELECT IIF(NZ(R.{0},' ')=' ','{1}',R.{0}) AS NAME, IIF(NZ(R.{0},' ') IN (' "
               "','{1}'),"
               "1,0) AS HASNONE, COUNT(*) AS RUNS, SUM(R.RIDERS) AS RIDERS, SUM(R.STOPS) AS STOPS, "
               "SUM(R.HOURS) AS HOURS, SUM(R.MILES) AS MILES, SUM(R.EMPTYMILES) AS EMPTYMILES, "
               "SUM(R.SEATS) AS SEATS, SUM(IIF(R.SEATS Is Null,Null,R.RIDERS)) AS SEATED, "
               "IIF(SUM(R.SEATS)>0,SUM(IIF(R.SEATS Is Null,Null,R.RIDERS))*100/SUM(R.SEATS),Null) "
               "AS LOADED, "
               "SUM(R.COST) AS COST FROM RPT_RUN AS R WHERE R.ID BETWEEN ",
               summary.field, summary.none) +
           "{1} AND {2} GROUP BY " + fmt::format("R.{}", summary.field);
}

Definition summaryBy(const Summary& summary) {
    return {.report = {.id = summary.id,
                       .title = summary.title,
                       .purpose = "Runs, riders, hours, miles, load and cost added up",
                       .columns = {strong(growing({"NAME", summary.caption, Text, 150})),
                                   added({"RUNS", "Runs", Whole, 40}),
                                   added({"RIDERS", "Riders", Whole, 48}),
                                   added({"STOPS", "Stops", Whole, 44}),
                                   added({"HOURS", "Hours", Decimal, 48}),
                                   added({"MILES", "Miles", Decimal, 54}),
                                   added({"EMPTYMILES", "Empty Miles", Decimal, 64}),
                                   added({"SEATS", "Seats", Whole, 48}),
                                   ratio({"LOADED", "Load %", Load, 66}, "RIDERS", "SEATS"),
                                   added({"COST", "Cost", Money, 66})},
                       .landscape = true,
                       .foot = "Hours and Miles are with riders. An empty trip between two of "
                               "these runs counts once. Load is riders over seats. Cost is all "
                               "miles times the district's cost of a mile."},
            .fills = {fillCosts},
            .rows = rowsOf(summary),
            .order = "2, 1",
            .sortsRows = true,
            .counts = summary.counts,
            .all = "All",
            .divided = "SEATED"};
}

}  // namespace

std::vector<Definition> summaryLists() {
    std::vector<Definition> all;
    for (const Summary& summary : Summaries) {
        all.push_back(summaryBy(summary));
    }
    return all;
}

}  // namespace reports
