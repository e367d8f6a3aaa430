#include "runedit/validation/mdlValidate_Runs.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

#include <fmt/format.h>

#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "runedit/validation/rules.h"
#include "runedit/validation/stoprows.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"

namespace runedit {

namespace {

constexpr auto Module = "mdlValidate_Runs";
constexpr std::string_view Separator = "       *** ";
constexpr auto TooManyStopsTitle = "Too Many Stops";
constexpr auto TooManyStopsText =
    "Oops, run {} has {} stops, and the times of at most {} stops can be compared.  All other "
    "checks were made; overlapping times were not checked.";

/// One of the checks; its place among them decides its place in switches and flags.
struct Check {
    std::string_view procedure;
    std::string_view districtColumn;
    std::string_view type;
    std::string_view title;
    Findings (*find)(const CheckedRun&, const ValidationDatabases&);
    std::vector<std::string> (*reads)(const CheckedRun&);
    bool forRoutes = false;  ///< whether its findings are recorded for a route where one is given
    std::string_view separator = Separator;
};

constexpr std::array Checks = {
    Check{"Check_NumPassengers", "CHECKRUNNUMPASS", "PASSENGERS",
          "Too Many Passengers for Vehicle / Vehicle Type", Check_NumPassengers, passengerReads,
          true},
    Check{"Check_RightSide", "CHECKRUNRIGHT", "RIGHTSIDE",
          "Picking up Right Hand Side Pickup Stops on Left Side", Check_RightSide, rightSideReads},
    Check{"Check_Run_EarlyBellTime", "CHECKRUNEARLYBELL", "EARLY BELL",
          "Run Leaving before Bell Time of the Run", Check_Run_EarlyBellTime, earlyBellReads},
    Check{"Check_Run_LateBellTime", "CHECKRUNLATEBELL", "LATE BELL",
          "Run Arriving After Bell Time of the Run", Check_Run_LateBellTime, lateBellReads},
    Check{"Check_Run_RideTime", "CHECKRUNRIDETIME", "RIDETIME",
          "Run has Passengers Riding Too Long.", Check_Run_RideTime, rideTimeReads},
    Check{"Check_SpecialNeeds", "CHECKRUNSPECIAL", "SPECIAL",
          "Run has Special Needs Passengers that Vehicle Can't Handle.", Check_SpecialNeeds,
          specialNeedsReads, true, SpecialNeedsSeparator},
    Check{"Check_StopTimeConflict", "CHECKSTOPOVERLAP", "CONFLICTING TIME",
          "Run has Stops with Overlapping Times.", Check_StopTimeConflict, stopTimeReads},
};

constexpr std::size_t Passengers = 0;
constexpr std::size_t StopTimes = 6;
static_assert(Checks[StopTimes].find == Check_StopTimeConflict);
using Wanted = std::array<bool, Checks.size()>;

constexpr auto DistrictSql = "Select District.* from District";

Wanted wantedByDistrict() {
    ado::Recordset district(DistrictSql, *startup::gcnRouting);
    district.MoveFirst();
    Wanted wanted{};
    for (std::size_t i = 0; i < Checks.size(); ++i) {
        wanted[i] = yesNoOf(district[Checks[i].districtColumn]);
    }
    return wanted;
}

/// Whether the switches ask for the check in that place, the first check's being 1.
bool isSwitchedOn(std::string_view switches, std::size_t place) {
    const auto trimmed = base::trim(switches);
    return switches.starts_with('Y') || (trimmed.size() > place && trimmed[place] == 'Y');
}

Wanted wantedChecks(std::string_view switches) {
    Wanted wanted = wantedByDistrict();
    for (std::size_t i = 0; i < Checks.size(); ++i) {
        wanted[i] = wanted[i] && isSwitchedOn(switches, i + 1);
    }
    return wanted;
}

std::string capacitySql(std::string_view vehType) {
    return fmt::format("Select VEHTYPE.* From VEHTYPE Where VEHTYPE.VEHTYPE='{}'",
                       ado::escaped(base::trim(vehType)));
}

std::int16_t GetVehCapacity(const std::string& VehType, const std::string& CapacityLevel) {
    return startup::trapped("GetVehCapacity", Module, [&]() -> std::int16_t {
        ado::Recordset row(capacitySql(VehType), *startup::gcnRouting);
        if (row.Eof()) {
            base::MsgBox(
                "Warning,  the vehicle type that you assigned to this run is no longer in your "
                "vehicle type table.  Please select a different vehicle type before save this run!",
                "Vehicle Type Not Found", base::MsgIcon::Information);
            return 0;
        }
        const auto level = base::trim(CapacityLevel);
        const bool isLevel = level == "High" || level == "Medium" || level == "Low";
        return isLevel ? integer16(wholeOf(row[level])) : std::int16_t{0};
    });
}

/// Everything about the run that may end in a message box: nobody waits for the planner while the
/// file is locked.
CheckedRun prepare(const std::string& run, std::int64_t intRouteId, bool withCapacity,
                   const ValidationDatabases& databases) {
    auto checked = readCheckedRun(run, intRouteId, databases);
    if (withCapacity && !base::trim(checked.vehType).empty()) {
        checked.capacity = GetVehCapacity(checked.vehType, checked.capacityLevel);
    }
    return checked;
}

void Clear_WarningRS(const std::string& Run, std::int64_t IntRouteID,
                     std::string_view WarningType) {
    const auto type = base::trim(WarningType);
    const auto run = ado::escaped(base::trim(Run));
    startup::gcnRouting->executeUncounted(
        IntRouteID != 0
            ? fmt::format("DELETE FROM ROUTEWARNING WHERE ROUTEWARNING.WARNINGTYPE = '{}' AND "
                          "ROUTEWARNING.RUNID1='{}' AND ROUTEWARNING.INT_ROUTEID={}",
                          type, run, IntRouteID)
            : fmt::format("DELETE FROM RUNWARNING WHERE RUNWARNING.WARNINGTYPE='{}' AND "
                          "RUNWARNING.RUN='{}'",
                          type, run));
}

void addRouteWarning(const CheckedRun& run, std::string_view type, const Finding& finding) {
    startup::gcnRouting->executeUncounted(
        fmt::format("INSERT INTO ROUTEWARNING (RUNID1, INT_ROUTEID, WARNINGTYPE, WARNINGDATETIME, "
                    "WARNINGTEXT) VALUES ('{}', {}, '{}', #{}#, '{}')",
                    ado::escaped(base::codeOf(run.run)), run.intRouteId, type, base::Now().text(),
                    ado::escaped(finding.message)));
}

Findings replaceWarnings(const Check& check, const CheckedRun& run,
                         const ValidationDatabases& databases) {
    const bool forRoute = check.forRoutes && run.inRouteMode();
    Clear_WarningRS(run.run, forRoute ? run.intRouteId : 0, check.type);
    auto findings = check.find(run, databases);
    for (const Finding& finding : findings) {
        forRoute ? addRouteWarning(run, check.type, finding)
                 : addRunWarning(*startup::gcnRouting, check.type, finding);
    }
    return findings;
}

/// Makes one check and returns its accumulated text. One that fails ends the unit of work, which
/// keeps what was written: no error is told while the file is locked.
std::string perform(const Check& check, const CheckedRun& run, const ValidationDatabases& databases,
                    ado::CommitOnExit& unit) {
    return startup::trapped(check.procedure, Module, [&] {
        try {
            return accumulated(replaceWarnings(check, run, databases), check.separator);
        } catch (...) {
            unit.commit();
            throw;
        }
    });
}

using Texts = std::array<std::string, Checks.size()>;

/// What the wanted checks open; no check writes what another one reads but through the run's row,
/// which is opened once.
std::vector<std::string> readsOf(const Wanted& wanted, const CheckedRun& run) {
    std::vector<std::string> all;
    for (std::size_t i = 0; i < Checks.size(); ++i) {
        const auto own = wanted[i] ? Checks[i].reads(run) : std::vector<std::string>();
        all.insert(all.end(), own.begin(), own.end());
    }
    return all;
}

Texts performAll(const Wanted& wanted, const CheckedRun& run,
                 const ValidationDatabases& databases) {
    Texts texts;
    ado::CommitOnExit unit(databases.routing,
                           {.reads = readsOf(wanted, run), .writesTogether = true});
    for (std::size_t i = 0; i < Checks.size(); ++i) {
        if (wanted[i]) {
            texts[i] = perform(Checks[i], run, databases, unit);
        }
    }
    unit.commit();
    return texts;
}

void show(const Texts& texts) {
    for (std::size_t i = 0; i < Checks.size(); ++i) {
        if (!texts[i].empty()) {
            base::MsgBox({.text = texts[i],
                          .title = std::string(Checks[i].title),
                          .icon = base::MsgIcon::Information,
                          .plainWords = onLines(texts[i], Checks[i].separator)});
        }
    }
}

std::string flagsOf(const Texts& texts) {
    std::string flags(Checks.size() + 1, 'N');
    for (std::size_t i = 0; i < Checks.size(); ++i) {
        if (!texts[i].empty()) {
            flags[0] = flags[i + 1] = 'Y';
        }
    }
    return flags;
}

std::string validate(const std::string& run, std::int64_t intRouteId, bool showsMessages,
                     const Wanted& wanted) {
    const ValidationDatabases databases{*startup::gcnRouting, *startup::gcnTrip};
    const auto checked = prepare(run, intRouteId, wanted[Passengers], databases);
    const auto texts = performAll(wanted, checked, databases);
    if (showsMessages) {
        show(texts);
    }
    return flagsOf(texts);
}

std::string countSql(const std::string& run) {
    return "SELECT Count(*) AS N FROM STOP INNER JOIN STOP_TRIPTYPE ON STOP.INT_STOPID = "
           "STOP_TRIPTYPE.INT_STOPID" +
           timedStopsOf(run);
}

std::int64_t timedStops(const std::string& run) {
    ado::Recordset row(countSql(run), *startup::gcnRouting);
    return row["N"].asInteger();
}

}  // namespace

std::string CheckRun(const std::string& Run, std::int64_t IntRouteID, bool ShowMessages,
                     const std::string& Switches) {
    return startup::trapped("CheckRun", Module, [&] {
        const ado::ReadAhead reads(*startup::gcnRouting, {DistrictSql, runSql(Run)});
        return validate(Run, IntRouteID, ShowMessages, wantedChecks(Switches));
    });
}

RunReads readsOfCheck(const CheckedRun& foundBefore) {
    const std::string& run = foundBefore.run;
    RunReads reads{{DistrictSql, countSql(run), runSql(run)}, vehicleReads(foundBefore)};
    std::ranges::copy(routeReads(foundBefore), std::back_inserter(reads.routing));
    if (!base::trim(foundBefore.vehType).empty()) {
        reads.routing.push_back(capacitySql(foundBefore.vehType));
        reads.trip.push_back(needsCarriedSql(foundBefore.vehType));
    }
    return reads;
}

std::string checkRunOfAnyLength(const std::string& run, const std::string& switches) {
    return startup::trapped("CheckRun", Module, [&] {
        const ado::ReadAhead reads(*startup::gcnRouting, {DistrictSql, countSql(run), runSql(run)});
        auto wanted = wantedChecks(switches);
        const auto stops = wanted[StopTimes] ? timedStops(run) : 0;
        wanted[StopTimes] = wanted[StopTimes] && stops <= MaxComparedStops;
        auto flags = validate(run, 0, true, wanted);
        if (stops > MaxComparedStops) {
            base::MsgBox(fmt::format(TooManyStopsText, base::trim(run), stops, MaxComparedStops),
                         TooManyStopsTitle, base::MsgIcon::Information);
        }
        return flags;
    });
}

}  // namespace runedit
