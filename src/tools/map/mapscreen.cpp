#include "tools/map/mapscreen.h"

#include "map/window/mapwindow.h"
#include "platform/forms/application.h"
#include "platform/forms/formregistry.h"
#include "startup/base/session.h"
#include "startup/districts/knowndistricts.h"
#include "streets/district/districtstreets.h"
#include "streets/network/gridnetwork.h"

namespace tools::map {

namespace {

using Window = ::map::MapWindow;

/// Opened once, when the window is.
std::shared_ptr<const streets::DistrictStreets> districtStreets() {
    static const auto streets =
        std::make_shared<const streets::DistrictStreets>(streets::gridNetwork({}), streets::Grid{});
    return streets;
}

/// Who works on the district at this desktop.
std::string lastUser() {
    return startup::KnownDistricts().find(startup::districtInForce()).lastUser;
}

Window& window() {
    return forms::FormRegistry::instance().make<Window>(
        ::map::MapDistrict{*startup::gcnRouting, districtStreets(), lastUser});
}

template <class Step>
void guarded(Step step) {
    forms::Application::instance().guarded(step);
}

void ask(const std::string& run, const std::function<void(bool)>& decided) {
    guarded([&] {
        window().ask(run, [decided](::map::Decision decision) {
            decided(decision == ::map::Decision::TakenOver);
        });
    });
}

}  // namespace

Screen desktopScreen() {
    return {.show = [](const std::string& run) { guarded([&] { window().showRun(run); }); },
            .asksFirst = [] { return Window::asksFirst(); },
            .ask = ask,
            .saved =
                [](const std::string& run) {
                    guarded([&] {
                        if (forms::FormRegistry::instance().find("MapWindow") != nullptr) {
                            window().runSaved(run);
                        }
                    });
                },
            .showPoints = showMap};
}

void showMap() {
    guarded([] { window().showForm(); });
}

}  // namespace tools::map
