#include "tools/launcher/opendistrict.h"

#include <cstdlib>
#include <vector>

#include "platform/files/installation.h"
#include "platform/ini/ini.h"
#include "platform/process/process.h"
#include "platform/process/programs.h"
#include "startup/base/COSInfo.h"
#include "startup/districts/knowndistricts.h"

namespace tools::launcher {

namespace {

constexpr auto LogonProgram = "Logon.Exe";

}  // namespace

std::string programOfSuite(const std::string& name) {
    const files::Installation installed = files::installation();
    std::vector<std::string> folders = process::foldersOfPath();
    folders.insert(folders.begin(), {installed.programs, installed.companions});
    return process::findProgram(name, folders);
}

void openDistrict(const std::string& folder) {
    const std::string programs =
        ini::readString("AppPaths", "progpath", "", startup::settingsIn(folder));
    std::string logon = process::findProgram(LogonProgram, {programs});
    if (logon.empty()) {
        logon = programOfSuite(LogonProgram);
    }
    ::setenv(startup::DistrictVariable, folder.c_str(), 1);
    process::host().start(logon.empty() ? programs + LogonProgram : logon, {"TARN"});
}

}  // namespace tools::launcher
