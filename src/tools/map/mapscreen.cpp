#include "tools/map/mapscreen.h"

#include "map/small/streetplaces.h"
#include "map/window/mapwindow.h"
#include "platform/ado/sqltext.h"
#include "platform/forms/application.h"
#include "platform/forms/formregistry.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/mdlSecurity_Routines.h"
#include "startup/base/session.h"
#include "startup/districts/knowndistricts.h"
#include "streets/district/districtstreets.h"
#include "streets/district/homes.h"

namespace tools::map {

namespace {

using Window = ::map::MapWindow;

/// What the district drives on, for a window that is made anew.
DistrictStreets& streetsNow() {
    static DistrictStreets streets;
    return streets;
}

/// Who works on the district at this desktop.
std::string lastUser() {
    return startup::KnownDistricts().find(startup::districtInForce()).lastUser;
}

/// Homes are for who may print them with the students' reports. Rights may have changed since the
/// last time.
std::optional<std::vector<streets::Home>> homesNow(bool tell) {
    constexpr auto PrintPermission = "RTG270";
    if (!startup::gcnQDSC) {
        startup::gcnQDSC =
            startup::GetJetConnection(startup::databasePath(startup::gVIREOPath, "ZBQDSC1.mdb"));
    }
    const bool isUnknown = startup::LoadUserPermissions(ado::escaped(lastUser()));
    startup::gSecurityOn = startup::gSecurityOn || isUnknown;
    return startup::HasAuthority(PrintPermission, tell)
               ? std::optional(streets::readHomes(startup::folderOfFiles()))
               : std::nullopt;
}

Window& window() {
    return forms::FormRegistry::instance().make<Window>(
        ::map::MapDistrict{*startup::gcnRouting, streetsNow(), lastUser, homesNow});
}

template <class Step>
void guarded(Step step) {
    forms::Application::instance().guarded(step);
}

template <class Step>
void ifOpen(Step step) {
    if (forms::FormRegistry::instance().find("MapWindow") != nullptr) {
        guarded(step);
    }
}

void ask(const std::string& run, const std::function<void(bool)>& decided) {
    guarded([&] {
        window().ask(run, [decided](::map::Decision decision) {
            decided(decision == ::map::Decision::TakenOver);
        });
    });
}

}  // namespace

DistrictStreets openStreets(const std::string& closedStreets) {
    return streets::openStreets({.settings = startup::gIniFile,
                                 .folder = startup::folderOfFiles(),
                                 .closed = closedStreets});
}

Screen desktopScreen() {
    streetsNow() = streets::openStreets(::map::streetsOfSession());
    return {.show = [](const std::string& run) { guarded([&] { window().showRun(run); }); },
            .asksFirst = [] { return Window::asksFirst(); },
            .ask = ask,
            .saved = [](const std::string& run) { ifOpen([&] { window().runSaved(run); }); },
            .showPoints = [] { guarded([] { window().showPoints(); }); },
            .drive =
                [](const DistrictStreets& streets) {
                    streetsNow() = streets;
                    ifOpen([&] { window().driveOn(streets); });
                }};
}

void showMap() {
    guarded([] { window().showForm(); });
}

}  // namespace tools::map
