#include "stops/sequence/runstops.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <set>
#include <utility>

#include <fmt/format.h>

#include "data/runs/runrow.h"
#include "data/schema/schema.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/text.h"
#include "stops/sequence/stoplog.h"

namespace stops {

namespace {

using Stops = std::vector<RunStop>;

std::string textOf(const ado::Field& field) { return std::string(field.textView()); }
std::int64_t wholeOf(const ado::Field& field) { return field.isNull() ? 0 : field.asInteger(); }

bool sameCode(std::string_view a, std::string_view b) {
    return base::equalsNoCase(base::trim(a), base::trim(b));
}

void setSequence(ado::Connection& connection, std::int64_t stopTripId, std::string_view sequence) {
    connection.Execute(
        fmt::format("UPDATE STOP_TRIPTYPE SET STOP_TRIPTYPE.RUNSEQ={} WHERE STOP_TRIPTYPE.ID={}",
                    sequence, stopTripId));
}

void setSequence(ado::Connection& connection, std::int64_t stopTripId, std::int64_t sequence) {
    setSequence(connection, stopTripId, std::to_string(sequence));
}

bool isFree(std::string_view run) { return base::trim(run).empty(); }

bool stopExists(ado::Connection& connection, std::int64_t intStopId) {
    ado::Recordset stored(
        fmt::format("SELECT STOP.INT_STOPID FROM STOP WHERE STOP.INT_STOPID={}", intStopId),
        connection);
    return !stored.Eof();
}

/// The stop with the record that it can get on a run of that trip type with: the first free one;
/// else without a record, and on the run that its record is on, if it has any.
ChosenStop withFreeRecord(ado::Connection& connection, ChosenStop stop, std::string_view tripType) {
    ado::Recordset records(
        fmt::format("SELECT STOP_TRIPTYPE.ID, STOP_TRIPTYPE.RUN FROM STOP_TRIPTYPE WHERE "
                    "STOP_TRIPTYPE.INT_STOPID={} AND STOP_TRIPTYPE.TRIPTYPE='{}' ORDER BY "
                    "STOP_TRIPTYPE.ID",
                    stop.intStopId, ado::escaped(tripType)),
        connection);
    stop.tripType = tripType;
    for (; !records.Eof() && stop.stopTripId == 0; records.MoveNext()) {
        stop.run = textOf(records["RUN"]);
        stop.stopTripId = isFree(stop.run) ? records["ID"].asInteger() : 0;
    }
    return stop;
}

/// Gives one stop after the other its place behind the run's last one.
class StopAdder {
public:
    StopAdder(ado::Connection& connection, const EditedRun& run)
        : connection_(connection), run_(run), log_(connection, run) {
        records_.Open("Select Stop_TripType.* from Stop_TripType Where Stop_TripType.ID=0",
                      connection);
        const auto stops = readRunStops(connection, run.run);
        stopsInRun_ = static_cast<std::int64_t>(stops.size());
        highest_ = stops.empty() ? 0 : stops.back().sequence;
    }

    void add(const ChosenStop& stop) {
        if (stop.stopTripId != 0 && !isSharedPlace(stop.stopType)) {
            addRecord(stop);
        } else if (!stopExists(connection_, stop.intStopId)) {
            added.changedByAnother.push_back(stop);
        } else if (isSharedPlace(stop.stopType)) {
            log(stop, run_.tripType, append(stop, next()));
        } else {
            addPlain(withFreeRecord(connection_, stop, run_.tripType));
        }
    }

    AddedStops added;

private:
    std::int64_t next() { return stopsInRun_ = std::max(stopsInRun_, highest_) + 1; }

    void addPlain(const ChosenStop& stop) {
        if (stop.stopTripId == 0) {
            added.withoutTripType.push_back(stop);
        } else {
            addRecord(stop);
        }
    }

    /// A record is left alone where it is no longer on the run that the list showed.
    void addRecord(const ChosenStop& stop) {
        ado::Recordset stored(
            fmt::format("SELECT STOP_TRIPTYPE.RUN, STOP_TRIPTYPE.RUNSEQ FROM STOP_TRIPTYPE "
                        "WHERE STOP_TRIPTYPE.ID={}",
                        stop.stopTripId),
            connection_);
        if (stored.Eof() || !sameCode(stored["RUN"].textView(), stop.run)) {
            added.changedByAnother.push_back(stop);
            return;
        }
        if (!isFree(stop.run) && !sameCode(stop.run, run_.run)) {
            tellFormerRun(stop, wholeOf(stored["RUNSEQ"]));
        }
        takeOver(stop, next());
        log(stop, stop.tripType, stop.stopTripId);
    }

    /// The run that the stop is taken from has changed as well, and tells so.
    void tellFormerRun(const ChosenStop& stop, std::int64_t sequence) {
        EditedRun former = run_;
        former.run = base::trim(stop.run);
        StopLog(connection_, former).removed(logged(stop, stop.tripType, sequence));
        if (std::ranges::find(added.takenFrom, former.run) == added.takenFrom.end()) {
            added.takenFrom.push_back(former.run);
            if (run_.isMapped) {
                data::markForMap(connection_, former.run);
            }
        }
    }

    static RunStop logged(const ChosenStop& stop, std::string_view tripType,
                          std::int64_t sequence) {
        return {.stopTripId = stop.stopTripId,
                .intStopId = stop.intStopId,
                .stopId = stop.stopId,
                .stopType = stop.stopType,
                .tripType = std::string(tripType),
                .sequence = sequence};
    }

    void log(const ChosenStop& stop, std::string_view tripType, std::int64_t stopTripId) {
        added.stopTripIds.push_back(stopTripId);
        log_.added(logged(stop, tripType, stopsInRun_));
    }

    std::int64_t append(const ChosenStop& stop, std::int64_t sequence) {
        const base::Date now = base::Now();
        records_.AddNew();
        records_["Int_STOPID"].Value(stop.intStopId);
        records_["TripType"].Value(run_.tripType);
        records_["Run"].Value(run_.run);
        records_["RunSeq"].Value(sequence);
        for (const auto* zero :
             {"NUM_STUDENTS", "Load_Time", "DIST_TOSTOP", "CUM_TIME", "CUM_MILES"}) {
            records_[zero].Value(0);
        }
        records_["Active"].Value(true);
        records_["STATUSCHGDT"].Value(now);
        records_["CreatedBy"].Value(run_.user);
        records_["ChangedBy"].Value(run_.user);
        records_["CREATEDDT"].Value(now);
        records_["changeddt"].Value(now);
        records_.Update();
        return records_["ID"].asInteger();
    }

    void takeOver(const ChosenStop& stop, std::int64_t sequence) {
        connection_.Execute(fmt::format(
            "UPDATE STOP_TRIPTYPE SET STOP_TRIPTYPE.RUN='{}', STOP_TRIPTYPE.RUNSEQ={} WHERE "
            "STOP_TRIPTYPE.ID={}",
            ado::escaped(run_.run), sequence, stop.stopTripId));
    }

    ado::Connection& connection_;
    const EditedRun& run_;
    StopLog log_;
    ado::Recordset records_;
    std::int64_t stopsInRun_ = 0;
    std::int64_t highest_ = 0;
};

void takeOff(ado::Connection& connection, const RunStop& stop) {
    const auto* sql = isSharedPlace(stop.stopType)
                          ? "DELETE STOP_TRIPTYPE FROM STOP_TRIPTYPE WHERE STOP_TRIPTYPE.ID={}"
                          : "UPDATE STOP_TRIPTYPE SET STOP_TRIPTYPE.RUN=' ', "
                            "STOP_TRIPTYPE.RUNSEQ=0 WHERE STOP_TRIPTYPE.ID={}";
    connection.Execute(fmt::format(fmt::runtime(sql), stop.stopTripId));
}

/// The chosen stops in the order of the run, and those that are no longer on it.
ChangedStops sorted(const Stops& stops, std::span<const std::int64_t> chosen) {
    std::set<std::int64_t> open(chosen.begin(), chosen.end());
    ChangedStops result;
    for (const auto& stop : stops) {
        if (open.erase(stop.stopTripId) > 0) {
            result.stopTripIds.push_back(stop.stopTripId);
        }
    }
    result.changedByAnother.assign(open.begin(), open.end());
    return result;
}

Stops::const_iterator find(const Stops& stops, std::int64_t stopTripId) {
    return std::ranges::find(stops, stopTripId, &RunStop::stopTripId);
}

bool isAmong(const std::vector<std::int64_t>& stopTripIds, std::int64_t id) {
    return std::ranges::find(stopTripIds, id) != stopTripIds.end();
}

/// The run's stops with the chosen ones together in front of the given one, as the numbers from 1
/// will have them.
Stops rearranged(const Stops& stops, const std::vector<std::int64_t>& chosen,
                 Stops::const_iterator before) {
    Stops order;
    const auto add = [&](auto from, auto to, bool moving) {
        std::copy_if(from, to, std::back_inserter(order), [&](const RunStop& stop) {
            return isAmong(chosen, stop.stopTripId) == moving;
        });
    };
    add(stops.begin(), before, false);
    add(stops.begin(), stops.end(), true);
    add(before, stops.end(), false);
    return order;
}

void numberFromOne(ado::Connection& connection, const Stops& order, std::string_view first = "1") {
    std::int64_t number = 0;
    for (const auto& stop : order) {
        setSequence(connection, stop.stopTripId,
                    ++number == 1 ? std::string(first) : std::to_string(number));
    }
}

/// Both ends log the same wording: meant as it is.
void moveToEnd(ado::Connection& connection, const Stops& stops,
               const std::vector<std::int64_t>& chosen, bool toTop, StopLog& log) {
    if (chosen.empty()) {
        return;
    }
    numberFromOne(connection, rearranged(stops, chosen, toTop ? stops.begin() : stops.end()),
                  toTop ? "01" : "1");
    for (const auto id : chosen) {
        log.movedToEnd(*find(stops, id));
    }
}

void exchange(ado::Connection& connection, const RunStop& stop, const RunStop& neighbour, bool up,
              StopLog& log) {
    setSequence(connection, stop.stopTripId, neighbour.sequence);
    setSequence(connection, neighbour.stopTripId, stop.sequence);
    log.movedBy(stop, neighbour.sequence, 1, up);
}

/// Each stop changes places with its neighbour, the one nearest to the end that they move to first.
/// One that cannot move on stops those behind it, so that they keep their order.
ChangedStops moveByOne(ado::Connection& connection, const EditedRun& run, ChangedStops chosen,
                       bool up, StopLog& log) {
    auto order = std::exchange(chosen.stopTripIds, {});
    if (!up) {
        std::ranges::reverse(order);
    }
    std::int64_t standing = 0;
    for (const auto id : order) {
        const Stops stops = readRunStops(connection, run.run);
        const auto stop = find(stops, id);
        const bool atEnd = up ? stop == stops.begin() : std::next(stop) == stops.end();
        const auto neighbour = atEnd ? stop : up ? std::prev(stop) : std::next(stop);
        if (atEnd || neighbour->stopTripId == standing) {
            standing = id;
        } else if (neighbour->sequence == stop->sequence) {
            chosen.equallyNumbered.push_back(standing = id);
        } else {
            exchange(connection, *stop, *neighbour, up, log);
            chosen.stopTripIds.push_back(id);
        }
    }
    return chosen;
}

/// Reports each item done; a null port reports nothing.
class Steps {
public:
    Steps(base::ProgressPort* port, std::size_t total) : port_(port), total_(total) {}
    void done() {
        if (port_ != nullptr) {
            port_->progress(100.0 * static_cast<double>(++done_) / static_cast<double>(total_));
            port_->yield();
        }
    }

private:
    base::ProgressPort* port_;
    std::size_t total_;
    std::size_t done_ = 0;
};

}  // namespace

bool isSharedPlace(std::string_view stopType) {
    return sameCode(stopType, data::stoptype::Garage) || sameCode(stopType, data::stoptype::School);
}

std::string runStopsQuery(std::string_view run) {
    return fmt::format(
        "SELECT STOP.STOPID, STOP.ADDR1, STOP_TRIPTYPE.TIME_AT_STOP, STOP_TRIPTYPE.NUM_STUDENTS, "
        "STOP_TRIPTYPE.TRIPTYPE, STOP.STOPTYPE, STOP.SCHOOL, STOP.DESCRIPTION, "
        "STOP_TRIPTYPE.TIME_TOSTOP, STOP_TRIPTYPE.DIST_TOSTOP, STOP_TRIPTYPE.LOAD_TIME, "
        "STOP_TRIPTYPE.CUM_TIME, STOP_TRIPTYPE.CUM_MILES, STOP_TRIPTYPE.RUN, STOP_TRIPTYPE.RUNSEQ, "
        "STOP_TRIPTYPE.INT_STOPID, STOP_TRIPTYPE.ID FROM STOP INNER JOIN STOP_TRIPTYPE ON "
        "STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID Where STOP_TRIPTYPE.RUN='{}' ORDER BY "
        "STOP_TRIPTYPE.RUNSEQ",
        ado::escaped(run));
}

Stops readRunStops(ado::Connection& connection, std::string_view run) {
    return ado::readAll(runStopsQuery(run), connection, [](ado::Recordset& rows) {
        return RunStop{.stopTripId = wholeOf(rows["ID"]),
                       .intStopId = wholeOf(rows["INT_STOPID"]),
                       .stopId = textOf(rows["STOPID"]),
                       .stopType = textOf(rows["STOPTYPE"]),
                       .tripType = textOf(rows["TRIPTYPE"]),
                       .sequence = wholeOf(rows["RUNSEQ"])};
    });
}

AddedStops addStops(ado::Connection& connection, const EditedRun& run,
                    std::span<const ChosenStop> chosen, base::ProgressPort* progress) {
    ado::CommitOnExit unit(connection);
    if (!data::runExists(connection, run.run)) {
        AddedStops none;
        none.runIsGone = true;
        return none;
    }
    StopAdder adder(connection, run);
    Steps steps(progress, chosen.size());
    for (const auto& stop : chosen) {
        adder.add(stop);
        steps.done();
    }
    unit.commit();
    return std::move(adder.added);
}

ChangedStops removeStops(ado::Connection& connection, const EditedRun& run,
                         std::span<const std::int64_t> stopTripIds, base::ProgressPort* progress) {
    ado::CommitOnExit unit(connection);
    const Stops stops = readRunStops(connection, run.run);
    ChangedStops removed = sorted(stops, stopTripIds);
    if (removed.stopTripIds.empty()) {
        return removed;
    }
    const std::set<std::int64_t> chosen(removed.stopTripIds.begin(), removed.stopTripIds.end());
    StopLog log(connection, run);
    Steps steps(progress, stops.size());
    std::int64_t counter = 0;
    for (const auto& stop : stops) {
        if (chosen.contains(stop.stopTripId)) {
            takeOff(connection, stop);
            log.removed(stop);
        } else {
            setSequence(connection, stop.stopTripId, counter++);
        }
        steps.done();
    }
    unit.commit();
    return removed;
}

ChangedStops moveStops(ado::Connection& connection, const EditedRun& run,
                       std::span<const std::int64_t> stopTripIds, Move move) {
    ado::CommitOnExit unit(connection);
    const Stops stops = readRunStops(connection, run.run);
    ChangedStops moved = sorted(stops, stopTripIds);
    StopLog log(connection, run);
    if (move == Move::ToTop || move == Move::ToBottom) {
        moveToEnd(connection, stops, moved.stopTripIds, move == Move::ToTop, log);
    } else {
        moved = moveByOne(connection, run, std::move(moved), move == Move::Up, log);
    }
    unit.commit();
    return moved;
}

ChangedStops placeStops(ado::Connection& connection, const EditedRun& run,
                        std::span<const std::int64_t> stopTripIds, std::int64_t before) {
    ado::CommitOnExit unit(connection);
    const Stops stops = readRunStops(connection, run.run);
    ChangedStops placed = sorted(stops, stopTripIds);
    const auto target = find(stops, before);
    placed.placeIsGone = before != 0 && target == stops.end();
    const Stops order = rearranged(stops, placed.stopTripIds, target);
    const auto placesUp = [&](std::int64_t id) {
        return (find(stops, id) - stops.begin()) - (find(order, id) - order.begin());
    };
    std::erase_if(placed.stopTripIds,
                  [&](std::int64_t id) { return placed.placeIsGone || placesUp(id) == 0; });
    if (placed.stopTripIds.empty()) {
        return placed;
    }
    StopLog log(connection, run);
    numberFromOne(connection, order);
    for (const auto id : placed.stopTripIds) {
        const auto up = placesUp(id);
        log.movedBy(*find(stops, id), find(order, id) - order.begin() + 1, std::abs(up), up > 0);
    }
    unit.commit();
    return placed;
}

// Not read before: several planners do it at the same moment.
void needDeadHeadBuild(ado::Connection& connection) {
    connection.Execute("UPDATE SYSTEM SET SYSTEM.NEEDDEADHEADBUILD = TRUE");
}

}  // namespace stops
