#include "startup/main/RunStartup.h"

#include "data/lookups/mdlGetItems.h"
#include "help/viewer/guidedesk.h"
#include "platform/base/error.h"
#include "platform/base/ports.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/listexporter.h"
#include "platform/forms/titles.h"
#include "platform/store/base/database.h"
#include "reports/lists/exportlist.h"
#include "runsearch/search/frmTarn.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/mdlErrorHandler.h"
#include "startup/base/mdlGetMapSoftware.h"
#include "startup/base/mdlNONULL.h"
#include "startup/base/mdlSecurity_Routines.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"
#include "startup/districts/knowndistricts.h"
#include "startup/logon/logonprogram.h"
#include "startup/logon/logonticket.h"
#include "startup/version/districtversion.h"

namespace startup {

namespace {

void requireFittingDistrict() {
    using data::DatabaseFile;
    requireVersion({{DatabaseFile::Routing, *gcnRouting},
                    {DatabaseFile::RouteWrk, *gcnRouteWrk},
                    {DatabaseFile::Trip, *gcnTrip},
                    {DatabaseFile::VIREORpt, *gcnVIREORpt},
                    {DatabaseFile::DeadCross, *gcnDeadCross},
                    {DatabaseFile::QDSC, *gcnQDSC}});
}

constexpr auto LookOnlyTitle = "Nothing Can Be Saved";
constexpr auto LookOnlyText =
    "Oops, you can look at this district, but not all of it can be changed.  Please ask whoever "
    "looks after the program for the right to write to the files below.";

bool isWritable(const ado::Connection& connection) {
    try {
        connection.requireWritable();
        return true;
    } catch (const store::StoreError&) {
        return false;
    }
}

/// At the start, so that nobody types in vain.
void tellOfFilesToLookAtOnly() {
    using data::DatabaseFile;
    const std::initializer_list<OpenFile> changed{{DatabaseFile::Routing, *gcnRouting},
                                                  {DatabaseFile::RouteWrk, *gcnRouteWrk},
                                                  {DatabaseFile::Trip, *gcnTrip},
                                                  {DatabaseFile::DeadCross, *gcnDeadCross}};
    std::string unwritable;
    for (const auto& [file, connection] : changed) {
        if (!isWritable(connection)) {
            unwritable += (unwritable.empty() ? "" : "\n") + std::string(data::fileName(file));
        }
    }
    if (!unwritable.empty()) {
        base::MsgBox({.text = LookOnlyText,
                      .title = LookOnlyTitle,
                      .icon = base::MsgIcon::Exclamation,
                      .concerns = unwritable});
    }
}

[[noreturn]] void handOverToLogon() {
    startLogonProgram();
    throw base::EndProgram{};
}

bool isRefused(const std::string& user) {
    if (NoNullString(user) == base::Value(" ") || LoadUserPermissions(gCommandLine)) {
        return true;
    }
    return requiresPassword() && !tookTicketFor(user);
}

}  // namespace

void Main(const std::string& commandLine) {
    // The error switch is not read yet: start-up itself runs without a trap, on purpose.
    trapped("Main", "RunStartup", [&] {
        SetPaths();
        SetErrorHandling();
        OpenRoutingDatabase();
        requireFittingDistrict();
        GetMapSoftware();
        TotSavedRuns = 0;
        forms::listExporter() = reports::exportList;
        forms::listPrinter() = reports::printList;
        help::offerGuide();
        auto& mainForm = forms::FormRegistry::instance().make<runsearch::frmTarn>();
        gCommandLine = commandLine;
        if (isRefused(gCommandLine)) {
            handOverToLogon();
        }
        forms::endTitlesWith({data::GetDistrictName(), gCommandLine});
        tellOfFilesToLookAtOnly();
        mainForm.showForm();
    });
}

void rememberDistrict() {
    KnownDistricts().use(districtInForce(), data::GetDistrictName(), gCommandLine);
}

std::string commandLineOf(int argc, const char* const* argv) {
    std::string line;
    for (int i = 1; i < argc; ++i) {
        line += (i == 1 ? "" : " ") + std::string(argv[i]);
    }
    return line;
}

}  // namespace startup
