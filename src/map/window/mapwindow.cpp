#include "map/window/mapwindow.h"

#include <QMenu>
#include <QTimer>
#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "map/shown/districtground.h"
#include "map/window/cures.h"
#include "map/window/mapview_access.h"
#include "platform/controls/access.h"
#include "platform/controls/qtext.h"
#include "streets/district/placesearch.h"

#include "ui_mapwindow.h"

namespace map {

using controls::fromQt;
using controls::toQt;

constexpr auto Form_ = "MapWindow";
constexpr std::size_t MostPlaces = 10;
constexpr int WaitingTurn = 20;  ///< milliseconds
constexpr double StopView = 1;   ///< feet a pixel

MapWindow::MapWindow(MapDistrict district)
    : TrappedForm(Form_, nullptr, startup::AfterError::FormStays),
      ui_(std::make_unique<Ui::MapWindow>()),
      district_(std::move(district)),
      drivenOn_(district_.streets),
      base_(district_.streets),
      waiting_(new QTimer(this)) {
    controls::makeAccessible<MapView, MapAccess>();
    ui_->setupUi(this);
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    ui_->Streets->setGround(groundOf(district_.streets));
    waiting_->setInterval(WaitingTurn);
    on(waiting_, &QTimer::timeout, "Waiting_Timer", &MapWindow::Waiting_Timer);
    wireControls();
    wireMap();
    wireStops();
    fillMenu();
}

MapWindow::~MapWindow() = default;

void MapWindow::Form_Load() {
    seekHomes(false);
    show(View::Nothing);
    ui_->Rows->setFocus();
}

/// What is being looked for would be given up with the run that is read again.
void MapWindow::Form_Activate() {
    if (view_ == View::Run && !isChanged() && !looking_.isAsked() && !detouring_.isAsked()) {
        Reload();
    }
}

/// A window that is closed has decided nothing: what is stored stays.
void MapWindow::Form_Unload() {
    toSolve_.clear();
    while (!asked_.empty()) {
        answerAsked(Decision::Kept);
    }
}

bool MapWindow::read(const std::string& run) {
    auto stored = readMappedRun(district_.routing, run);
    if (!stored) {
        news_ = fmt::format("The run {} is not there any more", run);
        return false;
    }
    stored_ = *stored;
    forgetDetours();
    shown_ = {.run = std::move(*stored)};
    shown_.way = wayOf(drivenOn_->network(), shown_.run);
    comparison_.reset();
    oldLines_ = linesOf(shown_.way);
    return true;
}

void MapWindow::showRun(const std::string& run) {
    trap("showRun", [&] {
        load();
        if (asked_.empty()) {
            news_.clear();
            chosenStop_ = NoStop;
            if (read(run)) {
                show(View::Run);
            } else {
                tellStatus();
            }
        }
        showForm();
    });
}

void MapWindow::runSaved(const std::string& run) {
    trap("runSaved", [&] {
        if (isLoaded() && isOfOneRun() && asked_.empty() && shown_.run.id == run) {
            news_ = fmt::format("Run {} was solved", run);
            Reload();
        }
    });
}

void MapWindow::Reload() {
    const auto chosen = chosenStop_;
    if (view_ == View::Runs) {
        for (auto& shown : runs_) {
            if (auto stored = readMappedRun(district_.routing, shown.run.id)) {
                shown.run = std::move(*stored);
                shown.way = wayOf(district_.streets->network(), shown.run);
            }
        }
        show(View::Runs);
    } else if (view_ != View::Nothing && view_ != View::Compared && read(shown_.run.id)) {
        chosenStop_ = chosen < shown_.run.stops.size() ? chosen : NoStop;
        show(view_);
    } else {
        tellStatus();
    }
}

void MapWindow::show(View view) {
    const bool fits = view != view_ && view != View::Directions && view_ != View::Directions &&
                      view != View::Compared;
    view_ = view;
    looking_.giveUp();
    detouring_.giveUp();
    setWindowTitle(view == View::Runs      ? tr("Map - %1").arg(toQt(runsHeading_))
                   : view == View::Nothing ? tr("Map")
                                           : tr("Map - Run %1").arg(toQt(shown_.run.id)));
    seekCures();
    placeHomes();
    showPanel();
    showScene(fits || chosenStop_ == NoStop);
    showButtons();
    showTrouble();
    tellStatus();
}

Panel MapWindow::panelNow() const {
    switch (view_) {
        case View::Nothing:
            return {.heading = "No run"};
        case View::Runs:
            return panelOf(runs_, runsHeading_);
        case View::Compared: {
            auto panel = panelOf(shown_, *comparison_);
            panel.note += steps_.empty() ? "" : " " + detourText(steps_);
            return panel;
        }
        case View::Candidates:
            return candidatesPanelOf(shown_.run, chosenStop_, candidates_);
        case View::Directions:
            return directionsPanelOf(shown_);
        case View::Run:
            break;
    }
    return panelOf(shown_);
}

Scene MapWindow::sceneNow() const {
    if (view_ == View::Nothing) {
        return {};
    }
    if (view_ == View::Runs) {
        return sceneOf(std::span<const ShownRun>(runs_), chosenRun_);
    }
    if (view_ == View::Compared) {
        return comparisonScene(shown_, *comparison_, oldLines_, chosenStop_);
    }
    if (view_ == View::Candidates && !candidates_.empty()) {
        return candidatesScene(candidates_, chosenCandidate_);
    }
    return sceneOf(shown_, chosenStop_);
}

void MapWindow::showPanel() {
    auto panel = panelNow();
    ui_->Heading->setText(toQt(panel.heading));
    ui_->Subject->setText(toQt(panel.subject));
    ui_->Subject->setVisible(!panel.subject.empty() && !ui_->Rows->isNarrow());
    ui_->Totals->setText(toQt(panel.totals));
    ui_->Gain->setVisible(!panel.note.empty());
    ui_->Gain->say(controls::Tone::Plain, controls::toRich(panel.note));
    ui_->Rows->showRows(panel.columns, std::move(panel.rows));
    ui_->Rows->choose(ui_->Rows->rowOfIndex(view_ == View::Runs         ? chosenRun_
                                            : view_ == View::Candidates ? chosenCandidate_
                                                                        : chosenStop_));
}

void MapWindow::showScene(bool fits) {
    auto scene = sceneNow();
    const auto sight = firstSight(scene);
    addAllStops(scene);
    std::ranges::transform(shownHomes_, std::back_inserter(scene.homes), &ShownHome::drawn);
    ui_->Streets->showScene(std::move(scene), sight, fits ? MapView::Fit::Yes : MapView::Fit::No);
}

void MapWindow::showButtons() {
    const bool compared = view_ == View::Compared;
    ui_->TakeOver->setVisible(compared);
    ui_->KeepOldWay->setVisible(compared || view_ == View::Candidates);
    const bool lacksPlace =
        view_ == View::Run && chosenStop_ != NoStop && !shown_.run.stops[chosenStop_].isPlaced;
    ui_->PlaceIt->setVisible(lacksPlace || view_ == View::Candidates);
    ui_->PlaceIt->setEnabled(lacksPlace || !candidates_.empty());
    ui_->KeepOldWay->setText(compared ? tr("&Keep Old Way") : tr("&Back"));
    ui_->PlaceIt->setText(view_ == View::Candidates ? tr("&Place Here") : tr("&Find a Place"));
    ui_->SolveIt->setVisible(view_ == View::Run || view_ == View::Directions);
    ui_->SolveIt->setEnabled(isOfOneRun());
    ui_->OpenRun->setVisible(view_ == View::Runs);
    ui_->SolveRuns->setVisible(view_ == View::Runs);
    ui_->Directions->setVisible(view_ == View::Run || view_ == View::Directions);
    ui_->Directions->setChecked(view_ == View::Directions);
    ui_->TakeOver->setDefault(compared);
    ui_->SolveIt->setDefault(view_ == View::Run);
    ui_->OpenRun->setDefault(view_ == View::Runs);
    const auto actions = ui_->More->menu()->actions();
    actions[0]->setEnabled(isOfOneRun() && !compared && !shown_.run.school.empty());
    actions[1]->setEnabled(isOfOneRun() && !compared && shown_.run.routeKey != 0);
    ui_->Rows->setOrdering(view_ == View::Run);
    ui_->FindIt->setEnabled(!compared);
}

std::string MapWindow::textBelow() const {
    if (view_ == View::Candidates && chosenCandidate_ < candidates_.size()) {
        return fmt::format("{}", fmt::join(candidates_[chosenCandidate_].effects, "\n"));
    }
    return isOfOneRun() && view_ != View::Candidates
               ? troubleText(shown_.way.troubles, cures_, chosenStop_)
               : "";
}

/// In full, unless the panel is folded.
void MapWindow::showTrouble() {
    const auto text = textBelow();
    const bool isWarning =
        view_ != View::Candidates &&
        (chosenStop_ == NoStop || troubleAt(shown_.way.troubles, chosenStop_) != nullptr);
    ui_->Trouble->setVisible(!text.empty() && !ui_->Rows->isNarrow());
    ui_->Trouble->say(isWarning ? controls::Tone::Look : controls::Tone::Plain,
                      controls::toRich(text).replace(QLatin1Char('\n'), QLatin1String("<br>")),
                      isWarning ? std::optional(controls::Sign::Warning) : std::nullopt);
}

/// What curing the troubles costs comes when it is worked out.
void MapWindow::seekCures() {
    curing_.giveUp();
    cures_.clear();
    if (!isOfOneRun() || shown_.way.troubles.empty() || view_ == View::Candidates) {
        return;
    }
    curing_.ask([streets = drivenOn_, shown = shown_,
                 longest = longestRide(district_.routing)](const std::stop_token& stop) {
        return curesOf(streets->network(), shown, longest, stop);
    });
    waiting_->start();
    Waiting_Timer();
}

void MapWindow::Waiting_Timer() {
    if (auto cures = curing_.take()) {
        cures_ = *std::move(cures);
        showTrouble();
    }
    showCandidates({});
    showDetour({});
    if (!curing_.isAsked() && !looking_.isAsked() && !detouring_.isAsked()) {
        waiting_->stop();
    }
}

void MapWindow::tellStatus() {
    std::string text = std::exchange(news_, {});
    if (text.empty() && isOfOneRun() && chosenStop_ != NoStop) {
        text = spokenStop(shown_, chosenStop_);
    }
    if (text.empty() && view_ == View::Runs) {
        const auto seen = std::ranges::count(runs_, true, &ShownRun::isShown);
        text = fmt::format("{} of {} runs shown", seen, runs_.size());
    }
    if (text.empty() && view_ == View::Compared) {
        text =
            "The old way is dashed, the new one strong; figures: minutes later (+) or earlier "
            "(−) at the stop";
    }
    ui_->Status->setText(toQt(text));
    const bool sides = district_.streets && district_.streets->network().hasSides();
    ui_->Hint->setText(
        view_ == View::Compared ? tr("Nothing is saved until Take Over")
        : view_ == View::Runs   ? tr("A click on a way chooses its run, a double click opens it")
        : view_ == View::Candidates
            ? tr("Type an address or a corner to look for others; nothing is saved yet")
        : sides ? tr("Right-hand door; figures on the way: minutes of the leg")
                : tr("Figures on the way: minutes of the leg"));
}

void MapWindow::chooseRow(int row) {
    const auto* at = ui_->Rows->row(row);
    if (at == nullptr) {
        return;
    }
    if (view_ == View::Runs) {
        chosenRun_ = at->index;
        showScene(false);
        tellStatus();
    } else if (view_ == View::Candidates) {
        chosenCandidate_ = at->index;
        showScene(false);
        showTrouble();
        ui_->Streets->reveal(candidates_[chosenCandidate_].at);
    } else if (at->index < shown_.run.stops.size()) {
        chooseStop(at->index);
    } else {
        chosenStop_ = NoStop;
        showTrouble();
        tellStatus();
    }
}

void MapWindow::chooseStop(std::size_t stop) {
    chosenStop_ = stop;
    looking_.giveUp();
    showScene(false);
    showButtons();
    showTrouble();
    tellStatus();
    const auto row = ui_->Rows->rowOfIndex(stop);
    if (row != ui_->Rows->chosen() && view_ != View::Directions) {
        ui_->Rows->choose(row);
    }
    if (stop != NoStop && shown_.run.stops[stop].isPlaced) {
        ui_->Streets->reveal(shown_.run.stops[stop].at);
    }
}

bool MapWindow::step(bool forward) {
    if (!isOfOneRun() || view_ == View::Candidates) {
        return false;
    }
    const auto count = static_cast<std::ptrdiff_t>(shown_.run.stops.size());
    auto at =
        chosenStop_ == NoStop ? (forward ? -1 : count) : static_cast<std::ptrdiff_t>(chosenStop_);
    do {
        at += forward ? 1 : -1;
    } while (at >= 0 && at < count && shown_.run.numberOf(static_cast<std::size_t>(at)) == 0);
    if (at < 0 || at >= count) {
        return false;
    }
    chooseStop(static_cast<std::size_t>(at));
    return true;
}

std::size_t MapWindow::stopOf(const Hit& hit) const {
    if (hit.run >= (view_ == View::Runs ? runs_.size() : 1)) {
        return NoStop;
    }
    std::size_t drawn = 0;
    const auto& run = view_ == View::Runs ? runs_[hit.run].run : shown_.run;
    for (std::size_t i = 0; i < run.stops.size(); ++i) {
        const bool isDrawn = run.stops[i].kind == StopKind::Stop && run.stops[i].isPlaced;
        if (isDrawn && drawn++ == hit.index) {
            return i;
        }
    }
    return NoStop;
}

void MapWindow::chooseHit(const Hit& hit) {
    if (hit.kind == Hit::Kind::Home) {
        news_ = shownHomes_[hit.index].told;
        return tellStatus();
    }
    if (hit.kind != Hit::Kind::Stop && hit.kind != Hit::Kind::Leg) {
        return;
    }
    if (hit.run >= (view_ == View::Runs ? runs_.size() : 1)) {
        return;
    }
    if (view_ == View::Runs) {
        ui_->Rows->choose(ui_->Rows->rowOfIndex(hit.run));
        chosenRun_ = hit.run;
        showScene(false);
        tellStatus();
    } else if (hit.kind == Hit::Kind::Stop) {
        chooseStop(stopOf(hit));
    }
}

void MapWindow::openHit(const Hit& hit) {
    chooseHit(hit);
    if (view_ == View::Runs) {
        OpenRun_Click();
    } else {
        enterStop();
    }
}

QString MapWindow::toldOf(const Hit& hit) const {
    if (hit.kind == Hit::Kind::Place) {
        return toQt(ui_->Streets->scene().places[hit.index].name);
    }
    if (hit.kind == Hit::Kind::Home) {
        return toQt(shownHomes_[hit.index].told);
    }
    if (hit.run >= (view_ == View::Runs ? runs_.size() : 1)) {
        const auto& stop = allStops_[hit.index];
        return toQt(fmt::format("Stop {}, {}", stop.key, stop.name));
    }
    if (hit.kind != Hit::Kind::Stop) {
        return view_ == View::Runs ? toQt(headingOf(runs_[hit.run].run)) : QString();
    }
    const auto stop = stopOf(hit);
    const auto& shown = view_ == View::Runs ? runs_[hit.run] : shown_;
    return stop == NoStop ? QString() : toQt(spokenStop(shown, stop));
}

void MapWindow::activateRow(int row) {
    chooseRow(row);
    if (view_ == View::Runs) {
        OpenRun_Click();
    } else {
        enterStop();
    }
}

/// So near that the sides of the street are seen.
void MapWindow::enterStop() {
    if (view_ == View::Candidates) {
        return PlaceIt_Click();
    }
    if (!isOfOneRun() || chosenStop_ == NoStop || !shown_.run.stops[chosenStop_].isPlaced) {
        return;
    }
    if (!before_) {
        before_ = ui_->Streets->camera();
    }
    ui_->Streets->reveal(shown_.run.stops[chosenStop_].at, StopView);
}

void MapWindow::leaveStop() {
    if (const auto before = std::exchange(before_, std::nullopt)) {
        ui_->Streets->setCamera(*before);
    } else if (chosenStop_ != NoStop) {
        chooseStop(NoStop);
    }
}

void MapWindow::SolveIt_Click() {
    if (!isChanged() && !read(shown_.run.id)) {
        return tellStatus();
    }
    if (!shown_.way.isKnown()) {
        news_ = "The run cannot be solved; nothing of it was changed";
        chosenStop_ = NoStop;
        return show(View::Run);
    }
    compareShown();
    show(View::Compared);
}

void MapWindow::Directions_Click() {
    show(view_ == View::Directions ? View::Run : View::Directions);
}

void MapWindow::CloseIt_Click() { closeForm(); }

/// Where a place for a stop is looked for, places alone.
void MapWindow::FindIt_Change() {
    const auto words = fromQt(ui_->FindIt->text());
    std::vector<SearchHit> hits;
    if (view_ != View::Candidates) {
        hits = searchMap(district_.routing, words);
    }
    for (const auto& place : streets::findPlaces(*district_.streets, words, MostPlaces)) {
        hits.push_back({.kind = SearchHit::Kind::Place, .name = place.text, .at = place.at});
    }
    ui_->FindIt->offer(std::move(hits));
}

void MapWindow::find(const SearchHit& hit) {
    if (view_ == View::Candidates) {
        return offerCandidates(hit.name);
    }
    if (hit.kind == SearchHit::Kind::Run) {
        runs_.clear();
        return showRun(hit.key);
    }
    ui_->Streets->reveal(hit.at, StopView * 4);
    news_ = hit.name;
    tellStatus();
    const auto stop = std::ranges::find(shown_.run.stops, hit.key, &MappedStop::stopId);
    if (isOfOneRun() && stop != shown_.run.stops.end()) {
        chooseStop(static_cast<std::size_t>(stop - shown_.run.stops.begin()));
    }
}

}  // namespace map
