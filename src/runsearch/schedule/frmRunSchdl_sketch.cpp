#include <algorithm>
#include <cmath>

#include "groupops/base/outcome.h"
#include "groupops/deadhead/routedeadhead.h"
#include "platform/base/ports.h"
#include "platform/controls/qtext.h"
#include "platform/forms/operation.h"
#include "runsearch/schedule/frmRunSchdl.h"
#include "runsearch/schedule/sketchsaving.h"
#include "startup/base/mdlSecurity_Routines.h"
#include "startup/base/session.h"

#include "ui_frmRunSchdl.h"

namespace schedule {

constexpr auto LeaveTitle = "Throw Away the Sketch";
constexpr auto LeaveQuestion =
    "The sketch has changes that are not saved.\n\nAre you sure you want to throw them away?";
constexpr auto AppliedTitle = "Apply the Sketch";

void frmRunSchdl::wireSketch() {
    on(ui_->UndoSketch, &QPushButton::clicked, "UndoSketch_Click", &frmRunSchdl::UndoSketch_Click);
    on(ui_->ThrowAway, &QPushButton::clicked, "ThrowAway_Click", &frmRunSchdl::ThrowAway_Click);
    on(ui_->ApplySketch, &QPushButton::clicked, "ApplySketch_Click",
       &frmRunSchdl::ApplySketch_Click);
    key(QKeySequence::Undo, ui_->UndoSketch);
    const TravelTime travel = [this](auto from, auto to) { return travelOf(from, to); };
    ui_->TimeLine->setSketching(
        {.card =
             [this, travel](const Drag& drag) {
                 return moveCard(plan(), chart_, drag, travel, checksOf(drag));
             },
         .fit = [this, travel](const Drag& drag) { return fitOn(plan(), chart_, drag, travel); },
         .drop =
             [this](const Drag& drag) {
                 trap("TimeLine_Drop", [this, drag] {
                     const auto route = drag.route == None ? 0 : plan().route(drag.route).key;
                     sketch_.keep({plan().run(drag.run).id, route, drag.start});
                     showSketch();
                 });
             }});
}

/// A way that cannot be read just now is one that is not known.
std::optional<Seconds> frmRunSchdl::travelOf(std::int32_t from, std::int32_t to) {
    if (from < 1 || to < 1) {
        return std::nullopt;
    }
    const auto [known, isNew] = travel_.try_emplace({from, to});
    if (isNew) {
        try {
            const auto travel = groupops::readTravel(*startup::gcnDeadCross, from, to);
            if (travel.isKnown()) {
                known->second = static_cast<Seconds>(std::lround(travel.minutes * Minute));
            }
        } catch (const std::exception&) {
            travel_.erase(known);
            return std::nullopt;
        }
    }
    return known->second;
}

/// Rules that cannot be asked just now are told as that, and the drag goes on.
MoveChecks frmRunSchdl::checksOf(const Drag& drag) {
    try {
        return checks_->of(stored_, drag);
    } catch (const std::exception&) {
        return {.riders = {}, .lines = {{"Checks", "could not be made just now", Trouble::Tight}}};
    }
}

void frmRunSchdl::applyMoves(const std::vector<Move>& moves) {
    sketched_ = sketch_.applied(stored_, [this](auto from, auto to) { return travelOf(from, to); });
    for (const auto& move : moves) {
        auto& run = *std::ranges::find(sketched_->runs, move.run, &ScheduledRun::id);
        const auto place = static_cast<int>(&run - sketched_->runs.data());
        run.hasWarnings = !checksOf({place, run.route, *run.start}).lines.empty();
    }
}

void frmRunSchdl::showSketch() {
    const auto moves = sketch_.moves(stored_);
    sketched_.reset();
    if (!moves.empty()) {
        applyMoves(moves);
    }
    ui_->SketchBar->setVisible(!sketch_.isEmpty());
    ui_->ApplySketch->setEnabled(!moves.empty());
    ui_->SketchText->setText(controls::toQt(sketchText(stored_, moves)));
    ui_->SketchText->setToolTip(ui_->SketchText->text());
    layOutAnew();
}

void frmRunSchdl::UndoSketch_Click() {
    sketch_.undo();
    showSketch();
}

void frmRunSchdl::ThrowAway_Click() {
    sketch_.clear();
    showSketch();
}

/// What could not be saved stays in the sketch, over the runs as they are now.
void frmRunSchdl::ApplySketch_Click() {
    if (!startup::HasAuthority("RTG260", true)) {
        return;
    }
    groupops::Outcome outcome;
    {
        Operation operation(*this, {.status = ui_->SketchText});
        outcome = saveMoves(*startup::gcnRouting, stored_, sketch_.moves(stored_),
                            startup::gCommandLine, operation);
    }
    startup::RefreshRunList = outcome.done > 0 || startup::RefreshRunList;
    if (outcome.complete()) {
        sketch_.clear();
    }
    read();
    const auto left = groupops::whatWasLeft(outcome, groupops::runChangeWording());
    if (!left.empty()) {
        base::MsgBox(left, AppliedTitle, base::MsgIcon::Information);
    }
}

bool frmRunSchdl::Form_QueryUnload() {
    return sketch_.isEmpty() || base::MsgBox(LeaveQuestion, LeaveTitle, base::MsgIcon::Question,
                                             base::MsgButtons::YesNo) == base::MsgAnswer::Yes;
}

}  // namespace schedule
