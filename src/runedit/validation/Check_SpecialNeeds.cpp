#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "platform/ado/sqltext.h"
#include "platform/base/boundedarray.h"
#include "platform/base/text.h"
#include "platform/base/value.h"
#include "runedit/validation/rules.h"

namespace runedit {

namespace {

struct Need {
    std::string code;
    float number = 0;
};

/// At most 50 codes with a number each, counted from 1.
class NeedList {
public:
    /// The place of a code; 0 where it is not in the list.
    [[nodiscard]] int find(std::string_view code) const {
        for (int place = 1; place <= count_; ++place) {
            if (base::equalsNoCase(base::trimRight(needs_[place].code), base::trimRight(code))) {
                return place;
            }
        }
        return 0;
    }
    int append(const std::string& code, float number) {
        needs_[count_ + 1] = {code, number};
        return ++count_;
    }
    float& numberAt(int place) { return needs_[place].number; }

private:
    base::BoundedArray<Need, 1, 50> needs_;
    int count_ = 0;
};

/// Counts the needs of a run and compares them with what its vehicle type carries.
class NeedCounter {
public:
    NeedCounter(const CheckedRun& run, const std::vector<NeedCount>& carried) : run_(run) {
        for (const NeedCount& need : carried) {
            carried_.append(need.code, static_cast<float>(need.count));
        }
    }

    void add(const StopRow& stop, const NeedCount& need) {
        const auto count = static_cast<float>(need.count);
        const int own = addToTotals(need.code, count);
        const int place = carried_.find(need.code);
        if (place == 0) {
            findings_.push_back({stop.run, notHandled(stop, need)});
            return;
        }
        totals_.numberAt(place) += count;
        if (carried_.numberAt(place) < totals_.numberAt(own)) {
            findings_.push_back(
                {stop.run, tooMany(stop, need, totals_.numberAt(own), carried_.numberAt(place))});
        }
    }

    [[nodiscard]] Findings findings() && { return std::move(findings_); }

private:
    int addToTotals(const std::string& code, float count) {
        const int place = totals_.find(code);
        if (place == 0) {
            return totals_.append(code, count);
        }
        totals_.numberAt(place) += count;
        return place;
    }

    [[nodiscard]] std::string passengers(const StopRow& stop, const NeedCount& need) const {
        return fmt::format("{} {} has {} passengers with the special need of: {}",
                           run_.inRouteMode() ? fmt::format("In Run: {} stopID:", run_.run)
                                              : std::string("StopID:"),
                           stop.stopId, base::numberText(need.count), need.code);
    }

    [[nodiscard]] std::string vehicleOfRoute() const {
        return fmt::format(
            " and the vehicle assigned to the route: {} with the vehicle type of: {}", run_.vehicle,
            run_.vehType);
    }

    [[nodiscard]] std::string notHandled(const StopRow& stop, const NeedCount& need) const {
        return passengers(stop, need) +
               (run_.inRouteMode()
                    ? vehicleOfRoute()
                    : fmt::format(" and the vehicle type of: {} was assigned to the run and",
                                  run_.vehType)) +
               " does not handle this special need.";
    }

    [[nodiscard]] std::string tooMany(const StopRow& stop, const NeedCount& need, float total,
                                      float carried) const {
        return passengers(stop, need) +
               (run_.inRouteMode()
                    ? vehicleOfRoute()
                    : fmt::format(" bringing the total number of passangers with this special need "
                                  "to: {} and the vehicle type of: {}",
                                  base::numberText(total), run_.vehType)) +
               fmt::format(
                   " was assigned to the run and only has a capacity for this special need "
                   "of:{}.",
                   base::numberText(carried));
    }

    const CheckedRun& run_;
    NeedList carried_;
    NeedList totals_;
    Findings findings_;
};

std::string needsSql(const StopRow& stop) {
    return fmt::format(
        "SELECT STU_ADDR_TRIPTYPE.INT_STOPID, STU_SPECIALNEEDS.SPECIALNEEDS_CODE, "
        "STU_ADDR_TRIPTYPE.TRIPTYPE, Count(STU_SPECIALNEEDS.SPECIALNEEDS_CODE) AS TOTSPEC FROM "
        "(STUDENT INNER JOIN STU_ADDR_TRIPTYPE ON STUDENT.INT_STUID = STU_ADDR_TRIPTYPE.INT_STUID) "
        "INNER JOIN STU_SPECIALNEEDS ON STUDENT.INT_STUID = STU_SPECIALNEEDS.INT_STUID GROUP BY "
        "STU_ADDR_TRIPTYPE.INT_STOPID, STU_ADDR_TRIPTYPE.TRIPTYPE, "
        "STU_SPECIALNEEDS.SPECIALNEEDS_CODE Having STU_ADDR_TRIPTYPE.Int_StopID = {} AND "
        "STU_ADDR_TRIPTYPE.TRIPTYPE='{}'",
        stop.intStopId, ado::escaped(stop.tripType));
}

std::vector<NeedCount> needsIn(const std::string& needsRead, ado::Connection& routing) {
    auto needs = ado::readAll(needsRead, routing, [](ado::Recordset& rows) {
        return NeedCount{textOf(rows["SPECIALNEEDS_CODE"]), numberOf(rows["TotSpec"])};
    });
    std::stable_sort(needs.begin(), needs.end(), [](const NeedCount& a, const NeedCount& b) {
        return base::lowered(a.code) < base::lowered(b.code);
    });
    return needs;
}

}  // namespace

Findings needsNotMet(const CheckedRun& run, const std::vector<StopNeeds>& stops,
                     const std::vector<NeedCount>& carried) {
    NeedCounter counter(run, carried);
    for (const StopNeeds& at : stops) {
        for (const NeedCount& need : at.needs) {
            if (!base::trim(need.code).empty()) {
                counter.add(at.stop, need);
            }
        }
    }
    return std::move(counter).findings();
}

std::string needsCarriedSql(std::string_view vehType) {
    return fmt::format(
        "SELECT VEHTYPE_SPECIALNEEDS.* FROM VEHTYPE_SPECIALNEEDS Where "
        "VEHTYPE_SPECIALNEEDS.VEHTYPE='{}'",
        ado::escaped(vehType));
}

std::vector<NeedCount> needsCarriedBy(const std::string& vehType, ado::Connection& trip) {
    return ado::readAll(needsCarriedSql(vehType), trip, [](ado::Recordset& rows) {
        return NeedCount{textOf(rows["SPECIALNEEDS_CODE"]), numberOf(rows["Capacity"])};
    });
}

std::vector<StopNeeds> readStopNeeds(const StopRows& regularStops, ado::Connection& routing) {
    std::vector<std::string> reads;
    reads.reserve(regularStops.size());
    std::ranges::transform(regularStops, std::back_inserter(reads), needsSql);
    const ado::ReadAhead ahead(routing, reads, ado::ReadAhead::Until::End);
    std::vector<StopNeeds> stops;
    for (std::size_t i = 0; i < reads.size(); ++i) {
        stops.push_back({regularStops[i], needsIn(reads[i], routing)});
    }
    return stops;
}

std::vector<std::string> specialNeedsReads(const CheckedRun& run) {
    return {stopsSql(regularStopsOf(run.run))};
}

Findings Check_SpecialNeeds(const CheckedRun& run, const ValidationDatabases& databases) {
    const auto carried = needsCarriedBy(run.vehType, databases.trip);
    const auto stops = readStops(databases.routing, regularStopsOf(run.run));
    return needsNotMet(run, readStopNeeds(stops, databases.routing), carried);
}

}  // namespace runedit
