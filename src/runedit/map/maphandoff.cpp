#include "runedit/map/maphandoff.h"

#include "data/lookups/mdlGetItems.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "runedit/map/handover.h"
#include "runedit/map/requestline.h"
#include "startup/base/mdlGetMapSoftware.h"
#include "startup/base/session.h"

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

bool deleteMapFiles(const std::string& run) { return sessionFiles().deleteRun(run); }

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
        throw;
    } catch (const std::exception&) {
        recordFault(screen);
        throw;
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
    writeRequestList(files, lines);
    return unlisted;
}

}  // namespace runedit
