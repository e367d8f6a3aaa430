#include <QLabel>

#include "data/lists/samelist.h"
#include "platform/controls/qtext.h"
#include "runedit/editor/Run.h"
#include "runedit/editor/runlists.h"
#include "startup/base/session.h"

#include "ui_Run.h"

namespace runedit {

using controls::toQt;

/// Both lines stand above the pages while there is something to say: in sight on a small screen,
/// too, and they move no field.
void Run::watchOthers() {
    auto* alsoOpen = new QLabel(this);
    alsoOpen->setObjectName("AlsoOpen");
    alsoOpen->setTextFormat(Qt::PlainText);
    alsoOpen->setWordWrap(true);
    alsoOpen->setForegroundRole(QPalette::PlaceholderText);
    alsoOpen->hide();
    auto& column = *ui_->mainColumn;
    column.insertWidget(column.indexOf(ui_->RunTab), alsoOpen);
    changed_->standIn(column, column.indexOf(ui_->RunTab), ui_->CalcTimes);
    auto* watch = &startup::ChangeWatch::instance();
    on(changed_, &startup::ChangedNote::readAnew, "Command1_Click", &Run::Command1_Click);
    on(watch, &startup::ChangeWatch::changed, "lookAtOthers", &Run::lookAtOthers);
    on(watch, &startup::ChangeWatch::othersOpen, "othersOpen", [alsoOpen](const QString& who) {
        alsoOpen->setText(tr("Also open: %1").arg(who));
        alsoOpen->setVisible(!who.isEmpty());
    });
}

void Run::Form_Unload() {
    answer_.stop();
    startup::ChangeWatch::instance().open({});
}

void Run::lookAtOthers(const store::Changes& changes) {
    if (isNew() || !seen_ || !startup::concerns(changes, run())) {
        return;
    }
    const auto stored = storedRun();
    if (!stored) {
        return changed_->tell(
            tr("This run was deleted meanwhile.  What you see is not stored any "
               "more."));
    }
    const auto stops = readStopList(*startup::gcnRouting, run(), ui_->Pickup->isChecked());
    if (*stored != *seen_) {
        changed_->tell(startup::changedBy(tr("this run"), toQt(stored->text("ChangedBy")),
                                          toQt(stored->text("changeddt"))));
    } else if (!data::isSameList(stops.table, ui_->StopList->table())) {
        changed_->tell(tr("The stops of this run were changed meanwhile."));
    }
}

}  // namespace runedit
