#include "groupops/groupsolve/groupsolve.h"

#include <algorithm>
#include <optional>

#include <fmt/format.h>

#include "platform/dde/transport.h"
#include "platform/store/base/database.h"
#include "runedit/map/handover.h"

namespace groupops {

namespace {

constexpr auto Preparing = "Preparing for Group Run Solve...";
constexpr auto AtWork = "Changed information for run: {}.";
constexpr auto MapHasEnded = "The mapping software has ended without an answer.";

/// Whether the next run would meet the same fault.
bool stopsTheGroup(const base::RunTimeError& fault) {
    switch (fault.number()) {
        case dde::errors::NoBus:
        case dde::errors::NobodyThere:
        case dde::errors::ProgramEnded:
        case dde::errors::NoAnswerInTime:
        case base::errors::PathFileAccess:
        case base::errors::FileNotFound:
            return true;
        default:
            return false;
    }
}

bool isLock(const base::RunTimeError& fault) {
    return fault.number() == store::numberOf(store::Fault::Locked);
}

void leaveOut(SolveRun& run, const base::RunTimeError& fault) {
    const bool gone = fault.number() == base::errors::InvalidProcedureCall;
    run.state = gone ? SolveState::Gone : SolveState::Failed;
    run.why = fault.what();
}

class GroupSolve {
public:
    GroupSolve(const std::vector<std::string>& runs, MapSide& map, base::ProgressPort& progress)
        : outcome_(runs), map_(map), progress_(progress) {}

    SolveOutcome solve() {
        try {
            prepare();
            for (std::size_t i = 0; i < outcome_.runs.size() && outcome_.reachedEnd(); ++i) {
                turn(i);
            }
        } catch (const base::RunTimeError& fault) {
            if (!stopsTheGroup(fault)) {
                throw;
            }
            outcome_.fault = fault.what();
        }
        return std::move(outcome_);
    }

private:
    void prepare() {
        progress_.status(Preparing);
        map_.showState(outcome_, 0);
        map_.require();
        for (const auto& unlisted : listWhenFree()) {
            leaveOut(*std::ranges::find(outcome_.runs, unlisted.run, &SolveRun::run),
                     unlisted.fault);
        }
        const auto listed = outcome_.count(SolveState::NotSent);
        outcome_.stopped = outcome_.stopped || (listed > 0 && !map_.cleanUp(listed));
    }

    std::vector<runedit::UnlistedRun> listWhenFree() {
        while (map_.awaitDatabase(outcome_.summary(), progress_)) {
            progress_.status(Preparing);
            auto unlisted = map_.listRuns(outcome_.runsIn(SolveState::NotSent));
            if (std::ranges::none_of(unlisted, isLock, &runedit::UnlistedRun::fault)) {
                return unlisted;
            }
        }
        outcome_.stopped = true;
        return {};
    }

    void turn(std::size_t at) {
        if (progress_.yield()) {
            outcome_.stopped = true;
            return;
        }
        SolveRun& run = outcome_.runs[at];
        if (run.state == SolveState::NotSent) {
            map_.showState(outcome_, at);
            if (sendWhenFree(run)) {
                run.state = SolveState::Sent;
                map_.showState(outcome_, at);
                takeReply(run, map_.awaitReply(run.run));
            }
        }
        map_.showState(outcome_, at);
        progress_.progress(100.0 * static_cast<double>(at + 1) /
                           static_cast<double>(outcome_.runs.size()));
    }

    /// False where the run was left out, or the planner stopped.
    bool sendWhenFree(SolveRun& run) {
        std::optional<bool> sent;
        while (!sent && map_.awaitDatabase(outcome_.summary(), progress_)) {
            progress_.status(fmt::format(AtWork, run.run));
            sent = send(run);
        }
        outcome_.stopped = !sent;
        return sent.value_or(false);
    }

    /// Nothing where another program has locked the database meanwhile.
    std::optional<bool> send(SolveRun& run) {
        try {
            map_.send(run.run);
            return true;
        } catch (const runedit::StillProcessing& busy) {
            run.state = SolveState::StillProcessing;
            base::MsgBox(busy.what(), runedit::MapStillProcessingTitle, base::MsgIcon::Information);
        } catch (const base::RunTimeError& fault) {
            if (stopsTheGroup(fault)) {
                throw;
            }
            if (isLock(fault)) {
                return std::nullopt;
            }
            leaveOut(run, fault);
        }
        return false;
    }

    void takeReply(SolveRun& run, MapReply reply) {
        switch (reply) {
            case MapReply::Received:
                run.state = SolveState::Solved;
                break;
            case MapReply::RunGone:
                run.state = SolveState::Gone;
                break;
            case MapReply::MapEnded:
                outcome_.fault = MapHasEnded;
                break;
            case MapReply::NotAwaited:
                outcome_.stopped = true;
                break;
        }
    }

    SolveOutcome outcome_;
    MapSide& map_;
    base::ProgressPort& progress_;
};

}  // namespace

SolveOutcome solveRuns(const std::vector<std::string>& runs, MapSide& map,
                       base::ProgressPort& progress) {
    return GroupSolve(runs, map, progress).solve();
}

}  // namespace groupops
