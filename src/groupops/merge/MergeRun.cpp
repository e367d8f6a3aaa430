#include "groupops/merge/MergeRun.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "platform/base/text.h"
#include "platform/controls/grid.h"
#include "platform/controls/qtext.h"
#include "platform/forms/timer.h"
#include "startup/base/session.h"

#include "ui_MergeRun.h"

namespace groupops {

namespace {

using controls::fromQt;
using controls::toQt;
using controls::toRich;

constexpr auto MergeForm = "MergeRun";
constexpr int MergedMessageMs = 15'000;

constexpr auto UnlikeQuestion =
    "The two runs are unlike: {}.  Do you want to merge them all the same?";
constexpr auto UnlikeTitle = "Please Confirm Merge of Unlike Runs";

const std::string& orNone(const std::string& text) {
    static const std::string none = "none";
    return text.empty() ? none : text;
}

}  // namespace

MergeRun::MergeRun(forms::Form* owner)
    : TrappedForm(MergeForm, owner),
      ui_(std::make_unique<Ui::MergeRun>()),
      Timer1(new forms::Timer(this)) {
    ui_->setupUi(this);
    setWindowModality(Qt::WindowModal);
    setCancelButton(ui_->Exit);
    panel_ = {{ui_->ProgressBar1}, ui_->StatusMsg, ui_->Stop, Timer1, MergedMessageMs};
    forms::hideInPlace(*ui_->StatusMsg);
    forms::hideInPlace(*ui_->ProgressBar1);
    ui_->Stop->setEnabled(false);
    on(ui_->cmbRUN, &QComboBox::currentTextChanged, "cmbRUN_Change", &MergeRun::showBoth);
    on(ui_->Merge, &QPushButton::clicked, "Merge_Click", &MergeRun::Merge_Click);
    on(ui_->Exit, &QPushButton::clicked, "Exit_Click", &MergeRun::Exit_Click);
    on(Timer1, &forms::Timer::tick, "Timer1_Timer", &MergeRun::Timer1_Timer);
}

MergeRun::~MergeRun() = default;

void MergeRun::receive(const std::string& run) {
    ui_->OrigRun->setText(toQt(base::trim(run)));
    if (isLoaded()) {
        showRuns();
    }
}

void MergeRun::Form_Load() { showRuns(); }

void MergeRun::showRuns() {
    const std::string receiving = asked().receiving;
    ui_->cmbRUN->setTable(readOtherRuns(*startup::gcnRouting, receiving));
    ui_->cmbRUN->setFocus();
    showBoth();
}

void MergeRun::showBoth() {
    const RunMerge wanted = asked();
    both_ = compareForMerge({*startup::gcnRouting, *startup::gcnTrip}, wanted, seatsOf);
    showLines();
    showUnlike();
    showAfter();
    const bool alike = both_ && both_->complete && both_->unlike().empty();
    ui_->Merge->setDefault(alike);
}

void MergeRun::showLines() {
    const RunMerge wanted = asked();
    auto& grid = *ui_->SideBySide;
    grid.setColumns({{"", "Thing"},
                     {wanted.source.empty() ? "Gives its stops"
                                            : fmt::format("Run {}, gives its stops", wanted.source),
                      "Source"},
                     {fmt::format("Run {}, takes them", wanted.receiving), "Receiving"}});
    grid.setWideColumn(1);
    grid.setWideColumn(2);
    std::vector<std::vector<std::string>> rows;
    for (const MergeLine& line : both_ ? both_->lines : std::vector<MergeLine>()) {
        rows.push_back({line.thing, line.source, line.receiving});
    }
    grid.setRows(std::move(rows));
    for (int row = 0; row < grid.rows(); ++row) {
        const auto verdict = both_->lines[static_cast<std::size_t>(row)].verdict;
        const bool unlike = verdict == MergeLine::Verdict::Unlike;
        for (int column = 0; unlike && column < 3; ++column) {
            grid.setNote(row, column, {controls::Tone::Wrong});
        }
        if (unlike) {
            grid.setNote(row, 0, {controls::Tone::Wrong, controls::Sign::Unlike});
        } else if (verdict == MergeLine::Verdict::Like) {
            grid.setNote(row, 0, {controls::Tone::Plain, controls::Sign::Tick});
        }
    }
    grid.fitColumns();
}

void MergeRun::showUnlike() {
    const auto things = both_ ? both_->unlike() : std::vector<std::string>();
    ui_->Unlike->setVisible(!things.empty());
    if (things.empty()) {
        return;
    }
    QString text =
        tr("<b>%1 unlike: %2.</b>")
            .arg(things.size() == 1 ? tr("One thing is") : tr("%1 things are").arg(things.size()),
                 toRich(fmt::format("{}", fmt::join(things, ", "))));
    const MergeLine& types = both_->line("Trip type");
    if (types.verdict == MergeLine::Verdict::Unlike) {
        text += tr(" The stops of %1 keep the trip type %2 on a run of trip type %3.")
                    .arg(toRich(asked().source), toRich(orNone(types.source)),
                         toRich(orNone(types.receiving)));
    }
    ui_->Unlike->say(controls::Tone::Wrong, text, controls::Sign::Unlike);
}

void MergeRun::showAfter() {
    const bool any = both_ && both_->complete;
    ui_->AfterMerge->setVisible(any);
    if (!any) {
        return;
    }
    QString text =
        tr("After the merge: <b>%1</b>, <b>%2</b>")
            .arg(toRich(countOf(static_cast<std::size_t>(both_->stopsAfter), "stop")),
                 toRich(countOf(static_cast<std::size_t>(both_->passengersAfter), "passenger")));
    if (both_->seats) {
        text += tr(" of %1 seats").arg(*both_->seats);
    }
    const auto tooMany = both_->tooMany();
    if (tooMany > 0) {
        text += tr(", <b>%1 too many</b>").arg(tooMany);
    }
    ui_->AfterMerge->say(tooMany > 0 ? controls::Tone::Look : controls::Tone::Plain, text + ".",
                         tooMany > 0 ? std::optional(controls::Sign::Warning) : std::nullopt);
}

RunMerge MergeRun::asked() const {
    return {fromQt(ui_->OrigRun->text()), std::string(base::trim(ui_->cmbRUN->text())),
            startup::gCommandLine};
}

void MergeRun::Merge_Click() {
    const RunMerge wanted = asked();
    if (!refuse(wanted) && isMeant(wanted)) {
        merge(wanted);
    }
}

/// Asks where the two are unlike, as they are stored now.
bool MergeRun::isMeant(const RunMerge& merge) const {
    const auto now = compareForMerge({*startup::gcnRouting, *startup::gcnTrip}, merge, seatsOf);
    const auto things = now ? now->unlike() : std::vector<std::string>();
    return things.empty() || base::confirmLoss(fmt::format(UnlikeQuestion, fmt::join(things, ", ")),
                                               UnlikeTitle, concernsOf(*now, merge));
}

/// Tells the planner why two runs cannot be merged; two equal texts do nothing.
bool MergeRun::refuse(const RunMerge& merge) {
    const auto obstacle = mergeObstacle(*startup::gcnRouting, merge);
    if (const auto message = messageOf(obstacle, merge)) {
        base::MsgBox(message->text, message->title, base::MsgIcon::Information);
        ui_->cmbRUN->setFocus();
    }
    return obstacle != MergeObstacle::None;
}

void MergeRun::merge(const RunMerge& merge) {
    Outcome outcome;
    {
        Operation operation(*this, panel_);
        outcome = mergeRuns(*startup::gcnRouting, merge, operation);
        operation.status(outcome.complete() ? fmt::format("All stops of run: {} merged to run: {}.",
                                                          merge.source, merge.receiving)
                                            : howFar(outcome, mergeWording(merge)));
    }
    startup::RefreshRunList = true;
    trap("cmbRUN_Change", &MergeRun::showBoth);
    if (const auto left = whatWasLeft(outcome, mergeWording(merge)); !left.empty()) {
        base::MsgBox(left, "Not All Stops Merged", base::MsgIcon::Information);
    }
}

void MergeRun::Exit_Click() { closeForm(); }

void MergeRun::Timer1_Timer() { panel_.clear(); }

}  // namespace groupops
