#include "map/shown/homes.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>

#include <fmt/format.h>

#include "map/shown/fields.h"
#include "map/shown/runscene.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"

namespace map {

namespace {

constexpr double FeetAround = 5280;  // feet

bool isWithin(const streets::Box& box, geo::Feet at) {
    return at.x >= box.low.x - FeetAround && at.x <= box.high.x + FeetAround &&
           at.y >= box.low.y - FeetAround && at.y <= box.high.y + FeetAround;
}

double feetApart(geo::Feet one, geo::Feet other) {
    return std::hypot(one.x - other.x, one.y - other.y);
}

/// A stop of the run, and whether the student rides from there.
struct NearStop {
    std::size_t index = 0;
    bool isOwn = false;
};

std::optional<NearStop> nearestStop(const MappedRun& run, geo::Feet home) {
    std::optional<NearStop> nearest;
    for (std::size_t i = 0; i < run.stops.size(); ++i) {
        const bool isNearer = !nearest || feetApart(run.stops[i].at, home) <
                                              feetApart(run.stops[nearest->index].at, home);
        if (isDrawn(run.stops[i]) && isNearer) {
            nearest = NearStop{.index = i};
        }
    }
    return nearest;
}

std::optional<NearStop> stopOfHome(const MappedRun& run, const streets::Home& home,
                                   const StopsOfStudents& students) {
    const auto own = students.find(home.student);
    const auto stop = own == students.end()
                          ? run.stops.end()
                          : std::ranges::find(run.stops, own->second, &MappedStop::intStopId);
    if (stop == run.stops.end() || !isDrawn(*stop)) {
        return nearestStop(run, home.at);
    }
    return NearStop{.index = static_cast<std::size_t>(stop - run.stops.begin()), .isOwn = true};
}

std::string homeTold(const MappedRun& run, const streets::Home& home, std::ptrdiff_t students,
                     const std::optional<NearStop>& stop) {
    std::string text = home.address.empty() ? std::string("Home") : home.address;
    text += students > 1 ? fmt::format(", {} students", students) : "";
    if (stop) {
        text += fmt::format(", {:.0f} feet in a straight line to {}stop {}",
                            feetApart(run.stops[stop->index].at, home.at),
                            stop->isOwn ? "its " : "the nearest ", run.numberOf(stop->index));
    }
    return text;
}

}  // namespace

StopsOfStudents studentsOf(ado::Connection& routing, const MappedRun& run) {
    StopsOfStudents students;
    ado::Recordset row(
        fmt::format("SELECT STUDENT.STUID, STU_ADDR_TRIPTYPE.INT_STOPID FROM (STUDENT INNER "
                    "JOIN STU_ADDR_TRIPTYPE ON STUDENT.INT_STUID = "
                    "STU_ADDR_TRIPTYPE.INT_STUID) INNER JOIN STOP_TRIPTYPE ON "
                    "(STU_ADDR_TRIPTYPE.TRIPTYPE = STOP_TRIPTYPE.TRIPTYPE) AND "
                    "(STU_ADDR_TRIPTYPE.INT_STOPID = STOP_TRIPTYPE.INT_STOPID) WHERE "
                    "STOP_TRIPTYPE.RUN='{}'",
                    ado::escaped(run.id)),
        routing);
    for (; !row.Eof(); row.MoveNext()) {
        students.emplace(textOf(row["STUID"]), row["INT_STOPID"].asInteger());
    }
    return students;
}

std::vector<ShownHome> homesAround(const streets::Box& shown, std::span<const streets::Home> homes,
                                   const MappedRun& run, const StopsOfStudents& students) {
    std::vector<const streets::Home*> near;
    for (const streets::Home& home : homes) {
        if (isWithin(shown, home.at)) {
            near.push_back(&home);
        }
    }
    const auto isOwn = [&](const streets::Home& home) { return students.contains(home.student); };
    // At one place the run's own student stands for all.
    std::ranges::stable_sort(near, {}, [&](const streets::Home* home) {
        return std::tuple(home->at.x, home->at.y, !isOwn(*home));
    });
    std::vector<ShownHome> found;
    for (auto first = near.begin(); first != near.end();) {
        const streets::Home& home = **first;
        const auto last = std::find_if(first, near.end(), [&](const streets::Home* other) {
            return other->at.x != home.at.x || other->at.y != home.at.y;
        });
        const auto stop = stopOfHome(run, home, students);
        ShownHome one{.drawn = {.at = home.at}, .told = homeTold(run, home, last - first, stop)};
        one.drawn.label = last - first > 1 ? std::to_string(last - first) : "";
        if (stop && stop->isOwn) {
            one.drawn.walk = {home.at, run.stops[stop->index].at};
        }
        found.push_back(std::move(one));
        first = last;
    }
    return found;
}

}  // namespace map
