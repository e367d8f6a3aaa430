#include "runedit/map/maphandoff.h"

#include <fmt/format.h>

#include "data/lookups/mdlGetItems.h"
#include "data/runs/runrow.h"
#include "platform/base/text.h"
#include "runedit/map/handover.h"
#include "runedit/map/requestline.h"
#include "startup/base/mdlGetMapSoftware.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"

namespace runedit {

namespace {

WorkFiles sessionFiles() { return WorkFiles(startup::gProgPath); }

/// The level's seats of the vehicle type, none for an unknown one, and the overfill.
double seatsOf(const MapRun& run) {
    return base::leadingNumber(data::GetVehType_Capacity(run.vehType, run.capacity)) + run.overfill;
}

std::string districtClosedStreets() {
    const std::string file = data::GetGGClosedStreet();
    return file == "NOT FOUND" ? "" : std::string(base::trim(file));
}

/// The procedure that hands over, as the error log names it.
const char* handOverProcedure(MapScreen screen) {
    switch (screen) {
        case MapScreen::AddRun:
            return "ExitAddRun of Module: Add_Remove_Stops.";
        case MapScreen::GroupRunSolve:
            return "ChangeIt_Click of Module: Group_Run_Solve.";
        case MapScreen::Run:
            break;
    }
    return "MapIt_Click of Module: Run.";
}

/// Writes the error that is being handled into the error log; telling the user is the form's.
void recordFault(MapScreen screen) {
    if (!startup::gErrorHandling || !startup::gErrHandler) {
        return;
    }
    auto& handler = *startup::gErrHandler;
    const bool shows = handler.DisplayMsgOnError();
    handler.DisplayMsgOnError(false);
    handler.CurrentOperation(handOverProcedure(screen));
    handler.HandleError();
    handler.DisplayMsgOnError(shows);
}

}  // namespace

bool mapExchangeOn() { return startup::gMapSoftware == startup::ArcView; }

bool mapFilesLeft(const std::string& run) { return sessionFiles().isRunAtWork(run); }

bool deleteMapFiles(const std::string& run) {
    const auto files = sessionFiles();
    try {
        const auto alone = files.lock();
        return files.deleteRun(run);
    } catch (const base::RunTimeError&) {
        return false;
    }
}

void sendRunToMap(const std::string& run, MapScreen screen) {
    if (!mapExchangeOn()) {
        return;
    }
    try {
        const MapRun told = readMapRun(*startup::gcnRouting, run);
        handOver({.routing = *startup::gcnRouting,
                  .files = sessionFiles(),
                  .transport = dde::transport(),
                  .screen = screen,
                  .run = told,
                  .seats = seatsOf(told),
                  .closedStreets = districtClosedStreets()});
    } catch (const StillProcessing&) {
        markToBeResolved(run);
        throw;
    } catch (const std::exception&) {
        recordFault(screen);
        if (!startup::lockedElsewhere()) {
            markToBeResolved(run);
        }
        throw;
    }
}

std::string handOverFailedText(const std::exception& fault) {
    const auto* numbered = dynamic_cast<const base::RunTimeError*>(&fault);
    const bool isGone =
        numbered != nullptr && numbered->number() == base::errors::InvalidProcedureCall;
    return isGone ? fault.what()
                  : fmt::format(
                        "{}\n\nThe run is saved, and marked to be resolved on the map.  Once "
                        "that is mended, send it with Map It or Group Solve.",
                        fault.what());
}

void markToBeResolved(const std::string& run) {
    if (!mapExchangeOn()) {
        return;
    }
    try {
        data::markForMap(*startup::gcnRouting, run);
        startup::RefreshRunList = true;
    } catch (const base::RunTimeError&) {
        // Why the run could not go is the one to tell.
    }
}

void requireMapProgram() { (void)dde::transport().open(MapService, MapTopic); }

std::vector<UnlistedRun> listRunsForMap(const std::vector<std::string>& runs, MapScreen screen) {
    if (!mapExchangeOn()) {
        return {};
    }
    const WorkFiles files = sessionFiles();
    std::vector<std::string> lines;
    std::vector<UnlistedRun> unlisted;
    for (const std::string& run : runs) {
        try {
            const MapRun told = readMapRun(*startup::gcnRouting, run);
            (void)files.stopExport(told.run);
            lines.push_back(lineText(requestFor(told, screenWord(screen), seatsOf(told))));
        } catch (const base::RunTimeError& fault) {
            unlisted.push_back({run, fault});
        }
    }
    const auto alone = files.lock();
    writeRequestList(files, lines);
    return unlisted;
}

}  // namespace runedit
