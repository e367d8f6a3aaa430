#include "map/window/mapwindow.h"

#include <QMenu>
#include <QShortcut>
#include <QTimer>
#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "map/run/solvedrun.h"
#include "map/shown/districtground.h"
#include "map/window/cures.h"
#include "map/window/mapview_access.h"
#include "platform/base/ports.h"
#include "platform/controls/access.h"
#include "platform/controls/layoutmemory.h"
#include "platform/controls/qtext.h"
#include "streets/district/placesearch.h"

#include "ui_mapwindow.h"

namespace map {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr auto Form_ = "MapWindow";
constexpr auto AskKey = "MapWindow/AskFirst";
constexpr std::size_t MostPlaces = 10;
constexpr int WaitingTurn = 20;  ///< milliseconds
constexpr double StopView = 1;   ///< feet a pixel

// What the map needs beside the panel, in pixels: its signs do not grow with the font.
constexpr int LeastBesidePanel = 728;
constexpr int LeastBesideNarrow = 650;
constexpr int LeastLinesBelow = 20;
constexpr int PanelCharacters = 64;
constexpr int NarrowCharacters = 26;

constexpr auto NotSavedTitle = "Not Saved";

}  // namespace

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

void MapWindow::wireControls() {
    on(ui_->SolveIt, &QPushButton::clicked, "SolveIt_Click", &MapWindow::SolveIt_Click);
    on(ui_->TakeOver, &QPushButton::clicked, "TakeOver_Click", &MapWindow::TakeOver_Click);
    on(ui_->KeepOldWay, &QPushButton::clicked, "KeepOldWay_Click", &MapWindow::KeepOldWay_Click);
    on(ui_->OpenRun, &QPushButton::clicked, "OpenRun_Click", &MapWindow::OpenRun_Click);
    on(ui_->SolveRuns, &QPushButton::clicked, "SolveRuns_Click", &MapWindow::SolveRuns_Click);
    on(ui_->Directions, &QPushButton::clicked, "Directions_Click", &MapWindow::Directions_Click);
    on(ui_->CloseIt, &QPushButton::clicked, "CloseIt_Click", &MapWindow::CloseIt_Click);
    on(ui_->Rows, &RowList::rowChosen, "Rows_Click", &MapWindow::chooseRow);
    on(ui_->Rows, &RowList::rowActivated, "Rows_DblClick", &MapWindow::activateRow);
    on(ui_->Rows, &RowList::rowChecked, "Rows_Check", [this](int row, bool shown) {
        runs_[ui_->Rows->row(row)->index].isShown = shown;
        showScene(false);
        tellStatus();
    });
    on(ui_->FindIt, &SearchBox::offerWanted, "FindIt_Change", &MapWindow::FindIt_Change);
    on(ui_->FindIt, &SearchBox::taken, "FindIt_Click", &MapWindow::find);
    on(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, "FindIt_GotFocus",
       [this] { ui_->FindIt->setFocus(Qt::ShortcutFocusReason); });
    on(new QShortcut(Qt::Key_F5, this), &QShortcut::activated, "Reload", &MapWindow::Reload);
}

void MapWindow::wireMap() {
    ui_->Streets->setTelling([this](const Hit& hit) { return toldOf(hit); });
    ui_->Streets->setStepping([this](bool forward) { return step(forward); });
    on(ui_->Streets, &MapView::hitChosen, "Streets_Click", &MapWindow::chooseHit);
    on(ui_->Streets, &MapView::hitActivated, "Streets_DblClick", &MapWindow::openHit);
    on(ui_->Streets, &MapView::enterPressed, "Streets_Enter", &MapWindow::enterStop);
    on(ui_->Streets, &MapView::escapePressed, "Streets_Escape", &MapWindow::leaveStop);
}

void MapWindow::fillMenu() {
    auto* menu = new QMenu(this);
    on(menu->addAction(tr("Runs of the &School")), &QAction::triggered, "SchoolRuns_Click",
       &MapWindow::SchoolRuns_Click);
    on(menu->addAction(tr("Runs of the &Route")), &QAction::triggered, "RouteRuns_Click",
       &MapWindow::RouteRuns_Click);
    menu->addSeparator();
    auto* points = menu->addAction(tr("Show A&ll Stops"));
    points->setObjectName(QStringLiteral("AllStops"));
    points->setCheckable(true);
    on(points, &QAction::toggled, "AllStops_Click", &MapWindow::AllStops_Click);
    menu->addSeparator();
    auto* moves = menu->addAction(tr("&Move Stops by Hand"));
    moves->setCheckable(true);
    moves->setToolTip(tr("Stops are dragged without holding Alt."));
    on(moves, &QAction::toggled, "MoveStop_Click", &MapWindow::MoveStop_Click);
    on(menu->addAction(tr("Suggest an &Order")), &QAction::triggered, "SuggestOrder_Click",
       &MapWindow::SuggestOrder_Click);
    menu->addSeparator();
    on(menu->addAction(tr("&Print Map...")), &QAction::triggered, "PrintIt_Click",
       &MapWindow::PrintIt_Click);
    on(menu->addAction(tr("&Export Map...")), &QAction::triggered, "ExportIt_Click",
       &MapWindow::ExportIt_Click);
    menu->addSeparator();
    auto* asks = menu->addAction(tr("&Ask Before Taking Over"));
    asks->setCheckable(true);
    asks->setChecked(asksFirst());
    asks->setToolTip(tr("A run that Map It sends is shown before and after first."));
    on(asks, &QAction::toggled, "AskFirst_Click",
       [](bool on) { controls::LayoutMemory::instance().remember(QLatin1String(AskKey), on); });
    ui_->More->setMenu(menu);
}

bool MapWindow::asksFirst() {
    return controls::LayoutMemory::instance().recall(QLatin1String(AskKey)).value<QVariant>() !=
           QVariant(false);
}

void MapWindow::Form_Load() {
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

void MapWindow::formDress() { arrange(); }

void MapWindow::resizeEvent(QResizeEvent* event) {
    TrappedForm::resizeEvent(event);
    arrange();
}

/// The map takes what the panel leaves: a narrow window folds the panel to numbers and times, a
/// narrower one that is high enough moves it below the map.
void MapWindow::arrange() {
    const int character = fontMetrics().averageCharWidth();
    const bool isNarrow = width() - PanelCharacters * character < LeastBesidePanel;
    const bool isBelow = width() - NarrowCharacters * character < LeastBesideNarrow &&
                         height() / 2 >= LeastLinesBelow * fontMetrics().height();
    const bool isFolded = isNarrow && !isBelow;
    ui_->body->setDirection(isBelow ? QBoxLayout::BottomToTop : QBoxLayout::LeftToRight);
    const int characters = isFolded ? NarrowCharacters : PanelCharacters;
    ui_->PanelArea->setMinimumWidth(isBelow ? 0 : characters * character);
    ui_->PanelArea->setMaximumWidth(isBelow ? QWIDGETSIZE_MAX : characters * character);
    ui_->PanelArea->setMaximumHeight(isBelow ? height() / 2 : QWIDGETSIZE_MAX);
    ui_->Rows->setNarrow(isFolded);
    ui_->Totals->setVisible(!isFolded);
    ui_->findRow->setDirection(isFolded ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    ui_->Subject->setVisible(!isFolded && !ui_->Subject->text().isEmpty());
    ui_->buttonRow->setDirection(isFolded ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    ui_->decisionRow->setDirection(isFolded ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    showTrouble();
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

void MapWindow::ask(const std::string& run, Decided decided) {
    trap("ask", [&] {
        load();
        asked_.push_back({run, std::move(decided)});
        if (asked_.size() == 1) {
            askNext();
        }
        showForm();
    });
}

/// Runs that cannot be solved stay as they are.
void MapWindow::askNext() {
    while (!asked_.empty()) {
        runs_.clear();
        if (read(asked_.front().run) && shown_.way.isKnown()) {
            chosenStop_ = NoStop;
            compareShown();
            return show(View::Compared);
        }
        answerAsked(Decision::Kept);
    }
}

/// What was found of the run as it is stored says nothing of the new way.
void MapWindow::compareShown() {
    std::erase_if(shown_.way.troubles,
                  [](const Trouble& trouble) { return trouble.kind == Trouble::Kind::Finding; });
    comparison_ = compare(shown_.run, shown_.way.solution);
}

void MapWindow::answerAsked(Decision decision) {
    const auto asked = std::move(asked_.front());
    asked_.pop_front();
    asked.decided(decision);
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

void MapWindow::TakeOver_Click() { decide(Decision::TakenOver); }
void MapWindow::KeepOldWay_Click() {
    if (view_ == View::Candidates) {
        return show(View::Run);
    }
    decide(Decision::Kept);
}

void MapWindow::decide(Decision decision) {
    const auto run = shown_.run.id;
    try {
        if (decision == Decision::TakenOver && asked_.empty()) {
            saveChanged(district_.routing, stored_, shown_.run, shown_.way.solution,
                        district_.user());
        }
    } catch (const ChangedMeanwhile& changed) {
        base::MsgBox(
            {.text = changed.what(), .title = NotSavedTitle, .icon = base::MsgIcon::Exclamation});
        return SolveIt_Click();
    }
    if (!asked_.empty()) {
        answerAsked(decision);
    }
    news_ = decision == Decision::Kept ? fmt::format("Run {} stays as it was", run)
            : steps_.empty()           ? fmt::format("Run {} was taken over", run)
                                       : fmt::format(
                                             "Run {} was taken over. Its detours are not kept: whoever "
                                                       "solves it again drives as the district does",
                                             run);
    if (!asked_.empty()) {
        return askNext();
    }
    if (!toSolve_.empty()) {
        return solveNext();
    }
    if (read(run)) {
        show(runs_.empty() ? View::Run : View::Runs);
    } else {
        tellStatus();
    }
}

void MapWindow::showRuns(std::vector<MappedRun> runs, const std::string& heading) {
    runs_.clear();
    for (auto& run : runs) {
        auto way = wayOf(district_.streets->network(), run);
        runs_.push_back({.run = std::move(run), .way = std::move(way)});
    }
    runsHeading_ = heading;
    const auto own =
        std::ranges::find(runs_, shown_.run.id, [](const ShownRun& shown) { return shown.run.id; });
    chosenRun_ = own == runs_.end() ? 0 : static_cast<std::size_t>(own - runs_.begin());
    chosenStop_ = NoStop;
    show(View::Runs);
}

void MapWindow::SchoolRuns_Click() {
    const auto& run = shown_.run;
    showRuns(readRunsOfSchool(district_.routing, run),
             fmt::format("{}: runs {}", run.schoolName.empty() ? run.school : run.schoolName,
                         run.tripType));
}

void MapWindow::RouteRuns_Click() {
    showRuns(readRunsOfRoute(district_.routing, shown_.run.routeKey),
             "Route " + shown_.run.routeId);
}

void MapWindow::OpenRun_Click() {
    if (chosenRun_ < runs_.size()) {
        const auto run = runs_[chosenRun_].run.id;
        runs_.clear();
        showRun(run);
    }
}

void MapWindow::SolveRuns_Click() {
    toSolve_.clear();
    for (const auto& shown : runs_) {
        if (shown.isShown) {
            toSolve_.push_back(shown.run.id);
        }
    }
    solveNext();
}

/// Runs that cannot be solved are passed over and told.
void MapWindow::solveNext() {
    std::string left;
    while (!toSolve_.empty()) {
        const auto run = toSolve_.front();
        toSolve_.pop_front();
        if (read(run) && shown_.way.isKnown()) {
            news_ = fmt::format("{} more to solve{}", toSolve_.size(), left);
            compareShown();
            chosenStop_ = NoStop;
            return show(View::Compared);
        }
        left += (left.empty() ? "; not solved: " : ", ") + run;
    }
    news_ = left.empty() ? "All runs are solved" : "The other runs are solved" + left;
    view_ = View::Runs;
    Reload();
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
