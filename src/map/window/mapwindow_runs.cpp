#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "map/run/solvedrun.h"
#include "map/window/mapwindow.h"
#include "platform/base/ports.h"

#include "ui_mapwindow.h"

namespace map {

constexpr auto NotSavedTitle = "Not Saved";

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

}  // namespace map
