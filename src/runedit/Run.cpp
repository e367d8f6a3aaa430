#include "runedit/Run.h"

#include <QShortcut>

#include <fmt/format.h>

#include "data/mdlLOAD_lstcmb.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "platform/forms/operation.h"
#include "startup/session.h"
#include "startup/trap.h"

#include "ui_Run.h"

namespace runedit {

namespace {

using base::MsgIcon;
using controls::fromQt;
using startup::gcnRouting;
using startup::trapped;

/// Actions whose forms do not exist yet.
constexpr std::array NotBuiltYet{"PrintDir", "PrintOrg", "PrintStops", "PrintWarn"};

constexpr auto NotFoundTitle = "Run Not Found";
constexpr auto NotFoundText =
    "Oops, the run {} is not there any more.  Another program may have deleted it or changed its "
    "id.";
constexpr auto ApostropheText =
    "Oops, the run {} has an apostrophe in its id, so none of its rows can be looked up.  It "
    "cannot be edited.";

}  // namespace

Run::Run(forms::Form* owner)
    : forms::Form(Module, owner), ui_(std::make_unique<Ui::Run>()), answer_(this), Timer3(this) {
    setWindowModality(Qt::WindowModal);
    ui_->setupUi(this);
    setCancelButton(ui_->Exit_Run);
    forms::hideInPlace(*ui_->Status);
    boxes_ = std::make_unique<RunFieldBoxes>(
        RunFieldBoxes::Controls{ui_->RunID,         ui_->RunDesc,
                                ui_->cmbSchool,     ui_->cmbTripType,
                                ui_->cmbRunFamily,  ui_->cmbLOCCODE,
                                ui_->cmbVEHTYPE,    ui_->cmbCapacity,
                                ui_->BellTime,      ui_->OverFill,
                                ui_->Pickup,        ui_->TimeToUse,
                                ui_->StartTime,     ui_->EndTime,
                                ui_->Comment,       ui_->TotalPass,
                                ui_->TotalDistance, ui_->TotalRideTime,
                                ui_->TotalStops,    ui_->GIS_CLOSEDSTREETFILENAME,
                                ui_->chkMonday,     ui_->chkTuesday,
                                ui_->chkWednesday,  ui_->chkThursday,
                                ui_->chkFriday,     ui_->Regenerate,
                                ui_->Active},
        *ui_->DropOff);
    for (const auto* name : NotBuiltYet) {
        auto* button = findChild<QPushButton*>(name);
        button->setEnabled(false);
        button->setToolTip(button->toolTip() + "\n" + tr("Not available yet."));
    }
    wireFields();
    wireLists();
    wireButtons();
    wireMap();
}

Run::~Run() = default;

void Run::wireFields() {
    for (auto* combo : {ui_->cmbSchool, ui_->cmbTripType, ui_->cmbRunFamily, ui_->cmbLOCCODE}) {
        on(combo, &controls::MultiColumnCombo::editTextChanged, [this] { showNames(); });
    }
    on(ui_->Closed_Browse, &QPushButton::clicked, [this] { Closed_Browse_Click(); });
    on(ui_->Clear_Closed, &QPushButton::clicked, [this] { Clear_Closed_Click(); });
}

void Run::wireLists() {
    on(ui_->cmbDirType, &QComboBox::currentIndexChanged, [this] { Build_DirList(); });
    on(new QShortcut(Qt::Key_Delete, ui_->StopList, nullptr, nullptr, Qt::WidgetShortcut),
       &QShortcut::activated, [this] { ui_->Remove->click(); });
    on(ui_->StopList, &controls::MultiColumnList::rowActivated, [this] { StopEdit_Click(); });
    on(ui_->StopList, &controls::MultiColumnList::selectionCountChanged, [this] { showButtons(); });
    for (int tab = 0; tab < ui_->RunTab->count(); ++tab) {
        ui_->RunTab->setTabToolTip(tab, tr("Alt+%1").arg(tab + 1));
        on(new QShortcut(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + tab), this),
           &QShortcut::activated, [this, tab] { ui_->RunTab->setCurrentIndex(tab); });
    }
}

void Run::wireButtons() {
    on(ui_->OK, &QPushButton::clicked, [this] { OK_Click(); });
    on(ui_->CalcTimes, &QPushButton::clicked, [this] { CalcTimes_Click(); });
    on(ui_->Command1, &QPushButton::clicked, [this] { Command1_Click(); });
    on(ui_->MapIt, &QPushButton::clicked, [this] { MapIt_Click(); });
    on(ui_->AddStops, &QPushButton::clicked, [this] { AddStops_Click(); });
    on(ui_->GetStops, &QPushButton::clicked, [this] { GetStops_Click(); });
    on(ui_->StopEdit, &QPushButton::clicked, [this] { StopEdit_Click(); });
    on(ui_->Remove, &QPushButton::clicked, [this] { Remove_Click(); });
    on(ui_->Merge, &QPushButton::clicked, [this] { Merge_Click(); });
    on(ui_->Log, &QPushButton::clicked, [this] { Log_Click(); });
    on(ui_->Exit_Run, &QPushButton::clicked, [this] { Exit_Run_Click(); });
    on(new QShortcut(QKeySequence::Save, this), &QShortcut::activated,
       [this] { ui_->OK->click(); });
    on(new QShortcut(Qt::Key_F5, this), &QShortcut::activated, [this] { ui_->CalcTimes->click(); });
    on(&Timer3, &forms::Timer::tick, [this] { Timer3_Timer(); });
}

void Run::wireMap() {
    on(&answer_, &MapAnswer::status, [this](const QString& text) { showStatus(text); });
    on(&answer_, &MapAnswer::reload, [this] { Command1_Click(); });
    on(&answer_, &MapAnswer::lists, [this] { buildLists(); });
}

void Run::edit(const std::string& run) {
    if (isLoaded() && !mayLeave()) {
        return;
    }
    toEdit_ = std::string(base::trim(run));
    ui_->chkNew->setChecked(false);
    if (isLoaded()) {
        startEditing();
    }
}

void Run::editNew() {
    if (isLoaded() && !mayLeave()) {
        return;
    }
    toEdit_.clear();
    ui_->chkNew->setChecked(true);
    if (isLoaded()) {
        startEditing();
    }
}

void Run::Form_Load() {
    trapped("Form_Load", Module, [this] {
        data::Load_cmbSchool(*this);
        data::Load_cmbTRIPTYPE(*this);
        data::Load_cmbRunFamily(*this);
        data::Load_cmbLOCCODE(*this);
        data::Load_cmbVehType(*this);
        startEditing();
    });
}

void Run::startEditing() {
    answer_.stop();
    Timer3_Timer();
    ui_->RunTab->setCurrentIndex(0);
    isNew() ? openNew() : openStored();
}

void Run::openNew() {
    fill({textsOfNewRun(), {}});
    buildLists();
    ui_->RunID->setFocus();
}

void Run::openStored() {
    const auto refuseToOpen = [this](const char* text) {
        base::MsgBox(fmt::format(fmt::runtime(text), toEdit_), NotFoundTitle, MsgIcon::Information);
        startup::RefreshRunList = true;
        unload();
    };
    if (toEdit_.find('\'') != std::string::npos) {
        refuseToOpen(ApostropheText);
    } else if (const auto stored = readStoredRun(*gcnRouting, toEdit_)) {
        fill(*stored);
        buildLists();
        ui_->RunDesc->setFocus();
    } else {
        refuseToOpen(NotFoundText);
    }
}

void Run::fill(const StoredRun& run) {
    boxes_->clearRefusals();
    boxes_->show(run.texts);
    entries_.filled(run.texts, boxes_->texts());
    ui_->RunID->setReadOnly(!isNew());
    showAudit(run.audit);
    showNames();
    showHead();
    showButtons();
}

/// Shows what is stored now, but in fields that the planner has touched.
void Run::takeOver(const StoredRun& run) {
    const auto entered = boxes_->texts();
    for (const auto& info : runFields()) {
        const auto& stored = run.texts[info.field];
        if (!entries_.isTouched(info.field, entered[info.field])) {
            boxes_->show(info.field, stored);
            entries_.filled(info.field, stored, boxes_->text(info.field));
        }
    }
    showAudit(run.audit);
    showHead();
}

void Run::refresh() {
    if (isNew()) {
        return;
    }
    // A run that is gone is told when it is to be saved.
    if (const auto stored = readStoredRun(*gcnRouting, run())) {
        takeOver(*stored);
    }
    buildLists();
}

/// Another form may have changed the run.
void Run::Form_Activate() {
    trapped("Form_Activate", Module, [this] {
        if (activatedBefore_) {
            refresh();
        }
        activatedBefore_ = true;
    });
}

void Run::Command1_Click() {
    trapped("Command1_Click", Module, [this] { refresh(); });
}

bool Run::isBuilt(const QWidget& button) {
    return std::none_of(NotBuiltYet.begin(), NotBuiltYet.end(),
                        [&](const char* name) { return button.objectName() == name; });
}

bool Run::isNew() const { return ui_->chkNew->isChecked(); }

std::string Run::run() const { return std::string(base::trim(fromQt(ui_->RunID->text()))); }

bool Run::isTouched() const { return entries_.anyTouched(boxes_->texts()); }

}  // namespace runedit
