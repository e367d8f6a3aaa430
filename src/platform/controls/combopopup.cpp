#include "platform/controls/combopopup.h"

#include <QHeaderView>
#include <QScrollBar>
#include <algorithm>

#include "platform/controls/tablemodel.h"
#include "platform/controls/twips.h"

namespace controls {

namespace {

constexpr qint64 SearchPauseMs = 1000;

QModelIndex firstMatch(const QAbstractItemModel& model, const QModelIndex& from, int role,
                       const QString& text, Qt::MatchFlag how) {
    const QModelIndexList found = model.match(from, role, text, 1, how | Qt::MatchWrap);
    return found.isEmpty() ? QModelIndex() : found.front();
}

}  // namespace

ComboPopup::ComboPopup(const TableModel& rows, QWidget* parent) : QTreeView(parent), rows_(rows) {
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setSelectionBehavior(SelectRows);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    header()->setSectionsClickable(false);
    header()->setStretchLastSection(true);
}

int ComboPopup::fitColumns() {
    const std::vector<table::TableColumn>& columns = rows_.table().columns;
    int sum = 0;
    for (int column = 0; column < rows_.columnCount(); ++column) {
        const int wanted = pixelsOf(columns[static_cast<std::size_t>(column)].widthTwips, *this);
        const int texts = std::max(sizeHintForColumn(column), header()->sectionSizeHint(column));
        const int width = wanted > 0 ? std::max(wanted, header()->sectionSizeHint(column)) : texts;
        header()->resizeSection(column, width);
        sum += width;
    }
    return sum + verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
}

void ComboPopup::keyboardSearch(const QString& letters) {
    if (model() == nullptr || model()->rowCount() == 0) {
        return;
    }
    const bool goesOn = sinceTyped_.isValid() && sinceTyped_.elapsed() < SearchPauseMs;
    typed_ = goesOn ? typed_ + letters : letters;
    sinceTyped_.start();
    const int current = currentIndex().isValid() ? currentIndex().row() : 0;
    const QModelIndex from = model()->index(current, 0);
    QModelIndex found = firstMatch(*model(), from, Qt::DisplayRole, typed_, Qt::MatchStartsWith);
    if (!found.isValid()) {
        found = firstMatch(*model(), from, TableModel::RowTextRole, typed_, Qt::MatchContains);
    }
    if (found.isValid()) {
        setCurrentIndex(found);
    }
}

}  // namespace controls
