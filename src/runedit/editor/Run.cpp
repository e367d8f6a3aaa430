#include "runedit/editor/Run.h"

#include <QHeaderView>
#include <QScopedValueRollback>
#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include "data/lookups/mdlLOAD_lstcmb.h"
#include "map/small/smallmap.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "platform/controls/signdelegate.h"
#include "platform/controls/signs.h"
#include "platform/controls/tones.h"
#include "platform/forms/operation.h"
#include "runedit/editor/crowdeddelegate.h"
#include "runedit/editor/runfields.h"
#include "runedit/editor/runlists.h"
#include "runedit/validation/checkedrun.h"
#include "startup/base/session.h"

#include "ui_Run.h"

namespace runedit {

namespace {

using base::MsgIcon;
using controls::fromQt;
using controls::Sign;
using controls::SignDelegate;
using controls::signIcon;
using controls::Tone;
using controls::toQt;
using startup::gcnRouting;
using startup::gcnTrip;

constexpr auto NotFoundTitle = "Run Not Found";
constexpr auto NotFoundText =
    "Oops, the run {} is not there any more.  Another program may have deleted it or changed its "
    "id.  Please search again.";
constexpr auto LockedText =
    "Oops, another program is writing to the routing database just now, and nothing was saved.  "
    "What you have entered is not lost.  Please wait a moment and try again.";

}  // namespace

Run::Run(forms::Form* owner)
    : TrappedForm(Module, owner),
      ui_(std::make_unique<Ui::Run>()),
      answer_(this),
      maps_([this] { emit ui_->SmallMap->opened(); }),
      Timer3(this),
      changed_(new startup::ChangedNote(this)) {
    setWindowModality(Qt::WindowModal);
    ui_->setupUi(this);
    watchOthers();
    setCancelButton(ui_->Exit_Run);
    dress();
    boxes_ = std::make_unique<data::RecordBoxes>(*this, runFields());
    wireFields();
    wireLists();
    wireButtons();
    wireMap();
}

Run::~Run() = default;

/// What the designer's file does not say.
void Run::dress() {
    for (auto* quiet : {ui_->SchoolName, ui_->TripTypeName, ui_->RunFamilyName, ui_->LocationName,
                        ui_->LevelSeats, ui_->StopHint}) {
        quiet->setForegroundRole(QPalette::PlaceholderText);
    }
    ui_->WarningList->header()->setStretchLastSection(true);
    auto* stops = ui_->StopList;
    stops->showFirst({"No.", "Map", "StopID", "Addr1", "Description", "Time_At_Stop",
                      "NUM_STUDENTS", "On the Bus"},
                     3);
    stops->drawColumnBy("Map",
                        new SignDelegate(Sign::NoPlace, SignDelegate::Place::InsteadOfText, stops));
    onTheBus_ = new CrowdedDelegate(stops);
    stops->drawColumnBy("On the Bus", onTheBus_);
    forms::hideInPlace(*ui_->Status);
    ui_->PreviousRun->setIcon(signIcon(Sign::Left, QPalette::ButtonText));
    ui_->NextRun->setIcon(signIcon(Sign::Right, QPalette::ButtonText));
}

void Run::formDress() {
    const auto strong = [this](QLabel* label, double size) {
        auto font = this->font();
        font.setPointSizeF(font.pointSizeF() * size);
        font.setBold(true);
        label->setFont(font);
    };
    strong(ui_->Heading, 1.3);
    for (auto* figure : {ui_->TotalPass, ui_->TotalStops, ui_->TotalDistance, ui_->TotalRideTime}) {
        strong(figure, 1.15);
    }
    strong(ui_->TooMany, 1);
    auto red = palette();
    red.setColor(QPalette::WindowText, inkOf(Tone::Wrong, red));
    ui_->TooMany->setPalette(red);
    auto amber = palette();
    amber.setColor(QPalette::Window, groundOf(Tone::Look, amber));
    ui_->WarningPanel->setPalette(amber);
    if (arrangement_) {
        sizeFields(*ui_);
        arrangement_.reset();
        arrange();
    }
}

void Run::arrange() {
    const auto digit = QFontMetricsF(font()).horizontalAdvance('0');
    const auto wanted = arrangementFor(static_cast<int>(width() / digit));
    if (arrangement_ != wanted) {
        arrangement_ = wanted;
        arrangeFields(*ui_, wanted);
    }
}

void Run::resizeEvent(QResizeEvent* event) {
    TrappedForm::resizeEvent(event);
    arrange();
}

Run::Message Run::lockedMessage() const { return {"Database in Use", LockedText}; }

void Run::wireFields() {
    // The row of a typed text is found only after the text has changed.
    for (auto* combo : {ui_->cmbSchool, ui_->cmbTripType, ui_->cmbRunFamily, ui_->cmbLOCCODE}) {
        on(combo, &QComboBox::currentIndexChanged, "showNames", &Run::showNames);
    }
    for (auto* combo : findChildren<controls::MultiColumnCombo*>()) {
        on(combo, &controls::MultiColumnCombo::left, "refuseUnknownKey",
           [this, combo] { refuseUnknownKey(combo); });
    }
    for (auto* combo : {static_cast<QComboBox*>(ui_->cmbVEHTYPE), ui_->cmbCapacity}) {
        on(combo, &QComboBox::currentIndexChanged, "showTotals", &Run::seatsChanged);
    }
    on(ui_->Closed_Browse, &QPushButton::clicked, "Closed_Browse_Click", &Run::Closed_Browse_Click);
    on(ui_->Clear_Closed, &QPushButton::clicked, "Clear_Closed_Click", &Run::Clear_Closed_Click);
}

void Run::wireLists() {
    on(ui_->cmbDirType, &QComboBox::currentIndexChanged, "Build_DirList", &Run::Build_DirList);
    key(Qt::Key_Delete, ui_->Remove, ui_->StopList);
    on(ui_->StopList, &controls::MultiColumnList::rowActivated, "StopEdit_Click",
       &Run::StopEdit_Click);
    on(ui_->StopList, &controls::MultiColumnList::selectionCountChanged, "showButtons",
       &Run::showButtons);
    on(ui_->WarningList, &controls::MultiColumnList::rowClicked, "showWarning", &Run::showWarning);
    on(ui_->WarningList, &controls::MultiColumnList::columnClicked, "showWarning",
       [this] { showWarning(ui_->WarningList->chosenRow()); });
    on(ui_->WarningList, &controls::MultiColumnList::rowActivated, "GoToStop_Click",
       &Run::GoToStop_Click);
    on(ui_->GoToStop, &QPushButton::clicked, "GoToStop_Click", &Run::GoToStop_Click);
    on(ui_->GoToField, &QPushButton::clicked, "GoToField_Click", &Run::GoToField_Click);
    pageKeys(*ui_->RunTab);
}

void Run::wireButtons() {
    on(ui_->OK, &QPushButton::clicked, "OK_Click", &Run::OK_Click);
    on(ui_->CalcTimes, &QPushButton::clicked, "CalcTimes_Click", &Run::CalcTimes_Click);
    on(ui_->Command1, &QPushButton::clicked, "Command1_Click", &Run::Command1_Click);
    on(ui_->MapIt, &QPushButton::clicked, "MapIt_Click", &Run::MapIt_Click);
    on(ui_->AddStops, &QPushButton::clicked, "AddStops_Click", &Run::AddStops_Click);
    on(ui_->GetStops, &QPushButton::clicked, "GetStops_Click", &Run::GetStops_Click);
    on(ui_->StopEdit, &QPushButton::clicked, "StopEdit_Click", &Run::StopEdit_Click);
    on(ui_->Remove, &QPushButton::clicked, "Remove_Click", &Run::Remove_Click);
    on(ui_->Merge, &QPushButton::clicked, "Merge_Click", &Run::Merge_Click);
    on(ui_->Log, &QPushButton::clicked, "Log_Click", &Run::Log_Click);
    on(ui_->PrintStops, &QPushButton::clicked, "PrintStops_Click", &Run::PrintStops_Click);
    on(ui_->PrintDir, &QPushButton::clicked, "PrintDir_Click", &Run::PrintDir_Click);
    on(ui_->PrintOrg, &QPushButton::clicked, "PrintOrg_Click", &Run::PrintOrg_Click);
    on(ui_->PrintWarn, &QPushButton::clicked, "PrintWarn_Click", &Run::PrintWarn_Click);
    on(ui_->NextRun, &QPushButton::clicked, "NextRun_Click", &Run::NextRun_Click);
    on(ui_->PreviousRun, &QPushButton::clicked, "PreviousRun_Click", &Run::PreviousRun_Click);
    on(ui_->Exit_Run, &QPushButton::clicked, "Exit_Run_Click", &Run::Exit_Run_Click);
    key(QKeySequence::Save, ui_->OK);
    key(Qt::Key_F5, ui_->CalcTimes);
    key(Qt::CTRL | Qt::Key_PageDown, ui_->NextRun);
    key(Qt::CTRL | Qt::Key_PageUp, ui_->PreviousRun);
    wireButtonKeys();
    on(&Timer3, &forms::Timer::tick, "Timer3_Timer", &Run::Timer3_Timer);
}

/// The fields have nearly all letters.
void Run::wireButtonKeys() {
    constexpr auto CtrlShift = Qt::CTRL | Qt::SHIFT;
    key(Qt::CTRL | Qt::Key_T, ui_->AddStops);
    key(Qt::Key_F2, ui_->StopEdit);
    key(CtrlShift | Qt::Key_M, ui_->Merge);
    key(Qt::CTRL | Qt::Key_M, ui_->MapIt);
    key(Qt::CTRL | Qt::Key_L, ui_->Log);
    key(Qt::CTRL | Qt::Key_G, ui_->GoToStop);
    key(CtrlShift | Qt::Key_G, ui_->GoToField);
    key(QKeySequence::Print, ui_->PrintStops);
    key(CtrlShift | Qt::Key_D, ui_->PrintDir);
    key(CtrlShift | Qt::Key_O, ui_->PrintOrg);
    key(CtrlShift | Qt::Key_W, ui_->PrintWarn);
}

void Run::wireMap() {
    on(&answer_, &MapAnswer::status, "MapAnswer_Status",
       [this](const QString& text) { showStatus(text); });
    on(&answer_, &MapAnswer::ended, "refresh", &Run::refresh);
    on(&answer_, &MapAnswer::reload, "Command1_Click", &Run::Command1_Click);
    on(&answer_, &MapAnswer::lists, "buildLists", &Run::buildLists);
    on(ui_->RunTab, &QTabWidget::currentChanged, "showSmallMap", [this] { showSmallMap(); });
    on(ui_->SmallMap, &map::SmallMap::opened, "showSmallMap", &Run::showSmallMap);
    on(ui_->SmallMap, &map::SmallMap::mapWanted, "MapIt_Click", [this] {
        if (ui_->MapIt->isEnabled()) {
            MapIt_Click();
        }
    });
}

void Run::edit(const std::string& run) { begin(run, false); }

void Run::editNew() { begin({}, true); }

void Run::begin(const std::string& run, bool isNew) {
    if (isLoaded() && !mayLeave("go to the other run")) {
        return;
    }
    toEdit_ = std::string(base::trim(run));
    ui_->chkNew->setChecked(isNew);
    if (isLoaded()) {
        startEditing();
    }
}

void Run::NextRun_Click() { walk(1); }

void Run::PreviousRun_Click() { walk(-1); }

void Run::walk(int step) {
    const int place = runs_->placeOf(run());
    if (place == 0 || place + step < 1 || place + step > runs_->count() ||
        !mayLeave("go to the other run")) {
        return;
    }
    const auto next = runs_->choose(place + step);
    if (!data::readRecord(*gcnRouting, runFields(), runSql(next))) {
        runs_->choose(place);
        return tellNotFound(next);
    }
    toEdit_ = std::string(base::trim(next));
    ui_->chkNew->setChecked(false);
    startEditing();
}

void Run::tellNotFound(const std::string& run) {
    base::MsgBox(fmt::format(NotFoundText, base::trim(run)), NotFoundTitle, MsgIcon::Information);
    startup::RefreshRunList = true;
}

void Run::Form_Load() {
    const QScopedValueRollback filling(isFilling_, true);
    sizeFields(*ui_);
    arrange();
    auto reads = isNew() ? RunReads() : readsOf(toEdit_);
    std::ranges::copy(data::questionsOfARun(gcnRouting), std::back_inserter(reads.routing));
    std::ranges::copy(data::questionsOfARun(gcnTrip), std::back_inserter(reads.trip));
    const auto ahead = askTogether(reads);
    data::Load_cmbSchool(*this);
    data::Load_cmbTRIPTYPE(*this);
    data::Load_cmbRunFamily(*this);
    data::Load_cmbLOCCODE(*this);
    data::Load_cmbVehType(*this);
    startEditing();
}

void Run::startEditing() {
    answer_.stop();
    Timer3_Timer();
    ui_->RunTab->setCurrentIndex(0);
    isNew() ? openNew() : openStored();
}

void Run::openNew() {
    fill(newRun());
    buildLists();
    ui_->RunID->setFocus();
}

void Run::openStored() {
    const auto ahead = askTogether(readsOf(toEdit_));
    if (const auto stored = data::readRecord(*gcnRouting, runFields(), runSql(toEdit_))) {
        fill(*stored);
        buildLists();
        ui_->RunDesc->setFocus();
    } else {
        tellNotFound(toEdit_);
        unload();
    }
}

void Run::fill(const data::Record& run) {
    const QScopedValueRollback filling(isFilling_, true);
    boxes_->show(run);
    present(run);
    if (const auto unknown = boxes_->unknownChoices(); !unknown.empty()) {
        showStatus(toQt(unknown));
    }
}

/// Shows what stands around the fields.
void Run::present(const data::Record& run) {
    seen_ = run;
    if (vehicle_.run != this->run()) {
        vehicle_ = {};
        vehicle_.run = this->run();
    }
    vehicle_.ownRoute = run["INT_ROUTEID"].asInteger();
    changed_->clear();
    startup::ChangeWatch::instance().open(isNew() ? std::string() : this->run());
    ui_->RunID->setReadOnly(!isNew());
    showAudit(run);
    showNames();
    showHead();
    showPlace();
    showButtons();
}

void Run::refresh() {
    if (isNew()) {
        return;
    }
    const QScopedValueRollback filling(isFilling_, true);
    const auto ahead = askTogether(readsOf(run()));
    // A run that is gone is told when it is to be saved.
    if (const auto stored = storedRun()) {
        boxes_->refresh(*stored);
        present(*stored);
    }
    buildLists();
}

/// Another form may have changed the run.
void Run::Form_Activate() {
    if (activatedBefore_) {
        refresh();
    }
    activatedBefore_ = true;
}

void Run::Command1_Click() {
    if (!isNew() && !storedRun()) {
        tellNotFound(run());
    }
    refresh();
}

/// What is asked to show a run with its lists. Its row is asked for twice: by the fields, and for
/// the vehicle of its route.
RunReads Run::readsOf(const std::string& run) const {
    auto reads = run == vehicle_.run ? vehicleAndSeatsReads() : RunReads();
    std::ranges::copy(listReads(run, directionStyle(fromQt(ui_->cmbDirType->currentText()))),
                      std::back_inserter(reads.routing));
    reads.routing.insert(reads.routing.end(), 2, runSql(run));
    return reads;
}

ado::ReadAhead Run::askTogether(const RunReads& reads) {
    return {{*gcnRouting, reads.routing}, {*gcnTrip, reads.trip}};
}

bool Run::isNew() const { return ui_->chkNew->isChecked(); }

std::string Run::run() const { return std::string(base::trim(fromQt(ui_->RunID->text()))); }

std::optional<data::Record> Run::storedRun() const {
    return data::readRecord(*gcnRouting, runFields(), runSql(run()));
}

}  // namespace runedit
