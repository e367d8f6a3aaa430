#include <QMenu>
#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "map/run/solvedrun.h"
#include "map/shown/districtground.h"
#include "map/shown/fields.h"
#include "map/window/mapwindow.h"
#include "platform/controls/qtext.h"
#include "streets/order/order.h"

#include "ui_mapwindow.h"

// What changes a run on the map: stops that are moved, placed and put into another order.

namespace map {

namespace {

using controls::toQt;

std::vector<bool> fixedStops(const MappedRun& run) {
    std::vector<bool> fixed;
    std::ranges::transform(run.stops, std::back_inserter(fixed), isFixed);
    return fixed;
}

std::string suggestionText(const streets::OrderSuggestion& found) {
    const auto& today = found.today;
    const auto& better = found.suggested;
    return fmt::format("Longest ride {:.0f} minutes instead of {:.0f}; {}{}",
                       better.longestRideMinutes, today.longestRideMinutes,
                       found.isBest ? "no order is quicker" : "a quicker order may exist",
                       found.keepsLimits ? "" : "; seats or ride time are exceeded");
}

}  // namespace

void MapWindow::wireStops() {
    on(ui_->PlaceIt, &QPushButton::clicked, "PlaceIt_Click", &MapWindow::PlaceIt_Click);
    on(ui_->Rows, &RowList::rowDropped, "Rows_Drop", &MapWindow::dropRow);
    on(ui_->Streets, &MapView::stopDragged, "Streets_Drag", &MapWindow::dragStop);
    on(ui_->Streets, &MapView::stopDropped, "Streets_Drop", &MapWindow::dropStop);
    on(ui_->Streets, &MapView::stopPutBack, "Streets_PutBack", [this] {
        news_ = "The stop is where it was";
        show(View::Run);
    });
    on(ui_->Streets, &MapView::menuAsked, "Streets_Menu", &MapWindow::showMenu);
}

bool MapWindow::isChanged() const {
    return !std::ranges::equal(stored_.stops, shown_.run.stops,
                               [](const MappedStop& one, const MappedStop& other) {
                                   return one.stopTripId == other.stopTripId &&
                                          one.at.x == other.at.x && one.at.y == other.at.y;
                               });
}

/// A run that has stops without a place beside the one that got one now waits for theirs.
void MapWindow::compareWith(ShownRun changed) {
    shown_ = std::move(changed);
    if (shown_.way.isKnown()) {
        compareShown();
        chosenStop_ = NoStop;
        return show(View::Compared);
    }
    const auto& unserved = shown_.way.solution.unserved;
    const auto other = std::ranges::find_if(unserved, [](const streets::Unserved& one) {
        return one.why != streets::Unserved::Why::NoPlace;
    });
    if (other == unserved.end()) {
        chosenStop_ = unserved.front().stop;
        news_ = fmt::format("Placed, not saved yet: {} more of its stops have no place",
                            unserved.size());
        return show(View::Run);
    }
    news_ = streets::complaint(runToSolve(shown_.run).stops[other->stop], other->why) +
            " Nothing was changed";
    leaveAsStored();
}

void MapWindow::leaveAsStored() {
    shown_ = {.run = stored_, .way = wayOf(drivenOn_->network(), stored_)};
    chosenStop_ = NoStop;
    show(View::Run);
}

/// Rows are stops but for the garage and turn points.
void MapWindow::dropRow(int row, int before) {
    const auto* from = ui_->Rows->row(row);
    const auto* to = ui_->Rows->row(before);
    if (view_ != View::Run || from == nullptr || from->index >= shown_.run.stops.size()) {
        return;
    }
    const auto place = to == nullptr || to->index >= shown_.run.stops.size()
                           ? (before <= 0 ? 0 : shown_.run.stops.size())
                           : to->index;
    if (auto changed = withStopMoved(shown_.run, from->index, place)) {
        auto way = wayOf(drivenOn_->network(), *changed);
        compareWith({.run = std::move(*changed), .way = std::move(way)});
    }
}

/// The way follows the stop, and the minutes with it.
void MapWindow::dragStop(const Hit& hit, geo::Feet to) {
    const auto stop = view_ == View::Run ? stopOf(hit) : NoStop;
    if (stop == NoStop) {
        return;
    }
    const auto dragged = pointedAt(drivenOn_->network(), shown_.run, stop, to);
    const int number = shown_.run.numberOf(stop);
    if (!dragged) {
        ui_->Status->setText(tr("Stop %1: no bus can serve it there").arg(number));
        return;
    }
    const auto comparison = compare(shown_.run, dragged->shown.way.solution);
    ui_->Streets->showScene(comparisonScene(dragged->shown, comparison, oldLines_, stop));
    ui_->Status->setText(
        tr("Stop %1: %2, %3 minutes. Esc puts it back")
            .arg(number)
            .arg(toQt(dragged->corner), toQt(signedMinutes(comparison.minutesMore))));
}

void MapWindow::dropStop(const Hit& hit, geo::Feet to) {
    if (const auto stop = view_ == View::Run ? stopOf(hit) : NoStop; stop != NoStop) {
        placeStop(stop, to);
    }
}

void MapWindow::placeStop(std::size_t stop, geo::Feet at) {
    auto run = withStopAt(shown_.run, stop, at);
    auto way = wayOf(drivenOn_->network(), run);
    compareWith({.run = std::move(run), .way = std::move(way)});
    if (view_ == View::Compared) {
        chooseStop(stop);
    }
}

void MapWindow::showMenu(const QPoint& at, geo::Feet place) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addPlacing(*menu, place);
    addDetours(*menu, place);
    if (menu->isEmpty()) {
        return menu->deleteLater();
    }
    menu->popup(at);
}

void MapWindow::addPlacing(QMenu& menu, geo::Feet place) {
    const int number = chosenStop_ == NoStop ? 0 : shown_.run.numberOf(chosenStop_);
    if (view_ != View::Run || number == 0) {
        return;
    }
    const auto text = shown_.run.stops[chosenStop_].isPlaced ? tr("&Move Stop %1 Here")
                                                             : tr("&Place Stop %1 Here");
    on(menu.addAction(text.arg(number)), &QAction::triggered, "PlaceHere_Click",
       [this, stop = chosenStop_, place] { placeStop(stop, place); });
}

void MapWindow::MoveStop_Click(bool on) {
    ui_->Streets->setMovingStops(on);
    news_ = on ? "Drag a stop to where it should be" : "Stops are dragged with Alt only";
    tellStatus();
}

void MapWindow::SuggestOrder_Click() {
    if (!isChanged() && !read(shown_.run.id)) {
        return tellStatus();
    }
    const auto& run = shown_.run;
    const auto found = streets::suggestOrder(
        drivenOn_->network(), runToSolve(run), fixedStops(run),
        {.seats = run.seats.value_or(0), .rideMinutes = longestRide(district_.routing)});
    if (!found.unserved.empty() || std::ranges::is_sorted(found.suggested.stops)) {
        news_ = found.unserved.empty() ? "No quicker order was found"
                                       : "An order can be suggested once all stops can be served";
        return show(View::Run);
    }
    auto changed = inOrder(run, found.suggested.stops);
    auto way = wayOf(drivenOn_->network(), changed);
    news_ = suggestionText(found);
    compareWith({.run = std::move(changed), .way = std::move(way)});
}

void MapWindow::PlaceIt_Click() {
    if (view_ == View::Run && chosenStop_ != NoStop) {
        return offerCandidates(shown_.run.stops[chosenStop_].name);
    }
    if (view_ == View::Candidates && chosenCandidate_ < candidates_.size()) {
        const auto stop = candidates_[chosenCandidate_].stop;
        compareWith(candidates_[chosenCandidate_].shown);
        if (view_ == View::Compared) {
            chooseStop(stop);
        }
    }
}

void MapWindow::offerCandidates(const std::string& words) {
    wantedPlace_ = words;
    looking_.ask([streets = drivenOn_, run = shown_.run, stop = chosenStop_,
                  words](const std::stop_token& given) {
        return candidatesFor(*streets, run, stop, words, given);
    });
    ui_->Status->setText(tr("Looking for places..."));
    waiting_->start();
    showCandidates(SoonEnough);
}

void MapWindow::showCandidates(std::chrono::milliseconds patience) {
    if (auto found = looking_.take(patience)) {
        candidates_ = *std::move(found);
        chosenCandidate_ = 0;
        if (candidates_.empty()) {
            news_ = fmt::format("No place was found for \"{}\"", wantedPlace_);
        }
        show(View::Candidates);
    }
}

void MapWindow::showPoints() {
    trap("showPoints", [&] {
        load();
        ui_->More->menu()->findChild<QAction*>(QStringLiteral("AllStops"))->setChecked(true);
        showForm();
    });
}

void MapWindow::AllStops_Click(bool on) {
    allStops_ = on ? readAllStops(district_.routing) : std::vector<SearchHit>{};
    showScene(view_ == View::Nothing);
}

/// Behind all else, as one run more.
void MapWindow::addAllStops(Scene& scene) const {
    if (allStops_.empty()) {
        return;
    }
    DrawnRun layer;
    layer.isChosen = false;
    for (const auto& stop : allStops_) {
        DrawnStop drawn;
        drawn.at = stop.at;
        drawn.look = StopLook::Ring;
        drawn.isPale = true;
        layer.stops.push_back(std::move(drawn));
    }
    if (scene.runs.empty()) {
        scene.runs.emplace_back();
    }
    scene.runs.push_back(std::move(layer));
}

void MapWindow::driveOn(std::shared_ptr<const streets::DistrictStreets> streets) {
    trap("driveOn", [&] {
        district_.streets = std::move(streets);
        if (steps_.empty()) {
            ui_->Streets->setGround(groundOf(district_.streets));
        }
        if (view_ == View::Candidates) {
            view_ = View::Run;
        }
        if (view_ != View::Compared) {
            Reload();
        }
    });
}

}  // namespace map
