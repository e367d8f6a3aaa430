#include "stops/sequence/Add_Remove_Stops.h"

#include <QProgressBar>
#include <QScopeGuard>
#include <QScrollBar>
#include <QShortcut>
#include <algorithm>

#include <fmt/format.h>

#include "data/lists/samelist.h"
#include "data/lookups/mdlGetItems.h"
#include "map/small/smallmap.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/base/value.h"
#include "platform/controls/gauge.h"
#include "platform/controls/layoutmemory.h"
#include "platform/controls/qtext.h"
#include "platform/controls/rowdrag.h"
#include "platform/controls/signdelegate.h"
#include "platform/controls/signs.h"
#include "platform/controls/tones.h"
#include "platform/forms/operation.h"
#include "runedit/map/maphandoff.h"
#include "startup/base/session.h"
#include "stops/sequence/stoplist.h"
#include "stops/sequence/stopmessages.h"

#include "ui_Add_Remove_Stops.h"

namespace stops {

namespace {

using controls::MultiColumnList;
using controls::Sign;
using controls::SignDelegate;
using controls::Tone;
using controls::toQt;

constexpr auto Module = "Add_Remove_Stops";
constexpr auto NotHandedTitle = "Can't Work with MAP";
constexpr auto SplitterKey = "Add_Remove_Stops/Splitter";
/// From here on an action shows its progress.
constexpr std::size_t ManyRows = 100;

const auto NoStops =
    QStringLiteral("No stop is on this run.\nFind stops on the left and add them.");

/// The seats of a run's vehicle; 0 where they are not known.
std::int64_t seatsOf(const RunHead& head) {
    if (head.vehType.empty()) {
        return 0;
    }
    const base::Value seats(data::GetVehType_Capacity(head.vehType, head.capacityLevel));
    return seats.asText() == "NOT FOUND" || base::trim(seats.asText()).empty() ? 0
                                                                               : seats.asInteger();
}

/// Caption and value, which stand or break together; nothing without a value.
QString item(const QString& caption, const std::string& value) {
    return value.empty() ? QString()
                         : QStringLiteral(
                               " &nbsp;&nbsp; <span style='white-space:nowrap'>%1"
                               "<b>%2</b></span>")
                               .arg(caption, toQt(value).toHtmlEscaped());
}

}  // namespace

Add_Remove_Stops::Add_Remove_Stops(forms::Form* owner)
    : TrappedForm(Module, owner),
      ui_(std::make_unique<Ui::Add_Remove_Stops>()),
      maps_([this] { emit ui_->SmallMap->opened(); }),
      changedNote_(new startup::ChangedNote(this)) {
    ui_->setupUi(this);
    changedNote_->standIn(*ui_->runColumn, -1, ui_->StopList);
    setWindowModality(Qt::WindowModal);
    setCancelButton(ui_->ExitAddRun);
    ui_->StopList->setEmptyText(NoStops);
    ui_->StopList->showFirst({"No.", "Map", "STOPID", "ADDR1", "DESCRIPTION", "TIME_AT_STOP",
                              "NUM_STUDENTS", "On the Bus", "RUNSEQ"},
                             3);
    for (auto* hint : {ui_->OrderHint, ui_->MapHint}) {
        hint->setForegroundRole(QPalette::PlaceholderText);
    }
    ui_->RunSide->installEventFilter(this);
    ui_->MapSplitter->installEventFilter(this);
    wireButtons();
    wireKeys();
    wireDragging();
    restoreSplitter();
    wireMap();
    on(changedNote_, &startup::ChangedNote::readAnew, "Build_StopList", [this] {
        const auto selected = selectedStops();
        Build_StopList();
        selectStops(selected);
    });
    on(&startup::ChangeWatch::instance(), &startup::ChangeWatch::changed, "lookAtOthers",
       &Add_Remove_Stops::lookAtOthers);
}

Add_Remove_Stops::~Add_Remove_Stops() = default;

void Add_Remove_Stops::formDress() {
    QPalette wrong = palette();
    wrong.setColor(QPalette::WindowText, inkOf(Tone::Wrong, wrong));
    ui_->Unplaced->setPalette(wrong);
    ui_->UnplacedSign->setPixmap(
        markFor(Sign::NoPlace, inkOf(Tone::Wrong, wrong), fontMetrics().height()));
    if (isLoaded()) {
        showPassengers(passengers_);
        arrange();
        arrangeMap();
    }
}

void Add_Remove_Stops::edit(const std::string& run) {
    run_.run = base::trim(run);
    if (isLoaded()) {
        trap("Form_Load", &Add_Remove_Stops::Form_Load);
    }
}

void Add_Remove_Stops::wireButtons() {
    const struct {
        QPushButton* button;
        Sign sign;
        const char* procedure;
        void (Add_Remove_Stops::*click)();
    } buttons[] = {
        {ui_->AddStop, Sign::Right, "AddStop", &Add_Remove_Stops::AddStop},
        {ui_->DelStop, Sign::Left, "DelStop", &Add_Remove_Stops::DelStop},
        {ui_->Move_To_Top, Sign::ToTop, "Move_To_Top", &Add_Remove_Stops::Move_To_Top},
        {ui_->MoveUp, Sign::Up, "MoveUp", &Add_Remove_Stops::MoveUp},
        {ui_->MoveDown, Sign::Down, "MoveDown", &Add_Remove_Stops::MoveDown},
        {ui_->Move_to_Bottom, Sign::ToBottom, "Move_to_Bottom", &Add_Remove_Stops::Move_to_Bottom},
    };
    for (const auto& [button, sign, procedure, click] : buttons) {
        button->setIcon(controls::signIcon(sign, QPalette::ButtonText));
        on(button, &QPushButton::clicked, procedure, click);
    }
    on(ui_->ExitAddRun, &QPushButton::clicked, "ExitAddRun", &Add_Remove_Stops::closeForm);
    on(ui_->StopSearch, &StopSearchPanel::rowActivated, "AddStop", &Add_Remove_Stops::AddStop);
    on(ui_->StopSearch, &StopSearchPanel::selectionCountChanged, "enableButtons",
       &Add_Remove_Stops::enableButtons);
    on(ui_->StopList, &MultiColumnList::selectionCountChanged, "enableButtons",
       &Add_Remove_Stops::enableButtons);
    on(ui_->Splitter, &QSplitter::splitterMoved, "Splitter_Moved", [this] {
        controls::LayoutMemory::instance().remember(SplitterKey, ui_->Splitter->saveState());
    });
}

/// The keys press the buttons, so that they do nothing where a button is disabled. Those with Alt
/// work on the run's side only: Alt+Down drops a combo's list.
void Add_Remove_Stops::wireKeys() {
    key(Qt::Key_Insert, ui_->AddStop);
    on(new QShortcut(Qt::Key_Delete, ui_->RunSide, nullptr, nullptr,
                     Qt::WidgetWithChildrenShortcut),
       &QShortcut::activated, "StopList_Delete", &Add_Remove_Stops::StopList_Delete);
    key(Qt::ALT | Qt::Key_Home, ui_->Move_To_Top, ui_->RunSide);
    key(Qt::ALT | Qt::Key_Up, ui_->MoveUp, ui_->RunSide);
    key(Qt::ALT | Qt::Key_Down, ui_->MoveDown, ui_->RunSide);
    key(Qt::ALT | Qt::Key_End, ui_->Move_to_Bottom, ui_->RunSide);
}

void Add_Remove_Stops::wireDragging() {
    auto* list = ui_->StopList;
    list->drawColumnBy("No.", new SignDelegate(Sign::Grip, SignDelegate::Place::BesideText, list));
    list->drawColumnBy("Map",
                       new SignDelegate(Sign::NoPlace, SignDelegate::Place::InsteadOfText, list));
    on(new controls::RowDrag(*list, "No."), &controls::RowDrag::dropped, "StopList_Drop",
       &Add_Remove_Stops::StopList_Drop);
}

void Add_Remove_Stops::Form_Load() {
    changed_ = false;
    run_.user = startup::gCommandLine;
    run_.isMapped = runedit::mapExchangeOn();
    ui_->RunID->setText(toQt(run_.run));
    ui_->MapHint->setVisible(run_.isMapped);
    Build_StopList();
    ui_->StopSearch->loadCodes();
    ui_->StopSearch->startFrom(run_.tripType);
}

void Add_Remove_Stops::Build_StopList() {
    head_ = readRunHead(*startup::gcnRouting, *startup::gcnTrip, run_.run);
    run_.tripType = head_.tripType;
    auto stops = readStopsInSequence(*startup::gcnRouting, run_.run, head_.isPickup);
    ui_->StopList->setTable(std::move(stops.table));
    ui_->StopsInRun->setText(QString::number(ui_->StopList->rows()));
    showHead();
    showPassengers(stops.passengers);
    showUnplaced(stops.unplaced);
    enableButtons();
    trap("showMap", &Add_Remove_Stops::showMap);
    changedNote_->clear();
}

void Add_Remove_Stops::lookAtOthers(const store::Changes& changes) {
    if (!head_.exists || !startup::concerns(changes, run_.run)) {
        return;
    }
    const auto stops = readStopsInSequence(*startup::gcnRouting, run_.run, head_.isPickup);
    if (!readRunHead(*startup::gcnRouting, *startup::gcnTrip, run_.run).exists) {
        changedNote_->tell(tr("This run was deleted meanwhile."));
    } else if (!data::isSameList(stops.table, ui_->StopList->table())) {
        changedNote_->tell(tr("The stops of this run were changed meanwhile."));
    }
}

void Add_Remove_Stops::showHead() {
    if (!head_.exists) {
        ui_->RunText->setText(tr("does not exist any more"));
        return;
    }
    const auto bus = head_.vehicle.empty() ? head_.vehType
                                           : fmt::format("{} ({})", head_.vehicle, head_.vehType);
    ui_->RunText->setText(
        toQt(head_.description).toHtmlEscaped() + item(tr("Trip Type:&nbsp;"), head_.tripType) +
        item(tr("School:&nbsp;"), head_.school) +
        item(tr("Bell:&nbsp;"), head_.bell ? head_.bell->hhmm() : "") +
        item({}, head_.isPickup ? "Pick Up" : "Drop Off") + item(tr("Bus:&nbsp;"), bus));
}

void Add_Remove_Stops::showPassengers(std::int64_t passengers) {
    passengers_ = passengers;
    const auto seats = seatsOf(head_);
    auto text = tr("Passengers:&nbsp;<b>%1</b>").arg(passengers);
    if (seats > 0) {
        text += tr(" of %1 seats").arg(seats);
    }
    if (seats > 0 && passengers > seats) {
        text += tr(", <b style='color:%1'>%2 too many</b>")
                    .arg(inkOf(Tone::Wrong, palette()).name())
                    .arg(passengers - seats);
    }
    ui_->Passengers->setText(text);
    ui_->Seats->setValues(static_cast<double>(passengers), static_cast<double>(seats));
    ui_->Seats->setVisible(seats > 0);
    fitHeading();
}

/// Where it is narrow the seats stand on a line of their own, and it may always become so narrow.
void Add_Remove_Stops::fitHeading() {
    constexpr int Characters = 105;
    const bool narrow = ui_->RunSide->width() < Characters * fontMetrics().averageCharWidth();
    ui_->runHeading->setDirection(narrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    ui_->Passengers->setAlignment(narrow ? Qt::AlignLeft : Qt::AlignRight | Qt::AlignVCenter);
    const auto width = [](const QLayout* part) { return part->minimumSize().width(); };
    const int heading = std::max(width(ui_->countsRow), width(ui_->seatsRow));
    const int take = width(ui_->takeColumn);
    const int order = width(ui_->orderColumn);
    const int gaps = 2 * std::max(ui_->runRow->spacing(), 0);
    ui_->RunSide->setMinimumWidth(lean_ ? std::max({heading, take, order})
                                        : take + heading + order + gaps);
}

bool Add_Remove_Stops::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui_->RunSide && event->type() == QEvent::Resize) {
        fitHeading();
    }
    if (watched == ui_->MapSplitter && event->type() == QEvent::Resize) {
        arrangeMap();
    }
    return TrappedForm::eventFilter(watched, event);
}

void Add_Remove_Stops::showUnplaced(const std::vector<std::size_t>& rows) {
    constexpr std::size_t MostNamed = 5;
    const auto& table = ui_->StopList->table();
    QStringList named;
    for (std::size_t i = 0; i < rows.size() && i < MostNamed; ++i) {
        named += tr("stop %1, %2").arg(rows[i] + 1).arg(toQt(table.text(rows[i], "STOPID")));
    }
    if (rows.size() > MostNamed) {
        named += tr("and %1 more").arg(rows.size() - MostNamed);
    }
    ui_->Unplaced->setText((rows.size() == 1
                                ? tr("1 stop has no place on the map: ")
                                : tr("%1 stops have no place on the map: ").arg(rows.size())) +
                           named.join("; "));
    ui_->UnplacedLine->setVisible(!rows.empty());
}

void Add_Remove_Stops::enableButtons() {
    const int found = ui_->StopSearch->selectedCount();
    const int onRun = ui_->StopList->selectedCount();
    ui_->AddStop->setEnabled(found > 0);
    for (auto* button :
         {ui_->DelStop, ui_->Move_To_Top, ui_->MoveUp, ui_->MoveDown, ui_->Move_to_Bottom}) {
        button->setEnabled(onRun > 0);
    }
    ui_->RunSelected->setText(onRun == 0 ? QString() : tr("%n selected", nullptr, onRun));
}

Add_Remove_Stops::StopTripIds Add_Remove_Stops::selectedStops() const {
    StopTripIds ids;
    for (const int row : ui_->StopList->selectedRows()) {
        ids.push_back(ui_->StopList->cellValue(row, "ID").asInteger());
    }
    return ids;
}

/// Selects and shows the stops, which the list may have moved.
void Add_Remove_Stops::selectStops(const StopTripIds& stopTripIds) {
    const auto& table = ui_->StopList->table();
    std::vector<int> rows;
    for (std::size_t row = 0; row < table.rowCount(); ++row) {
        const auto id = table.value(row, "ID").asInteger();
        if (std::find(stopTripIds.begin(), stopTripIds.end(), id) != stopTripIds.end()) {
            rows.push_back(static_cast<int>(row));
        }
    }
    if (!rows.empty()) {
        ui_->StopList->choose(rows.front());
        ui_->StopList->selectRows(rows);
    }
}

/// Carries an action out, with a progress bar where it is a long one.
template <class Action>
auto Add_Remove_Stops::carryOut(std::size_t rows, Action action) {
    ui_->StopSearch->stopFilling();
    if (rows < ManyRows) {
        const forms::BusyCursor hourglass;
        return action(nullptr);
    }
    Operation operation(*this, {.bars = {ui_->Progress}});
    ui_->Progress->show();
    const auto hidden = qScopeGuard([this] { ui_->Progress->hide(); });
    return action(&operation);
}

void Add_Remove_Stops::AddStop() {
    const auto chosen = ui_->StopSearch->selected();
    const auto question = questionBeforeAdding(run_, chosen);
    if (chosen.empty() ||
        (!question.empty() && base::MsgBox(question, AddTitle, base::MsgIcon::Question,
                                           base::MsgButtons::YesNo) != base::MsgAnswer::Yes)) {
        return;
    }
    const auto added = carryOut(chosen.size(), [&](base::ProgressPort* progress) {
        return addStops(*startup::gcnRouting, run_, chosen, progress);
    });
    showResult(added.stopTripIds, added.stopTripIds, resultOf(added));
    ui_->Status->setText(ui_->Status->text() + toQt(placeOfAdded(added.stopTripIds)));
    tellOfSkipped(added);
}

/// Where a single stop went; a new stop of a run has no time before times are calculated.
std::string Add_Remove_Stops::placeOfAdded(const StopTripIds& added) const {
    const auto rows = ui_->StopList->selectedRows();
    if (added.size() != 1 || rows.size() != 1) {
        return {};
    }
    return fmt::format(
        "  {} is stop {}{}.", ui_->StopList->cellText(rows[0], 0), rows[0] + 1,
        ui_->StopList->cellValue(rows[0], "TIME_AT_STOP").isNull() ? " and has no time yet" : "");
}

void Add_Remove_Stops::StopList_Delete() {
    const auto rows = ui_->StopList->selectedRows();
    if (rows.empty()) {
        return;
    }
    const auto& stops = ui_->StopList->table();
    const auto run =
        head_.description.empty() ? run_.run : fmt::format("{}, {}", run_.run, head_.description);
    if (base::confirmLoss(questionBeforeRemoving(stops, rows), RemovalTitle,
                          removalConcerns(stops, rows, run))) {
        DelStop();
    }
}

void Add_Remove_Stops::DelStop() {
    const auto chosen = selectedStops();
    const int place = chosen.empty() ? 0 : ui_->StopList->selectedRows().front();
    const auto rows = static_cast<std::size_t>(ui_->StopList->rows());
    const auto removed = carryOut(rows, [&](base::ProgressPort* progress) {
        return removeStops(*startup::gcnRouting, run_, chosen, progress);
    });
    showResult(removed.stopTripIds, {}, resultOf(removed, "removed"));
    ui_->StopList->choose(place);
    markOnMap();
    tellOfSkipped(removed);
}

void Add_Remove_Stops::move(Move direction) {
    const auto chosen = selectedStops();
    const auto moved = carryOut(0, [&](base::ProgressPort*) {
        return moveStops(*startup::gcnRouting, run_, chosen, direction);
    });
    showResult(moved.stopTripIds, chosen, resultOf(moved, "moved"));
    tellOfSkipped(moved);
}

void Add_Remove_Stops::StopList_Drop(int before) {
    const auto chosen = selectedStops();
    const auto target =
        before < ui_->StopList->rows() ? ui_->StopList->cellValue(before, "ID").asInteger() : 0;
    const auto placed = carryOut(0, [&](base::ProgressPort*) {
        return placeStops(*startup::gcnRouting, run_, chosen, target);
    });
    showResult(placed.stopTripIds, chosen, resultOf(placed, "moved"));
    tellOfSkipped(placed);
}

void Add_Remove_Stops::Move_To_Top() { move(Move::ToTop); }

void Add_Remove_Stops::MoveUp() { move(Move::Up); }

void Add_Remove_Stops::MoveDown() { move(Move::Down); }

void Add_Remove_Stops::Move_to_Bottom() { move(Move::ToBottom); }

Add_Remove_Stops::Message Add_Remove_Stops::lockedMessage() const {
    return {LockedTitle, LockedText};
}

/// Shows what an action has made of both lists, with these stops of the run selected.
void Add_Remove_Stops::showResult(const StopTripIds& changed, const StopTripIds& selected,
                                  const std::string& told) {
    changed_ = changed_ || !changed.empty();
    startup::RefreshRunList = startup::RefreshRunList || !changed.empty();
    ui_->StopSearch->searchAgain();
    const int place = ui_->StopList->verticalScrollBar()->value();
    Build_StopList();
    ui_->StopList->doItemsLayout();
    ui_->StopList->verticalScrollBar()->setValue(place);
    selectStops(selected);
    markOnMap();
    ui_->Status->setText(toQt(told));
}

/// Closing the window is Exit.
bool Add_Remove_Stops::Form_QueryUnload() {
    return trap("ExitAddRun", &Add_Remove_Stops::ExitAddRun);
}

void Add_Remove_Stops::Form_Unload() { ui_->StopSearch->stopFilling(); }

bool Add_Remove_Stops::ExitAddRun() {
    ui_->StopSearch->stopFilling();
    const auto leave = [this] {
        needDeadHeadBuild(*startup::gcnRouting);
        handToMap();
    };
    return unlessLocked(
        changed_ ? Message{LockedOnLeavingTitle, LockedOnLeavingText} : lockedMessage(), leave);
}

/// A map program that cannot take the run is told in a box: the form is left all the same.
void Add_Remove_Stops::handToMap() {
    if (!run_.isMapped || !head_.exists) {
        return;
    }
    if (runedit::mapFilesLeft(run_.run)) {
        if (changed_) {
            runedit::markToBeResolved(run_.run);
        }
        base::MsgBox(runedit::MapStillProcessingText, runedit::MapStillProcessingTitle,
                     base::MsgIcon::Information);
        return;
    }
    const Operation waiting(*this);
    ui_->Status->setText(toQt(runedit::MapHandingOverText));
    try {
        runedit::sendRunToMap(run_.run, runedit::MapScreen::AddRun);
    } catch (const std::exception& fault) {
        if (startup::lockedElsewhere()) {
            throw;
        }
        base::MsgBox("The run could not be handed to the mapping software: " +
                         runedit::handOverFailedText(fault),
                     NotHandedTitle, base::MsgIcon::Exclamation);
        return;
    }
    if (sent_) {
        sent_();
    }
}

void Add_Remove_Stops::resizeEvent(QResizeEvent* event) {
    TrappedForm::resizeEvent(event);
    arrange();
}

/// Where the form is narrow for its font the buttons stand above and below the run's list.
void Add_Remove_Stops::arrange() {
    constexpr int LeanInCharacters = 140;
    const bool lean = width() < LeanInCharacters * fontMetrics().averageCharWidth();
    if (lean == lean_) {
        return;
    }
    lean_ = lean;
    ui_->StopSearch->setLean(lean);
    ui_->runRow->setDirection(lean ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    for (QBoxLayout* buttons : {ui_->takeColumn, ui_->orderColumn}) {
        buttons->setDirection(lean ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    }
    ui_->OrderLabel->setVisible(!lean);
    ui_->OrderHint->setVisible(!lean);
    ui_->MapHint->setWordWrap(lean);
    fitHeading();
}

/// Both sides share what width there is, until the planner arranges it anew.
void Add_Remove_Stops::restoreSplitter() {
    ui_->Splitter->setStretchFactor(0, 1);
    ui_->Splitter->setStretchFactor(1, 1);
    const auto arranged = controls::LayoutMemory::instance().recall(SplitterKey).toByteArray();
    if (!ui_->Splitter->restoreState(arranged)) {
        ui_->Splitter->setSizes({390, 940});
    }
}

}  // namespace stops
