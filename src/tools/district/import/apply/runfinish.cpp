#include "tools/district/import/apply/runfinish.h"

#include <algorithm>

#include <fmt/format.h>

namespace tools::district {

namespace {

using data::DatabaseFile;

constexpr std::string_view Timed =
    " FROM STOP_TRIPTYPE AS t INNER JOIN STOP AS s ON s.INT_STOPID = t.INT_STOPID"
    " WHERE t.RUN = RUN.RUN AND s.STOPTYPE <> 'DIRECTIONAL'";

/// Runs a statement for each run of a set.
void forEachRun(store::Database& routing, const std::string& sql,
                const std::set<std::string>& runs) {
    if (runs.empty()) {
        return;
    }
    const auto statement = routing.prepare(sql);
    for (const std::string& run : runs) {
        statement->bind(0, run);
        statement->step();
        statement->reset();
    }
}

/// What the sources say themselves stays.
void totals(const Comparison& comparison, store::Database& routing) {
    const auto ordered = [](std::string_view order) {
        return fmt::format("(SELECT t.INT_STOPID{} ORDER BY t.RUNSEQ{} LIMIT 1)", Timed, order);
    };
    std::string set = fmt::format(
        "FirstStop = {}, LastStop = {}, \"total_stops\" = (SELECT COUNT(*){}),"
        " STARTTIME = COALESCE(STARTTIME, (SELECT MIN(t.TIME_AT_STOP){})),"
        " ENDTIME = COALESCE(ENDTIME, (SELECT MAX(t.TIME_AT_STOP){}))",
        ordered(""), ordered(" DESC"), Timed, Timed, Timed);
    if (!comparison.brings("RUN", "TOTAL_STUDENTS")) {
        set += fmt::format(", TOTAL_STUDENTS = (SELECT COALESCE(SUM(t.NUM_STUDENTS), 0){})", Timed);
    }
    forEachRun(routing, fmt::format("UPDATE RUN SET {} WHERE RUN = ?", set),
               comparison.runsWithOtherStops());
}

void ensureActivity(store::Database& work) {
    const auto known = work.prepare("SELECT 1 FROM RUNLOG_ACTIVITY_CODES WHERE ACTIVITYCODE = ?");
    known->bind(0, data::activity::Imported);
    if (!known->step()) {
        known->reset();
        const auto add = work.prepare(
            "INSERT INTO RUNLOG_ACTIVITY_CODES (ACTIVITYCODE, ACTIVITYDESC) VALUES (?, ?)");
        add->bind(0, data::activity::Imported);
        add->bind(1, "Run imported");
        add->step();
    }
}

void log(const std::set<std::string>& runs, const OpenDistrict& district,
         const ImportAudit& audit) {
    if (runs.empty()) {
        return;
    }
    ensureActivity(*district.at(DatabaseFile::RouteWrk));
    const auto row = district.at(DatabaseFile::Routing)
                         ->prepare(
                             "INSERT INTO RUNLOG (RUNID, LOGDATE, \"User\", ACTIVITYCODE,"
                             " Description) VALUES (?, ?, ?, ?, ?)");
    for (const std::string& run : runs) {
        int place = 0;
        for (const base::Value& value :
             {base::Value(run), base::Value(audit.now), base::Value(audit.user),
              base::Value(data::activity::Imported),
              base::Value("Run or its stops written by an import")}) {
            row->bind(place++, value);
        }
        row->step();
        row->reset();
    }
}

bool movesABus(const TableOutcome& table) {
    static const std::set<std::string_view> Tables = {"RUN", "ROUTE", "STOP", "STOP_TRIPTYPE"};
    return Tables.contains(table.table) && table.hasChanges();
}

}  // namespace

void finishRuns(Comparison& comparison, const ImportOutcome& outcome, const OpenDistrict& district,
                const ImportAudit& audit) {
    store::Database& routing = *district.at(DatabaseFile::Routing);
    for (const TableOutcome& table : outcome.tables) {
        if (table.table == "RUN" && table.removed > 0) {
            routing.execute(
                "UPDATE STOP_TRIPTYPE SET RUN = ' ', RUNSEQ = 0 WHERE RUN NOT IN ('', ' ')"
                " AND NOT EXISTS (SELECT 1 FROM RUN WHERE RUN.RUN = STOP_TRIPTYPE.RUN)");
        }
    }
    if (audit.isKept) {
        return;  // whole tables say all of this themselves
    }
    totals(comparison, routing);
    log(comparison.runsTouched(), district, audit);
    if (std::ranges::any_of(outcome.tables, movesABus)) {
        routing.execute(
            "UPDATE SYSTEM SET NEEDDEADHEADBUILD = TRUE WHERE NEEDDEADHEADBUILD = FALSE");
    }
}

}  // namespace tools::district
