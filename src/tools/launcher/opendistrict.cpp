#include "tools/launcher/opendistrict.h"

#include <cstdlib>
#include <exception>

#include "platform/ini/ini.h"
#include "platform/process/process.h"
#include "platform/process/programs.h"
#include "startup/base/COSInfo.h"
#include "startup/base/mdlGetMapSoftware.h"
#include "startup/districts/knowndistricts.h"

namespace tools::launcher {

namespace {

constexpr auto LogonProgram = "Logon.Exe";

constexpr auto MapProgram = "vireo-map";

/// Where the district's setting asks for one. Another map that is there already stays; without one
/// the suite says so when a run is sent.
void startMap(const std::string& settings) {
    const auto program = process::programOfSuite(MapProgram);
    if (program.empty() ||
        ini::readString("AppSettings", "MAPSoftware", "", settings) != startup::ArcView) {
        return;
    }
    try {
        process::host().start(program, {"--waiting"});
    } catch (const std::exception&) {
        return;
    }
}

}  // namespace

void openDistrict(const std::string& folder) {
    const auto settings = startup::settingsIn(folder);
    const std::string programs = ini::readString("AppPaths", "progpath", "", settings);
    std::string logon = process::findProgram(LogonProgram, {programs});
    if (logon.empty()) {
        logon = process::programOfSuite(LogonProgram);
    }
    ::setenv(startup::DistrictVariable, folder.c_str(), 1);
    startMap(settings);
    process::host().start(logon.empty() ? programs + LogonProgram : logon, {"TARN"});
}

}  // namespace tools::launcher
