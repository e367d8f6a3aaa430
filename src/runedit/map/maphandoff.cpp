#include "runedit/map/maphandoff.h"

#include "data/mdlGetItems.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "runedit/map/handover.h"
#include "runedit/map/requestline.h"
#include "startup/mdlGetMapSoftware.h"
#include "startup/session.h"

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

void reportFault(const std::string& procedure, const std::string& module) {
    startup::gErrHandler->CurrentOperation(procedure + " of Module: " + module + ".");
    startup::gErrHandler->HandleError();
}

}  // namespace

bool mapExchangeOn() { return startup::gMapSoftware == startup::ArcView; }

bool mapFilesLeft(const std::string& run) { return sessionFiles().isRunAtWork(run); }

bool deleteMapFiles(const std::string& run) { return sessionFiles().deleteRun(run); }

void sendRunToMap(const std::string& run, MapScreen screen) {
    if (!mapExchangeOn()) {
        return;
    }
    const MapRun told = readMapRun(*startup::gcnRouting, run);
    handOver({.routing = *startup::gcnRouting,
              .files = sessionFiles(),
              .transport = dde::transport(),
              .screen = screen,
              .run = told,
              .seats = seatsOf(told),
              .closedStreets = districtClosedStreets()});
}

bool handRunToMap(const std::string& run, MapScreen screen, const std::string& procedure,
                  const std::string& module) {
    try {
        sendRunToMap(run, screen);
        return mapExchangeOn();
    } catch (const StillProcessing& busy) {
        base::MsgBox(busy.what(), MapStillProcessingTitle, base::MsgIcon::Information);
    } catch (const std::exception&) {
        if (!startup::gErrorHandling || !startup::gErrHandler) {
            throw;
        }
        reportFault(procedure, module);
    }
    return false;
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
