#include <QHBoxLayout>
#include <QMenu>
#include <QScopeGuard>
#include <QShortcut>

#include "data/runs/runrow.h"
#include "platform/controls/focusall.h"
#include "platform/forms/formregistry.h"
#include "runedit/editor/Run.h"
#include "runsearch/finder/finderbox.h"
#include "runsearch/search/frmTarn.h"

#include "ui_frmTarn.h"

namespace runsearch {

/// Beside the district's name, where it takes no line of its own.
void frmTarn::makeFinder() {
    headingEnd_ = new QWidget(this);
    finder_ = new FinderBox(headingEnd_);
    finder_->setObjectName("FindRun");
    auto* row = new QHBoxLayout(headingEnd_);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(finder_);
    row->addWidget(ui_->DistrictName);
    findTurn_.setInterval(1);
    on(&findTurn_, &forms::Timer::tick, "FindRun_Timer", &frmTarn::FindRun_Timer);
    on(finder_, &FinderBox::readingWanted, "FindRun_Read", [this] { findTurn_.setEnabled(true); });
    on(finder_, &FinderBox::offerWanted, "FindRun_Change", [this] { finder_->offer(); });
    on(finder_, &FinderBox::taken, "FindRun_Click", &frmTarn::FindRun_Click);
    on(new QShortcut(Qt::CTRL | Qt::Key_K, this), &QShortcut::activated, "FindRun_Focus",
       &frmTarn::enterFinder);
}

void frmTarn::addFinding(QMenu& view) {
    on(view.addAction(tr("Find a Run\tCtrl+K")), &QAction::triggered, "FindRun_Focus",
       &frmTarn::enterFinder);
    on(view.addAction(tr("Filter the List\tCtrl+F")), &QAction::triggered, "RunFilter_Focus",
       [this] { ui_->RunFilter->setFocus(Qt::ShortcutFocusReason); });
}

/// What could not be read is read from the beginning when the box is entered again.
void frmTarn::FindRun_Timer() {
    findTurn_.setEnabled(false);
    auto failed = qScopeGuard([this] { finder_->forget(); });
    findTurn_.setEnabled(finder_->readOn(*startup::gcnRouting));
    failed.dismiss();
}

void frmTarn::enterFinder() { controls::focusAll(*finder_); }

/// A listed run is chosen in the list; another one opens as it is, and the list stays.
void frmTarn::FindRun_Click(const std::string& run) {
    if (!data::runExists(*startup::gcnRouting, run)) {
        finder_->forget();
        return tellRunIsGone(run);
    }
    if (chooseRun(run)) {
        ui_->RunList->setFocus(Qt::OtherFocusReason);
        return trap("Edit_Click", &frmTarn::Edit_Click);
    }
    auto& editor = forms::FormRegistry::instance().make<runedit::Run>(this);
    editor.edit(run);
    editor.showForm();
}

}  // namespace runsearch
