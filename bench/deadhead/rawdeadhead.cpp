#include "rawdeadhead.h"

#include <fmt/format.h>

namespace bench {

namespace {

constexpr auto Ways =
    "SELECT * FROM DEADHEAD_CROSS WHERE (DEST_INT_STOPID = ?1 AND ENDPOINT_INT_STOPID = ?2) OR "
    "(DEST_INT_STOPID = ?2 AND ENDPOINT_INT_STOPID = ?1)";
constexpr auto AnyWay = "SELECT * FROM DEADHEAD_CROSS WHERE DEST_INT_STOPID = ?";
constexpr auto Clear =
    "UPDATE RUN SET DEADHEAD_BEFORE_TIME = 0, DEADHEAD_AFTER_TIME = 0, DEADHEAD_BEFORE_STARTTIME = "
    "NULL, DEADHEAD_AFTER_STARTTIME = NULL, DEADHEAD_MILES_BEFORE = NULL, DEADHEAD_MILES_AFTER = "
    "NULL, SHOW_BOTH_BEG = 0, SHOW_BOTH_END = 0 WHERE INT_ROUTEID = ?";
constexpr auto Reset =
    "UPDATE RUN SET DEADHEAD_BEFORE_TIME = -2, DEADHEAD_AFTER_TIME = -2, DEADHEAD_BEFORE_STARTTIME "
    "= NULL, DEADHEAD_AFTER_STARTTIME = NULL, SHOW_BOTH_BEG = 0, SHOW_BOTH_END = 0";
constexpr auto Runs =
    "SELECT rowid, FirstStop, LastStop, STARTTIME, ENDTIME, * FROM RUN WHERE INT_ROUTEID = ? ORDER "
    "BY STARTTIME, ENDTIME";
constexpr auto Write =
    "UPDATE RUN SET DEADHEAD_BEFORE_TIME = ?, DEADHEAD_AFTER_TIME = ?, DEADHEAD_MILES_BEFORE = ?, "
    "DEADHEAD_MILES_AFTER = ?, DEADHEAD_BEFORE_STARTTIME = ?, DEADHEAD_AFTER_STARTTIME = ?, "
    "SHOW_BOTH_BEG = ?, SHOW_BOTH_END = ? WHERE rowid = ?";

/// "1899-12-30 08:05:09".
int secondsAt(sqlite3_stmt* row, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
    const auto two = [text](int at) { return (text[at] - '0') * 10 + text[at + 1] - '0'; };
    return two(11) * 3600 + two(14) * 60 + two(17);
}

std::string textOf(int seconds) {
    return fmt::format("1899-12-30 {:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60,
                       seconds % 60);
}

}  // namespace

RawDeadHead::RawDeadHead(const std::string& routing, const std::string& cross)
    : routing_(routing), cross_(cross) {
    routing_.run("PRAGMA synchronous = NORMAL");
}

RawDeadHead::Travel RawDeadHead::travel(std::int64_t a, std::int64_t b) {
    ++legs_;
    Travel found;
    const auto first = [&found](sqlite3_stmt* row) {
        found = {sqlite3_column_double(row, 2), sqlite3_column_double(row, 3)};
    };
    cross_.run(Ways, {a, b}, first);
    if (found.minutes == -1) {
        cross_.run(AnyWay, {a}, first);
    }
    return found;
}

void RawDeadHead::calculate(std::int64_t route, std::int64_t garage) {
    routing_.run("BEGIN IMMEDIATE");
    double gap = 0;
    routing_.run("SELECT Back_To_Garage_Gap FROM District", {},
                 [&gap](sqlite3_stmt* row) { gap = sqlite3_column_double(row, 0); });
    routing_.run(Clear, {route});
    runs_.clear();
    routing_.run(Runs, {route}, [this](sqlite3_stmt* row) {
        runs_.push_back({sqlite3_column_int64(row, 0), sqlite3_column_int64(row, 1),
                         sqlite3_column_int64(row, 2), secondsAt(row, 3), secondsAt(row, 4)});
    });
    Travel after;
    bool home = true;
    for (std::size_t i = 0; i < runs_.size(); ++i) {
        const Run& run = runs_[i];
        const bool fromGarage = home;
        const Travel before = fromGarage ? travel(garage, run.first) : after;
        home = i + 1 == runs_.size() || (runs_[i + 1].start - run.end + 30) / 60 >= gap;
        after = travel(run.last, home ? garage : runs_[i + 1].first);
        routing_.run(Write, {before.minutes, after.minutes, before.miles, after.miles,
                             textOf(run.start - static_cast<int>(before.minutes * 60)),
                             textOf(run.end + static_cast<int>(after.minutes * 60)),
                             std::int64_t{home}, std::int64_t{fromGarage && i > 0}, run.row});
    }
    routing_.run("UPDATE ROUTE SET DEADERROR = 0 WHERE INT_ROUTEID = ?", {route});
    routing_.run("COMMIT");
}

std::int64_t RawDeadHead::calculate() {
    legs_ = 0;
    routing_.run("BEGIN IMMEDIATE");
    routing_.run(Reset);
    routing_.run("UPDATE ROUTE SET DEADERROR = 1");
    routing_.run("COMMIT");
    std::vector<std::pair<std::int64_t, std::int64_t>> routes;
    routing_.run("SELECT INT_ROUTEID, GARAGE_STOPID, * FROM ROUTE ORDER BY ROUTEID", {},
                 [&routes](sqlite3_stmt* row) {
                     routes.emplace_back(sqlite3_column_int64(row, 0),
                                         sqlite3_column_int64(row, 1));
                 });
    for (const auto& [route, garage] : routes) {
        calculate(route, garage);
    }
    routing_.run("UPDATE SYSTEM SET LASTDEADHEADBUILD = '2026-01-31 08:05:09'");
    routing_.run("PRAGMA wal_checkpoint(TRUNCATE)");
    return legs_;
}

}  // namespace bench
