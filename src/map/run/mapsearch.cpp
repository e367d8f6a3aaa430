#include "map/run/mapsearch.h"

#include <algorithm>
#include <functional>
#include <set>

#include <fmt/format.h>

#include "map/shown/fields.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/text.h"

namespace map {

namespace {

using Kind = SearchHit::Kind;

/// What a LIKE takes as itself.
std::string literally(std::string_view text) {
    std::string pattern;
    for (const char c : ado::escaped(text)) {
        pattern += c == '%' || c == '_' || c == '[' ? std::string{'[', c, ']'} : std::string(1, c);
    }
    return pattern;
}

/// Any of the columns begins with it, or holds it.
std::string anyLike(std::initializer_list<std::string_view> columns, const std::string& pattern) {
    std::string condition;
    for (const auto column : columns) {
        condition +=
            fmt::format("{}{} LIKE '{}'", condition.empty() ? "" : " OR ", column, pattern);
    }
    return "(" + condition + ")";
}

void addHits(ado::Connection& routing, const std::string& sql,
             const std::function<SearchHit(ado::Recordset&)>& hitIn, std::vector<SearchHit>& hits) {
    std::set<std::string> known;
    for (const auto& hit : hits) {
        known.insert(hit.key);
    }
    ado::Recordset row;
    row.Open(sql, routing);
    for (int found = 0; !row.Eof() && found < MostHits; row.MoveNext()) {
        auto hit = hitIn(row);
        if (known.insert(hit.key).second) {
            hits.push_back(std::move(hit));
            ++found;
        }
    }
}

SearchHit hitOfRun(ado::Recordset& row) {
    return {.kind = Kind::Run, .key = textOf(row["RUN"]), .name = textOf(row["DESCRIPTION"])};
}

SearchHit hitOfStop(ado::Recordset& row) {
    const auto address = textOf(row["ADDR1"]);
    return {
        .kind = base::equalsNoCase(textOf(row["STOPTYPE"]), "SCHOOL") ? Kind::School : Kind::Stop,
        .key = textOf(row["STOPID"]),
        .name = address.empty() ? textOf(row["DESCRIPTION"]) : address,
        .at = {row["XPOS"].asNumber(), row["YPOS"].asNumber()}};
}

std::vector<SearchHit> runsLike(ado::Connection& routing, const std::string& text) {
    std::vector<SearchHit> hits;
    for (const auto* way : {"{}%", "%{}%"}) {
        addHits(routing,
                "SELECT RUN.RUN, RUN.DESCRIPTION FROM RUN WHERE " +
                    anyLike({"RUN.RUN", "RUN.DESCRIPTION"}, fmt::format(fmt::runtime(way), text)) +
                    " ORDER BY RUN.RUN",
                hitOfRun, hits);
    }
    hits.resize(std::min<std::size_t>(hits.size(), MostHits));
    return hits;
}

constexpr std::string_view PlacedStops =
    "SELECT STOP.STOPID, STOP.STOPTYPE, STOP.ADDR1, STOP.DESCRIPTION, STOP.XPOS, STOP.YPOS FROM "
    "STOP WHERE (STOP.XPOS <> 0 OR STOP.YPOS <> 0) AND STOP.XPOS Is Not Null AND STOP.YPOS Is Not "
    "Null";

std::vector<SearchHit> stopsLike(ado::Connection& routing, const std::string& text) {
    std::vector<SearchHit> hits;
    for (const auto* way : {"{}%", "%{}%"}) {
        addHits(routing,
                std::string(PlacedStops) + " AND " +
                    anyLike({"STOP.STOPID", "STOP.ADDR1", "STOP.DESCRIPTION"},
                            fmt::format(fmt::runtime(way), text)) +
                    " ORDER BY STOP.STOPID",
                hitOfStop, hits);
    }
    hits.resize(std::min<std::size_t>(hits.size(), MostHits));
    return hits;
}

}  // namespace

std::vector<SearchHit> searchMap(ado::Connection& routing, std::string_view text) {
    const auto wanted = base::trim(text);
    if (wanted.empty()) {
        return {};
    }
    const auto pattern = literally(wanted);
    auto hits = runsLike(routing, pattern);
    auto stops = stopsLike(routing, pattern);
    hits.insert(hits.end(), std::make_move_iterator(stops.begin()),
                std::make_move_iterator(stops.end()));
    return hits;
}

std::vector<SearchHit> readAllStops(ado::Connection& routing) {
    std::vector<SearchHit> stops;
    ado::Recordset row;
    row.Open(std::string(PlacedStops) + " ORDER BY STOP.STOPID", routing);
    for (; !row.Eof(); row.MoveNext()) {
        stops.push_back(hitOfStop(row));
    }
    return stops;
}

}  // namespace map
