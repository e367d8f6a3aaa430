#include <QAction>
#include <QMenu>
#include <QSignalBlocker>

#include <fmt/format.h>

#include "map/ground/zoomrules.h"
#include "map/window/mapwindow.h"
#include "platform/controls/layoutmemory.h"

#include "ui_mapwindow.h"

// Students' homes, for those who may see them.

namespace map {

constexpr auto HomesKey = "MapWindow/Homes";

bool MapWindow::showsHomes() {
    return controls::LayoutMemory::instance().recall(QLatin1String(HomesKey)).value<QVariant>() ==
           QVariant(true);
}

void MapWindow::Homes_Click(bool on) {
    controls::LayoutMemory::instance().remember(QLatin1String(HomesKey), on);
    seekHomes(true);
    placeHomes();
    if (on && !homesAreFor_.empty()) {
        const bool isFar = ui_->Streets->camera().feetPerPixel() >= HomesBelow;
        news_ = homes_.empty()
                    ? "The district has no list of students' homes"
                    : fmt::format("{} of {} homes lie around what is shown{}", shownHomes_.size(),
                                  homes_.size(), isFar ? "; go nearer to see them" : "");
    }
    showScene(false);
    tellStatus();
}

/// Who may not see them gets none, and finds the layer off.
void MapWindow::seekHomes(bool tell) {
    homes_.clear();
    homesAreFor_.clear();
    if (!showsHomes() || !district_.homes) {
        return;
    }
    if (auto homes = district_.homes(tell)) {
        homes_ = *std::move(homes);
        homesAreFor_ = district_.user();
        return;
    }
    controls::LayoutMemory::instance().remember(QLatin1String(HomesKey), false);
    auto* action = ui_->More->menu()->findChild<QAction*>(QStringLiteral("Homes"));
    const QSignalBlocker quiet(action);
    action->setChecked(false);
}

/// Another user at this desktop is asked for anew.
void MapWindow::placeHomes() {
    shownHomes_.clear();
    if (!homesAreFor_.empty() && homesAreFor_ != district_.user()) {
        seekHomes(false);
    }
    if (homes_.empty() || view_ == View::Nothing) {
        return;
    }
    const bool isOne = isOfOneRun();
    shownHomes_ =
        homesAround(extentOf(sceneNow()), homes_, isOne ? shown_.run : MappedRun(),
                    isOne ? studentsOf(district_.routing, shown_.run) : StopsOfStudents());
}

}  // namespace map
