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
    return "(" +
           base::joined(columns, " OR ",
                        [&](auto column) { return fmt::format("{} LIKE '{}'", column, pattern); }) +
           ")";
}

void addHits(ado::Connection& routing, const std::string& sql,
             const std::function<SearchHit(ado::Recordset&)>& hitIn, std::vector<SearchHit>& hits) {
    std::set<std::string> known;
    for (const auto& hit : hits) {
        known.insert(hit.key);
    }
    ado::Recordset row(sql, routing);
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

/// Rows in which one of the columns begins with the text, then those in which it stands elsewhere;
/// the first column orders them.
std::vector<SearchHit> rowsLike(ado::Connection& routing, std::string_view rows,
                                std::initializer_list<std::string_view> columns,
                                const std::string& text, SearchHit (*hitIn)(ado::Recordset&)) {
    std::vector<SearchHit> hits;
    for (const auto* before : {"", "%"}) {
        addHits(routing,
                fmt::format("{}{} ORDER BY {}", rows, anyLike(columns, before + text + "%"),
                            *columns.begin()),
                hitIn, hits);
    }
    hits.resize(std::min<std::size_t>(hits.size(), MostHits));
    return hits;
}

std::vector<SearchHit> runsLike(ado::Connection& routing, const std::string& text) {
    return rowsLike(routing, "SELECT RUN.RUN, RUN.DESCRIPTION FROM RUN WHERE ",
                    {"RUN.RUN", "RUN.DESCRIPTION"}, text, hitOfRun);
}

constexpr std::string_view PlacedStops =
    "SELECT STOP.STOPID, STOP.STOPTYPE, STOP.ADDR1, STOP.DESCRIPTION, STOP.XPOS, STOP.YPOS FROM "
    "STOP WHERE (STOP.XPOS <> 0 OR STOP.YPOS <> 0) AND STOP.XPOS Is Not Null AND STOP.YPOS Is Not "
    "Null";

std::vector<SearchHit> stopsLike(ado::Connection& routing, const std::string& text) {
    return rowsLike(routing, std::string(PlacedStops) + " AND ",
                    {"STOP.STOPID", "STOP.ADDR1", "STOP.DESCRIPTION"}, text, hitOfStop);
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
    return ado::readAll(std::string(PlacedStops) + " ORDER BY STOP.STOPID", routing, hitOfStop);
}

}  // namespace map
