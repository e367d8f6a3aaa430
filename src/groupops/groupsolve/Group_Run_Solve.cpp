#include "groupops/groupsolve/Group_Run_Solve.h"

#include <fmt/format.h>

#include "groupops/base/grouploop.h"
#include "platform/controls/qtext.h"
#include "platform/forms/operation.h"
#include "platform/forms/timer.h"
#include "platform/process/process.h"
#include "startup/base/session.h"

#include "ui_Group_Run_Solve.h"

namespace groupops {

namespace {

using controls::toQt;
using runedit::MapScreen;

constexpr auto SolveForm = "Group_Run_Solve";
constexpr auto Title = "Group Run Solve";
constexpr auto CleanUpProgram = "DelWrkFiles.exe";
constexpr auto RunWorkProgram = "Process_RunWork.exe";

constexpr int LookMs = 200;                ///< between two looks at another program
constexpr int CleanUpIsSlowMs = 75'000;    ///< the clean-up gives up by itself before that
constexpr int AnswerLimitMs = 5 * 60'000;  ///< then the planner is asked whether to wait on
constexpr std::size_t CleanUpLimit = 16;

constexpr auto NothingSelected =
    "Oops, no run is selected in the run list.  Please select the runs to be solved and try again.";
constexpr auto AllSolved =
    "Oops, all selected runs were solved a moment ago.  Please take the tick off \"Leave out runs "
    "that were just solved\" to solve them once more.";
constexpr auto NoCleanUp =
    "The work files of earlier map sessions cannot be removed, because {} could not be started:\n"
    "{}\n\nA run that still has such files will be left out.  Do you want to send the runs?";
constexpr auto NoAnswer =
    "The mapping software has not sent its answer to run {} for 5 minutes.\n\n"
    "Yes - go on waiting.\nNo - stop here; the runs that come after it are not sent.";
constexpr auto NoRunWork =
    "The suite's program {}, which goes on with the solved runs, could not be started:\n{}\n\n"
    "What was solved is in the database.  Tell your administrator.";

QString cleanUpHint() {
    return Group_Run_Solve::tr(
               "The clean-up takes %1 runs at most. With more it reports an error and "
               "removes nothing; close its message to go on.")
        .arg(CleanUpLimit);
}

/// Why the program could not be started; blank where it was.
std::string faultOfStart(const char* program) {
    try {
        process::host().start(startup::gProgPath + program, {});
        return {};
    } catch (const base::RunTimeError& fault) {
        return fault.what();
    }
}

}  // namespace

Group_Run_Solve::Group_Run_Solve(RunSelection& selection, forms::Form* owner)
    : TrappedForm(SolveForm, owner),
      selection_(selection),
      ui_(std::make_unique<Ui::Group_Run_Solve>()),
      answer_(MapScreen::GroupRunSolve, this) {
    ui_->setupUi(this);
    setWindowModality(Qt::WindowModal);
    setCancelButton(ui_->CloseIt);
    ui_->DDEBox->hide();
    ui_->StopIt->setEnabled(false);
    forms::hideInPlace(*ui_->ProgressBar1);
    ui_->LeaveOutSolved->hide();
    on(ui_->ChangeIt, &QPushButton::clicked, "ChangeIt_Click", &Group_Run_Solve::ChangeIt_Click);
    on(ui_->StopIt, &QPushButton::clicked, "StopIt_Click", &Group_Run_Solve::StopIt_Click);
    on(ui_->CloseIt, &QPushButton::clicked, "CloseIt_Click", &Group_Run_Solve::CloseIt_Click);
    on(&answer_, &runedit::MapAnswer::status, "MapAnswer_Status",
       [this](const QString& text) { ui_->StatMsg->setText(text); });
    on(&answer_, &runedit::MapAnswer::reload, "MapAnswer_Reload",
       [this] { reply_ = MapReply::Received; });
    on(&answer_, &runedit::MapAnswer::gone, "MapAnswer_Gone",
       [this] { reply_ = MapReply::RunGone; });
}

Group_Run_Solve::~Group_Run_Solve() = default;

void Group_Run_Solve::Form_Load() {
    ui_->StatMsg->setText(runedit::mapExchangeOn() ? "" : runedit::MapExchangeOffText);
    ui_->RunStates->setTable(tableOf(SolveOutcome(selection_.selectedRuns())));
    showSelected();
}

void Group_Run_Solve::Form_Activate() { showSelected(); }

void Group_Run_Solve::showSelected() {
    const auto count = selection_.selectedRuns().size();
    ui_->SelectedRuns->setText(toQt(selectedText(count)));
    hint(count > CleanUpLimit ? cleanUpHint() : QString());
}

std::vector<std::string> Group_Run_Solve::runsToSend() const {
    auto runs = selection_.selectedRuns();
    if (ui_->LeaveOutSolved->isChecked()) {
        std::erase_if(runs, [this](const std::string& run) { return solved_.contains(run); });
    }
    return runs;
}

void Group_Run_Solve::ChangeIt_Click() {
    showSelected();
    const auto runs = runsToSend();
    if (!runedit::mapExchangeOn()) {
        ui_->StatMsg->setText(runedit::MapExchangeOffText);
    } else if (runs.empty()) {
        refuseNothing();
    } else {
        solve(runs);
    }
}

void Group_Run_Solve::refuseNothing() {
    base::MsgBox(selection_.selectedRuns().empty() ? NothingSelected : AllSolved, Title,
                 base::MsgIcon::Information);
}

void Group_Run_Solve::solve(const std::vector<std::string>& runs) {
    stops_ = 0;
    const auto outcome = operate(runs);
    ui_->StopIt->setText(tr("&Stop"));
    offerTheRest(outcome);
    tell(outcome);
}

SolveOutcome Group_Run_Solve::operate(const std::vector<std::string>& runs) {
    Operation operation(*this,
                        {.bars = {ui_->ProgressBar1}, .status = ui_->StatMsg, .stop = ui_->StopIt});
    ui_->RunStates->setEnabled(true);
    auto outcome = solveRuns(runs, *this, operation);
    hint({});
    operation.status(howFar(outcome.summary(), solveWording()));
    if (outcome.anySent()) {
        selection_.searchAgain();
        // An answer that was not awaited comes later.
        startup::RefreshRunList |= outcome.count(SolveState::Sent) > 0;
    }
    return outcome;
}

/// After a group that was not done whole, the next start may leave out what is solved.
void Group_Run_Solve::offerTheRest(const SolveOutcome& outcome) {
    solved_.merge([ids = outcome.runsIn(SolveState::Solved)] {
        return std::set<std::string>(ids.begin(), ids.end());
    }());
    const bool rest = !outcome.summary().complete() && !solved_.empty();
    if (!rest) {
        solved_.clear();
    }
    ui_->LeaveOutSolved->setVisible(rest);
    ui_->LeaveOutSolved->setChecked(rest);
}

void Group_Run_Solve::tell(const SolveOutcome& outcome) {
    const Outcome summary = outcome.summary();
    std::string text = whatWasLeft(summary, solveWording());
    const bool goesOn = outcome.reachedEnd() || outcome.anySent();
    if (const auto fault = goesOn ? faultOfStart(RunWorkProgram) : ""; !fault.empty()) {
        text = text.empty() ? howFar(summary, solveWording()) : text;
        text += "\n\n" + fmt::format(NoRunWork, RunWorkProgram, fault);
    }
    if (!text.empty()) {
        base::MsgBox(text, Title, base::MsgIcon::Information);
    }
}

void Group_Run_Solve::hint(const QString& text) { ui_->HintMsg->setText(text); }

std::vector<runedit::UnlistedRun> Group_Run_Solve::listRuns(const std::vector<std::string>& runs) {
    return runedit::listRunsForMap(runs, MapScreen::GroupRunSolve);
}

bool Group_Run_Solve::cleanUp(std::size_t runs) {
    const auto fault = faultOfStart(CleanUpProgram);
    if (fault.empty()) {
        return waitForCleanUp(runs);
    }
    return base::MsgBox(fmt::format(NoCleanUp, CleanUpProgram, fault), Title,
                        base::MsgIcon::Question, base::MsgButtons::YesNo) == base::MsgAnswer::Yes;
}

/// There is no limit to the wait: the clean-up may not come upon files of runs that were sent
/// since.
bool Group_Run_Solve::waitForCleanUp(std::size_t runs) {
    hint(runs > CleanUpLimit ? cleanUpHint() : QString());
    for (int waited = 0; process::host().isRunning(CleanUpProgram); waited += LookMs) {
        if (stops_ > 0) {
            return false;
        }
        if (waited == CleanUpIsSlowMs) {
            hint(tr("%1 is still running. Look at its window, or press Stop.").arg(CleanUpProgram));
        }
        forms::pause(LookMs);
    }
    hint({});
    return true;
}

bool Group_Run_Solve::awaitDatabase(const Outcome& soFar, base::ProgressPort& progress) {
    Outcome waiting = soFar;
    return GroupLoop(*startup::gcnRouting, progress, solveWording(), waiting).once([] {});
}

void Group_Run_Solve::send(const std::string& run) {
    reply_ = MapReply::MapEnded;
    runedit::sendRunToMap(run, MapScreen::GroupRunSolve);
}

MapReply Group_Run_Solve::awaitReply(const std::string& run) {
    answer_.start(run);
    for (int waited = 0; answer_.isWaiting(); waited += LookMs) {
        const bool tooLong = waited > 0 && waited % AnswerLimitMs == 0;
        if (stops_ > 1 || (tooLong && !goOnWaiting(run))) {
            answer_.stop();
            return MapReply::NotAwaited;
        }
        forms::pause(LookMs);
    }
    return reply_;
}

bool Group_Run_Solve::goOnWaiting(const std::string& run) const {
    return base::MsgBox(fmt::format(NoAnswer, run), Title, base::MsgIcon::Question,
                        base::MsgButtons::YesNo) == base::MsgAnswer::Yes;
}

void Group_Run_Solve::showState(const SolveOutcome& outcome, std::size_t at) {
    ui_->RunStates->setTable(tableOf(outcome));
    ui_->RunStates->choose(static_cast<int>(at));
}

void Group_Run_Solve::StopIt_Click() {
    ++stops_;
    if (answer_.isWaiting() && stops_ == 1) {
        ui_->StopIt->setText(tr("&Stop Now"));
        hint(tr("Stopping when the answer to this run is there. Stop Now does not wait."));
    }
}

void Group_Run_Solve::CloseIt_Click() { closeForm(); }

}  // namespace groupops
