#include <algorithm>

#include "map/small/smallmap.h"
#include "map/small/streetplaces.h"
#include "platform/controls/layoutmemory.h"
#include "platform/controls/qtext.h"
#include "startup/base/session.h"
#include "stops/sequence/Add_Remove_Stops.h"

#include "ui_Add_Remove_Stops.h"

namespace stops {

using controls::LayoutMemory;

constexpr auto MapKey = "Add_Remove_Stops/Map";
constexpr auto MapSplitterKey = "Add_Remove_Stops/MapSplitter";
constexpr int ListRows = 12;  ///< so many stay in sight above a map
constexpr int MapLines = 9;   ///< a lower map tells nothing

void Add_Remove_Stops::wireMap() {
    auto& memory = LayoutMemory::instance();
    auto* splitter = ui_->MapSplitter;
    splitter->setCollapsible(0, false);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    splitter->restoreState(memory.recall(MapSplitterKey).toByteArray());
    const auto wanted = memory.recall(MapKey);
    ui_->ShowMap->setChecked(!wanted.isValid() || wanted.toBool());
    on(ui_->ShowMap, &QPushButton::clicked, "ShowMap_Click", &Add_Remove_Stops::foldMap);
    on(splitter, &QSplitter::splitterMoved, "MapSplitter_Moved", [this] {
        LayoutMemory::instance().remember(MapSplitterKey, ui_->MapSplitter->saveState());
        if (ui_->MapSplitter->sizes().last() == 0) {
            ui_->ShowMap->setChecked(false);
            foldMap();
        }
    });
    on(ui_->SmallMap, &map::SmallMap::opened, "showMap", &Add_Remove_Stops::showMap);
    on(ui_->SmallMap, &map::SmallMap::stopClicked, "SmallMap_StopClicked",
       &Add_Remove_Stops::SmallMap_StopClicked);
    on(ui_->StopList, &controls::MultiColumnList::rowClicked, "markOnMap",
       &Add_Remove_Stops::markOnMap);
}

void Add_Remove_Stops::showMap() {
    auto shown = maps_.mapOf(*startup::gcnRouting, run_.run, map::streetsOfSession());
    if (shown.isOpening) {
        return;
    }
    canBeMapped_ = shown.reason.empty();
    if (canBeMapped_) {
        takeMap(std::move(shown));
    }
    arrangeMap();
}

/// A disc has the number that its stop has in the list.
void Add_Remove_Stops::takeMap(map::RunMap shown) {
    mapped_ = std::move(shown.stopTripIds);
    auto& drawn = shown.scene.runs.front().stops;
    for (int row = 0; row < ui_->StopList->rows(); ++row) {
        const auto id = ui_->StopList->cellValue(row, "ID").asInteger();
        const auto place = std::ranges::find(mapped_, id) - mapped_.begin();
        if (place < std::ssize(drawn)) {
            drawn[static_cast<std::size_t>(place)].number = std::to_string(row + 1);
        }
    }
    ui_->SmallMap->showScene(std::move(shown.ground), std::move(shown.scene),
                             controls::toQt(shown.told));
    markOnMap();
}

bool Add_Remove_Stops::hasRoomForMap() const {
    const int row = ui_->StopList->sizeHintForRow(0);
    const int needed =
        ListRows * std::max(row, fontMetrics().height()) + MapLines * fontMetrics().height();
    return ui_->MapSplitter->height() >= needed;
}

void Add_Remove_Stops::arrangeMap() {
    const bool isOffered = canBeMapped_ && hasRoomForMap();
    ui_->ShowMap->setVisible(isOffered);
    ui_->SmallMap->setVisible(isOffered && ui_->ShowMap->isChecked());
}

void Add_Remove_Stops::foldMap() {
    LayoutMemory::instance().remember(MapKey, ui_->ShowMap->isChecked());
    arrangeMap();
    if (ui_->SmallMap->isVisible() && ui_->MapSplitter->sizes().last() == 0) {
        ui_->MapSplitter->setSizes({3, 2});
    }
}

void Add_Remove_Stops::markOnMap() {
    const int row = ui_->StopList->chosenRow();
    const auto id = row < 0 ? 0 : ui_->StopList->cellValue(row, "ID").asInteger();
    const auto found = std::ranges::find(mapped_, id);
    ui_->SmallMap->choose(found == mapped_.end()
                              ? std::nullopt
                              : std::optional<std::size_t>(found - mapped_.begin()));
}

void Add_Remove_Stops::SmallMap_StopClicked(int stop) {
    selectStops({mapped_.at(static_cast<std::size_t>(stop))});
    ui_->StopList->setFocus();
    enableButtons();
    markOnMap();
}

}  // namespace stops
