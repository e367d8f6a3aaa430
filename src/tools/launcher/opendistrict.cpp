#include "tools/launcher/opendistrict.h"

#include <cstdlib>
#include <string>

#include "platform/ini/ini.h"
#include "platform/process/process.h"
#include "platform/process/programs.h"
#include "startup/base/COSInfo.h"
#include "startup/districts/knowndistricts.h"

namespace tools::launcher {

namespace {

constexpr auto LogonProgram = "Logon.Exe";

}  // namespace

void openDistrict(const std::string& folder) {
    const std::string programs =
        ini::readString("AppPaths", "progpath", "", startup::settingsIn(folder));
    std::string logon = process::findProgram(LogonProgram, {programs});
    if (logon.empty()) {
        logon = process::programOfSuite(LogonProgram);
    }
    ::setenv(startup::DistrictVariable, folder.c_str(), 1);
    process::host().start(logon.empty() ? programs + LogonProgram : logon, {"TARN"});
}

}  // namespace tools::launcher
