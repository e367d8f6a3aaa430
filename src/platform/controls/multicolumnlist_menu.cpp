#include <QAction>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QMetaMethod>
#include <algorithm>

#include "platform/controls/columnchooser.h"
#include "platform/controls/listkeys.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/controls/qtext.h"

namespace controls {

namespace {

QString captionOf(const MultiColumnList& list, int column) {
    return toQt(list.table().columns[static_cast<std::size_t>(column)].caption);
}

}  // namespace

void MultiColumnList::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    fillMenu(menu);
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid();
    menu.exec(byKey ? viewport()->mapToGlobal(visualRect(currentIndex()).center())
                    : event->globalPos());
}

void MultiColumnList::fillMenu(QMenu& menu) {
    menu.addActions(actions());
    menu.addSeparator();
    addCopyItems(menu);
    menu.addSeparator();
    addSortItems(menu);
    menu.addAction(tr("Choose Col&umns…"), this, [this] { chooseColumns(*this); })
        ->setEnabled(header()->count() > 1);
    menu.addSeparator();
    addFileItems(menu);
}

void MultiColumnList::addCopyItems(QMenu& menu) {
    const bool any = chosenRow_ >= 0 || selectionModel()->hasSelection();
    menu.addAction(tr("&Copy Rows"), QKeySequence::Copy, this, [this] { copyRows(); })
        ->setEnabled(any);
    menu.addAction(tr("Copy Rows Without Captio&ns"), QKeySequence(CopyWithoutCaptions), this,
                   [this] { copyRows(table::Captions::Left); })
        ->setEnabled(any);
    menu.addAction(tr("Select &All"), QKeySequence::SelectAll, this, [this] { selectAllRows(); })
        ->setEnabled(rows() > 0 && selectionMode() != SingleSelection);
}

/// What clicks on the captions do, for who uses no mouse.
void MultiColumnList::addSortItems(QMenu& menu) {
    if (!sortsBySeveral()) {
        return;
    }
    auto* first = menu.addMenu(tr("Sort &By"));
    auto* then = menu.addMenu(tr("&Then By"));
    then->setEnabled(!sorting_.empty());
    for (const int column : columnOrder()) {
        if (!header()->isSectionHidden(column)) {
            first->addAction(captionOf(*this, column), this,
                             [this, column] { toggleSort(column); });
            then->addAction(captionOf(*this, column), this, [this, column] { addSort(column); })
                ->setEnabled(sortColumn() != column);
        }
    }
}

void MultiColumnList::addFileItems(QMenu& menu) {
    if (isSignalConnected(QMetaMethod::fromSignal(&MultiColumnList::exportAsked))) {
        menu.addAction(tr("&Export List…"), this, &MultiColumnList::exportAsked)
            ->setEnabled(rows() > 0);
    }
    if (isSignalConnected(QMetaMethod::fromSignal(&MultiColumnList::printAsked))) {
        menu.addAction(tr("P&rint List…"), this, &MultiColumnList::printAsked)
            ->setEnabled(rows() > 0);
    }
}

void MultiColumnList::fillColumnMenu(QMenu& menu, int column) {
    if (sortsBySeveral()) {
        const auto at = static_cast<std::size_t>(column);
        menu.addAction(tr("Sort &Ascending"), this, [this, at] { sortBy({{at, false}}); });
        menu.addAction(tr("Sort &Descending"), this, [this, at] { sortBy({{at, true}}); });
        menu.addAction(tr("&Then by This Column"), this, [this, column] { addSort(column); })
            ->setEnabled(!sorting_.empty() && sortColumn() != column);
        menu.addSeparator();
    }
    menu.addAction(tr("&Hide Column"), this, [this, column] { showColumn(column, false); })
        ->setEnabled(!isFixed(column));
    menu.addAction(tr("&Choose Columns…"), this, [this] { chooseColumns(*this); });
    menu.addAction(tr("&Reset Columns"), this, [this] { resetColumns(); });
}

}  // namespace controls
