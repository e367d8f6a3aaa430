#include "startup/base/mdlDBConnection.h"

#include <array>
#include <exception>

#include "platform/base/error.h"
#include "platform/base/ports.h"
#include "platform/files/files.h"
#include "platform/store/base/location.h"
#include "startup/base/COSInfo.h"
#include "startup/base/mdlIniRoutines.h"
#include "startup/base/trap.h"

namespace startup {

namespace {

constexpr const char* TripFile = "trip.mdb";

bool toSwitch(const std::string& text) { return !text.empty() && base::Value(text).asBoolean(); }

std::array<ConnectionGlobal*, 6> connections() {
    return {&gcnRouting, &gcnRouteWrk, &gcnTrip, &gcnVIREORpt, &gcnDeadCross, &gcnQDSC};
}

void close(ConnectionGlobal& connection) {
    if (!connection) {
        return;
    }
    ado::Connection& released = *connection;
    connection.release();
    if (released.State() == ado::ObjectState::Open) {
        released.Close();
    }
}

}  // namespace

void SetPaths() {
    trapped("SetPaths", "mdlDBConnection", [] {
        gIniFile = COSInfo().windowsDirectory() + files::Separator + "route.ini";
        gDataPath = INIGetSettingString("AppPaths", "datapath", "", gIniFile);
        gProgPath = INIGetSettingString("AppPaths", "progpath", "", gIniFile);
        gVIREOPath = INIGetSettingString("AppPaths", "VIREOpath", "", gIniFile);
        gReportPath = folderOfFiles() + "RouteRpts";
        gErrorHandling =
            toSwitch(INIGetSettingString("AppSettings", "ERRORHANDLING", "", gIniFile));
    });
}

std::string databasePath(const std::string& folder, const std::string& name) {
    return store::isServer(folder) ? store::pathIn(folder, name) : files::find(folder + name);
}

const std::string& folderOfFiles() { return store::isServer(gDataPath) ? gProgPath : gDataPath; }

const std::string& workPath() { return store::isServer(gDataPath) ? gDataPath : gProgPath; }

std::unique_ptr<ado::Connection> GetJetConnection(const std::string& path, const std::string&,
                                                  const std::string&, const std::string&) {
    auto connection = std::make_unique<ado::Connection>();
    connection->Provider("Microsoft.Jet.OLEDB.4.0");
    connection->Open(store::isServer(path) ? path : files::find(path), "", "", -1);
    return connection;
}

void OpenRoutingDatabase() {
    trapped("OpenRoutingDatabase", "mdlDBConnection", [] {
        gcnRouting = GetJetConnection(databasePath(gDataPath, "routing.mdb"));
        gcnRouteWrk = GetJetConnection(databasePath(workPath(), "RouteWrk.mdb"));
        gcnTrip = GetJetConnection(databasePath(gVIREOPath, TripFile));
        gcnRouting->link(databasePath(gVIREOPath, TripFile));
        gcnVIREORpt = GetJetConnection(databasePath(gDataPath, "VIREORpt.mdb"));
        gcnVIREORpt->link(databasePath(gDataPath, "routing.mdb"));
        gcnVIREORpt->link(databasePath(gVIREOPath, TripFile));
        gcnDeadCross = GetJetConnection(databasePath(gDataPath, "DEADCROSS.mdb"));
        gcnQDSC = GetJetConnection(databasePath(gVIREOPath, "ZBQDSC1.mdb"));
    });
}

void closeConnections() {
    std::exception_ptr failure;
    for (ConnectionGlobal* connection : connections()) {
        try {
            close(*connection);
        } catch (const std::exception&) {
            failure = failure ? failure : std::current_exception();
        }
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

void ShutDown(int exitCode) {
    try {
        closeConnections();
        base::ports().forms->unloadAll();
    } catch (const std::exception&) {
        report("ShutDown", "mdlDBConnection", AfterError::ProgramEnds);
    }
    throw base::EndProgram{exitCode};
}

}  // namespace startup
