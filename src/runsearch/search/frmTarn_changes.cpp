
#include "platform/base/error.h"
#include "platform/controls/multicolumnlist.h"
#include "runsearch/search/frmTarn.h"
#include "startup/base/session.h"
#include "startup/forms/changewatch.h"

#include "ui_frmTarn.h"

namespace runsearch {

void frmTarn::watchRuns() {
    changedNote_ = new startup::ChangedNote(this);
    changedNote_->standIn(*ui_->mainColumn, -1, ui_->RunList);
    ui_->RunList->drawColumnBy("Run", new ChangedRunDelegate(*ui_->RunList, changedRuns_));
    on(changedNote_, &startup::ChangedNote::readAnew, "refreshRunList",
       [this] { refreshRunList(); });
    on(&startup::ChangeWatch::instance(), &startup::ChangeWatch::changed, "lookAtOthers",
       &frmTarn::lookAtOthers);
    on(&compareTurn_, &forms::Timer::tick, "CompareRuns_Timer", &frmTarn::CompareRuns_Timer);
}

void frmTarn::lookAtOthers(const store::Changes& changes) {
    constexpr int AtOnceMs = 1;
    if (changedRuns_.hear(changes) && !compareTurn_.isEnabled()) {
        compareTurn_.startOnce(AtOnceMs);
    }
    showChangedRuns();
}

/// The planner has asked for nothing, so a refusal is not told; the next change is another
/// occasion.
void frmTarn::CompareRuns_Timer() {
    try {
        if (const int next = changedRuns_.takeTurn(*startup::gcnRouting); next > 0) {
            compareTurn_.startOnce(next);
        }
    } catch (const base::RunTimeError&) {
        changedRuns_.giveUpComparing();
    }
    showChangedRuns();
}

void frmTarn::showChangedRuns() {
    const auto count = static_cast<int>(changedRuns_.count());
    ui_->RunList->viewport()->update();
    if (count == 0) {
        return changedNote_->clear();
    }
    changedNote_->tell(
        count == 1 ? tr("1 run of the list was changed or deleted meanwhile.")
                   : tr("%1 runs of the list were changed or deleted meanwhile.").arg(count));
}

}  // namespace runsearch
