#include <QScopeGuard>

#include <fmt/format.h>

#include "data/runs/runrow.h"
#include "groupops/belltime/BellTimeChange.h"
#include "groupops/deadhead/frmCalcDeadHead.h"
#include "groupops/groupchange/frmGroupRunChange.h"
#include "groupops/groupsolve/Group_Run_Solve.h"
#include "groupops/merge/MergeRun.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "platform/forms/formregistry.h"
#include "reports/selection/ReportSelection.h"
#include "runedit/editor/Run.h"
#include "runsearch/log/RunLogInquiry.h"
#include "runsearch/schedule/frmRunSchdl.h"
#include "runsearch/search/frmTarn.h"
#include "runsearch/search/listplace.h"
#include "runsearch/search/rundeletion.h"
#include "runsearch/search/runlist.h"
#include "runsearch/search/searchreports.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/mdlNONULL.h"
#include "startup/base/mdlSecurity_Routines.h"

#include "ui_frmTarn.h"

namespace runsearch {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr auto NoRunSelectedTitle = "No Run Selected";
constexpr auto NoRunToEdit =
    "Oops, you did not select run to edit.  Please click on the desired run and try again.";
constexpr auto NoRunToDelete =
    "Oops, you did not select run to delete.  Please click on the desired run and try again.";
constexpr auto NoRunToMerge =
    "Oops, you did not select run to merge.  Please click on the desired run and try again.";
constexpr auto NoRunForMap =
    "Oops, you did not select run to send to the map.  Please click on the desired run and try "
    "again.";
constexpr auto NoRunForLog =
    "Oops, you did not select run to see the log of.  Please click on the desired run and try "
    "again.";
constexpr auto ConfirmDeletionTitle = "Please Confirm Removal of this Run";
constexpr auto ConfirmDeletion = "Are you sure you want to remove this run?";
constexpr auto HasStopsTitle = "Cannot Delete - Run Has Stops Assigned to it";
constexpr auto HasStops =
    "Oops, this run has stops assigned to it.  Sorry but you cannot delete a run with stops "
    "assigned to it.";
constexpr auto RunGoneTitle = "Run Not Found";
constexpr auto RunGone =
    "Oops, the run {} is not there any more.  It was probably removed by another user.  Please "
    "search again.";

constexpr auto TakesHiddenRunsTitle = "The List Is Filtered";
constexpr auto TakesHiddenRuns =
    "{} takes all {} runs that were found, also those that the filter hides.\nTo take only some, "
    "press Cancel and search for them.";

template <class T, class... Arguments>
void openForm(Arguments&&... arguments) {
    forms::FormRegistry::instance().make<T>(std::forward<Arguments>(arguments)...).showForm();
}

void inform(const std::string& text, const char* title) {
    base::MsgBox(text, title, base::MsgIcon::Information);
}

}  // namespace

std::string frmTarn::chosenRun() const {
    return std::string(base::trim(fromQt(ui_->Tarn->text())));
}

void frmTarn::tellRunIsGone(const std::string& run) {
    inform(fmt::format(RunGone, run), RunGoneTitle);
    refreshRunList();
}

/// chkNew is set only while the editor loads.
void frmTarn::cmdNew_Click() {
    if (!startup::HasAuthority("RTG210", true)) {
        return;
    }
    auto& editor = forms::FormRegistry::instance().make<runedit::Run>(this);
    editor.editNew();
    ui_->chkNew->setChecked(true);
    {
        const auto cleared = qScopeGuard([this] { ui_->chkNew->setChecked(false); });
        editor.load();
    }
    editor.showForm();
}

/// True where no run is chosen, or another user has removed it; both are told.
bool frmTarn::refuseMissingRun(const std::string& run, const char* noneChosen) {
    if (run.empty()) {
        inform(noneChosen, NoRunSelectedTitle);
        return true;
    }
    if (!data::runExists(*startup::gcnRouting, run)) {
        tellRunIsGone(run);
        return true;
    }
    return false;
}

bool frmTarn::openChosenRun(const char* noneChosen) {
    ui_->Tarn->setText(toQt(startup::NoNullString(ui_->RunList->chosenKey()).asText()));
    const std::string run = chosenRun();
    if (refuseMissingRun(run, noneChosen)) {
        return false;
    }
    auto& editor = forms::FormRegistry::instance().make<runedit::Run>(this);
    editor.follow(*this);
    editor.edit(run);
    editor.showForm();
    return true;
}

void frmTarn::Edit_Click() { (void)openChosenRun(NoRunToEdit); }

/// The editor hands the run over and waits for the map's answer.
void frmTarn::Map_Click() {
    if (openChosenRun(NoRunForMap)) {
        if (auto* editor = forms::FormRegistry::instance().find("Run"); editor != nullptr) {
            editor->findChild<QPushButton*>("MapIt")->click();
        }
    }
}

void frmTarn::Log_Click() {
    const std::string run = chosenRun();
    if (run.empty()) {
        return inform(NoRunForLog, NoRunSelectedTitle);
    }
    auto& log = forms::FormRegistry::instance().make<RunLogInquiry>(this);
    log.ask(run);
    log.showForm();
}

void frmTarn::Delete_Click() {
    const std::string run = chosenRun();
    const int place = placeOf(run);
    if (run.empty() || place == 0) {
        return inform(NoRunToDelete, NoRunSelectedTitle);
    }
    if (!startup::HasAuthority("RTG230", true) ||
        !base::confirmLoss(ConfirmDeletion, ConfirmDeletionTitle,
                           runInWords(ui_->RunList->table(), ui_->RunList->tableRow(place - 1)))) {
        return;
    }
    switch (deleteRun(*startup::gcnRouting, run)) {
        case Deletion::HasStops:
            return inform(HasStops, HasStopsTitle);
        case Deletion::NoSuchRun:
            return tellRunIsGone(run);
        case Deletion::Done:
            return refreshRunList(ListPlace::WhenGone::NextChosen);
    }
}

std::vector<std::string> frmTarn::selectedRuns() const { return selectedKeys(*ui_->RunList); }

void frmTarn::searchAgain() { refreshRunList(); }

/// Nothing that the planner has arranged in the list is lost when runs were changed.
void frmTarn::refreshRunList(ListPlace::WhenGone whenGone) {
    const ListPlace place(*ui_->RunList);
    trap("cmdSearch_Click", &frmTarn::cmdSearch_Click);
    place.restore(*ui_->RunList, whenGone);
    RunList_ClickItem();
}

int frmTarn::placeOf(const std::string& run) const {
    const int chosen = ui_->RunList->chosenRow();
    const auto isIt = [&](int row) {
        return base::trim(ui_->RunList->cellText(row, 0)) == base::trim(run);
    };
    if (chosen >= 0 && isIt(chosen)) {
        return chosen + 1;
    }
    for (int row = 0; row < ui_->RunList->rows(); ++row) {
        if (isIt(row)) {
            return row + 1;
        }
    }
    return 0;
}

int frmTarn::count() const { return ui_->RunList->rows(); }

std::string frmTarn::choose(int place) {
    ui_->RunList->choose(place - 1);
    RunList_ClickItem();
    return chosenRun();
}

bool frmTarn::isHiddenByFilter(const std::string& run) const {
    const auto& runs = ui_->RunList->table();
    bool isListed = false;
    for (std::size_t row = 0; row < runs.rowCount() && !isListed; ++row) {
        isListed = base::trim(runs.text(row, 0)) == base::trim(run);
    }
    return isListed && placeOf(run) == 0;
}

/// False where the list does not have it. A run that the filter hides is worth more than the
/// filter.
bool frmTarn::chooseRun(const std::string& run) {
    if (isHiddenByFilter(run)) {
        ui_->RunList->setFilter({});
    }
    const int place = placeOf(run);
    if (place > 0) {
        (void)choose(place);
    }
    return place > 0;
}

void frmTarn::editRun(const std::string& run) {
    if (chooseRun(run)) {
        trap("Edit_Click", &frmTarn::Edit_Click);
    } else {
        tellRunIsGone(run);
    }
}

bool frmTarn::takesHiddenRuns(const QPushButton& action) const {
    const auto& list = *ui_->RunList;
    return !list.isFiltered() ||
           base::MsgBox(
               {.text = fmt::format(TakesHiddenRuns, fromQt(QString(action.text()).remove('&')),
                                    list.rowsInAll()),
                .title = TakesHiddenRunsTitle,
                .icon = base::MsgIcon::Question,
                .buttons = base::MsgButtons::OkCancel,
                .concerns = fromQt(ui_->RunFilter->told())}) == base::MsgAnswer::Ok;
}

void frmTarn::PrintIt_Click() {
    if (!takesHiddenRuns(*ui_->PrintIt)) {
        return;
    }
    offerSearchReports(forms::FormRegistry::instance().make<reports::ReportSelection>(
        [this] { return found_; }, this));
}

void frmTarn::TimeLine_Click() {
    if (!takesHiddenRuns(*ui_->TimeLine)) {
        return;
    }
    auto& form = forms::FormRegistry::instance().make<schedule::frmRunSchdl>(
        schedule::RunListPort{.chosen = [this] { return chosenRun(); },
                              .choose = [this](const std::string& run) { chooseRun(run); },
                              .edit = [this](const std::string& run) { editRun(run); }},
        this);
    if (!form.isLoaded()) {
        using controls::MultiColumnList;
        forms::on(ui_->RunList, &MultiColumnList::rowClicked, &form,
                  [this, &form] { form.follow(chosenRun()); });
        forms::on(ui_->RunList->model(), &QAbstractItemModel::modelReset, &form,
                  [&form] { form.listChanged(); });
    }
    form.showForm();
}

void frmTarn::ChangeBell_Click() {
    if (takesHiddenRuns(*ui_->ChangeBell)) {
        openForm<groupops::BellTimeChange>(*this, this);
    }
}

void frmTarn::GroupChange_Click() { openForm<groupops::frmGroupRunChange>(*this, this); }

void frmTarn::GroupSolve_Click() { openForm<groupops::Group_Run_Solve>(*this, this); }

void frmTarn::MergeRuns_Click() {
    const std::string run = chosenRun();
    if (refuseMissingRun(run, NoRunToMerge)) {
        return;
    }
    auto& merge = forms::FormRegistry::instance().make<groupops::MergeRun>(this);
    merge.receive(run);
    merge.showForm();
}

void frmTarn::DeadHead_Click() { openForm<groupops::frmCalcDeadHead>(this); }

void frmTarn::SelectAll_Click() { ui_->RunList->selectAllRows(); }

void frmTarn::Exit_Click() { startup::ShutDown(); }

}  // namespace runsearch
