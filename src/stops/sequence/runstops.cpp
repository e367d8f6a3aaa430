#include "stops/sequence/runstops.h"

#include <algorithm>
#include <iterator>
#include <set>

#include <fmt/format.h>

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

/// Whether the stop is still where the list showed it: a shared place in the district, any other
/// stop's record on the same run.
bool isWhereShown(ado::Connection& connection, const ChosenStop& stop, bool shared) {
    ado::Recordset stored;
    stored.Open(shared ? fmt::format("SELECT STOP.INT_STOPID FROM STOP WHERE STOP.INT_STOPID={}",
                                     stop.intStopId)
                       : fmt::format("SELECT STOP_TRIPTYPE.RUN FROM STOP_TRIPTYPE WHERE "
                                     "STOP_TRIPTYPE.ID={}",
                                     stop.stopTripId),
                connection);
    return !stored.Eof() && (shared || sameCode(stored["RUN"].textView(), stop.run));
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
        const bool shared = isSharedPlace(stop.stopType);
        if (!shared && stop.stopTripId == 0) {
            added.withoutTripType.push_back(stop);
        } else if (!isWhereShown(connection_, stop, shared)) {
            added.changedByAnother.push_back(stop);
        } else {
            stopsInRun_ = std::max(stopsInRun_, highest_) + 1;
            added.stopTripIds.push_back(shared ? append(stop) : takeOver(stop));
            log_.added({.stopTripId = added.stopTripIds.back(),
                        .intStopId = stop.intStopId,
                        .stopId = stop.stopId,
                        .stopType = stop.stopType,
                        .tripType = shared ? run_.tripType : stop.tripType,
                        .sequence = stopsInRun_});
        }
    }

    AddedStops added;

private:
    std::int64_t append(const ChosenStop& stop) {
        const base::Date now = base::Now();
        records_.AddNew();
        records_["Int_STOPID"].Value(stop.intStopId);
        records_["TripType"].Value(run_.tripType);
        records_["Run"].Value(run_.run);
        records_["RunSeq"].Value(stopsInRun_);
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

    std::int64_t takeOver(const ChosenStop& stop) {
        connection_.Execute(fmt::format(
            "UPDATE STOP_TRIPTYPE SET STOP_TRIPTYPE.RUN='{}', STOP_TRIPTYPE.RUNSEQ={} WHERE "
            "STOP_TRIPTYPE.ID={}",
            ado::escaped(run_.run), stopsInRun_, stop.stopTripId));
        return stop.stopTripId;
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
    return std::find_if(stops.begin(), stops.end(),
                        [&](const auto& stop) { return stop.stopTripId == stopTripId; });
}

/// Numbers the run from 1 with one stop first or last. Both ends log the same wording: meant as it
/// is.
void moveToEnd(ado::Connection& connection, const Stops& stops, std::int64_t stopTripId, bool toTop,
               StopLog& log) {
    std::int64_t running = toTop ? 1 : 0;
    for (const auto& stop : stops) {
        if (stop.stopTripId != stopTripId) {
            setSequence(connection, stop.stopTripId, ++running);
        } else if (toTop) {
            setSequence(connection, stopTripId, "01");
        }
    }
    if (!toTop) {
        setSequence(connection, stopTripId, ++running);
    }
    log.movedToEnd(*find(stops, stopTripId));
}

void exchange(ado::Connection& connection, const RunStop& stop, const RunStop& neighbour, bool up,
              StopLog& log) {
    setSequence(connection, stop.stopTripId, neighbour.sequence);
    setSequence(connection, neighbour.stopTripId, stop.sequence);
    log.movedByOne(stop, neighbour.sequence, up);
}

/// Each stop changes places with its neighbour. `chosen` begins with the one nearest to the end
/// that they move to; those that stand there already stay. Returns the ones moved.
std::vector<std::int64_t> moveByOne(ado::Connection& connection, const EditedRun& run,
                                    const std::vector<std::int64_t>& chosen, bool up,
                                    StopLog& log) {
    std::vector<std::int64_t> moved;
    std::ptrdiff_t standing = 0;
    for (const auto id : chosen) {
        const Stops stops = readRunStops(connection, run.run);
        const auto stop = find(stops, id);
        const auto ahead = up ? stop - stops.begin() : stops.end() - stop - 1;
        if (ahead == standing) {
            ++standing;
        } else {
            exchange(connection, *stop, up ? *std::prev(stop) : *std::next(stop), up, log);
            moved.push_back(id);
        }
    }
    return moved;
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
    ado::Recordset rows;
    rows.Open(runStopsQuery(run), connection);
    Stops stops;
    for (; !rows.Eof(); rows.MoveNext()) {
        stops.push_back({.stopTripId = wholeOf(rows["ID"]),
                         .intStopId = wholeOf(rows["INT_STOPID"]),
                         .stopId = textOf(rows["STOPID"]),
                         .stopType = textOf(rows["STOPTYPE"]),
                         .tripType = textOf(rows["TRIPTYPE"]),
                         .sequence = wholeOf(rows["RUNSEQ"])});
    }
    return stops;
}

AddedStops addStops(ado::Connection& connection, const EditedRun& run,
                    std::span<const ChosenStop> chosen, base::ProgressPort* progress) {
    ado::CommitOnExit unit(connection);
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
    ChangedStops moved = sorted(readRunStops(connection, run.run), stopTripIds);
    StopLog log(connection, run);
    // In an order that leaves several stops in their order among themselves.
    auto order = moved.stopTripIds;
    if (move == Move::ToTop || move == Move::Down) {
        std::reverse(order.begin(), order.end());
    }
    if (move == Move::ToTop || move == Move::ToBottom) {
        for (const auto id : order) {
            moveToEnd(connection, readRunStops(connection, run.run), id, move == Move::ToTop, log);
        }
    } else {
        const auto went = moveByOne(connection, run, order, move == Move::Up, log);
        std::erase_if(moved.stopTripIds, [&](std::int64_t id) {
            return std::find(went.begin(), went.end(), id) == went.end();
        });
    }
    unit.commit();
    return moved;
}

void needDeadHeadBuild(ado::Connection& connection) {
    ado::Recordset system;
    system.Open("Select SYSTEM.* FROM SYSTEM", connection, ado::CursorType::Dynamic);
    if (!system.Eof()) {
        system["NEEDDEADHEADBUILD"].Value(true);
        system.Update();
    }
}

}  // namespace stops
