#include "platform/controls/tablemodel.h"

#include <algorithm>
#include <utility>

#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "platform/controls/signs.h"

namespace controls {

void TableModel::setTable(table::TextTable table) {
    beginResetModel();
    table_ = std::move(table);
    order_.reset();
    endResetModel();
}

void TableModel::clearRows() {
    beginResetModel();
    table_.clearRows();
    order_.reset();
    endResetModel();
}

void TableModel::append(const table::TextTable& more) {
    if (more.rowCount() == 0) {
        return;
    }
    const std::size_t first = table_.rowCount();
    const int shown = rowCount();
    beginInsertRows({}, shown, shown + static_cast<int>(more.rowCount()) - 1);
    table_.append(more);
    for (std::size_t row = first; order_ && row < table_.rowCount(); ++row) {
        order_->push_back(row);
    }
    endInsertRows();
}

void TableModel::addUnseen(const table::TextTable& more) { table_.append(more); }

void TableModel::showBelow(const std::vector<std::size_t>& rows) {
    if (rows.empty() || !order_) {
        return;
    }
    const int shown = rowCount();
    beginInsertRows({}, shown, shown + static_cast<int>(rows.size()) - 1);
    order_->insert(order_->end(), rows.begin(), rows.end());
    endInsertRows();
}

std::size_t TableModel::tableRow(int row) const {
    const auto shown = static_cast<std::size_t>(row);
    return order_ ? order_->at(shown) : shown;
}

int TableModel::shownRow(std::size_t tableRow) const {
    if (!order_) {
        return static_cast<int>(tableRow);
    }
    const auto at = std::ranges::find(*order_, tableRow);
    return at == order_->end() ? -1 : static_cast<int>(at - order_->begin());
}

int TableModel::find(const QString& text) const {
    const std::string wanted = fromQt(text);
    if (table_.columns.empty() || base::trim(wanted).empty()) {
        return -1;
    }
    for (int row = 0; row < rowCount(); ++row) {
        if (base::equalsNoCase(base::trimRight(table_.text(tableRow(row), 0)),
                               base::trimRight(wanted))) {
            return row;
        }
    }
    return -1;
}

int TableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(order_ ? order_->size() : table_.rowCount());
}

int TableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(table_.columns.size());
}

QVariant TableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    const std::size_t row = tableRow(index.row());
    const auto column = static_cast<std::size_t>(index.column());
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return toQt(table_.text(row, column));
        case Qt::TextAlignmentRole:
            return QVariant((alignedRight(index.column()) ? Qt::AlignRight : Qt::AlignLeft) |
                            Qt::AlignVCenter);
        case RedRole:
            return table_.isRed(row, column);
        case Qt::AccessibleTextRole:
            return spoken(row, column);
        case RowTextRole:
            return rowText(row);
        default:
            return {};
    }
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) {
        return {};
    }
    if (role == Qt::DisplayRole) {
        return toQt(table_.columns[static_cast<std::size_t>(section)].caption);
    }
    if (role == Qt::TextAlignmentRole) {
        return QVariant((alignedRight(section) ? Qt::AlignRight : Qt::AlignLeft) |
                        Qt::AlignVCenter);
    }
    return {};
}

bool TableModel::alignedRight(int column) const {
    const auto kind = table_.columns[static_cast<std::size_t>(column)].kind;
    return table::isNumber(kind) || kind == table::CellKind::Time;
}

/// The text, and that it is red where the cell before it has not said so.
QString TableModel::spoken(std::size_t row, std::size_t column) const {
    const bool isSaid = column > 0 && table_.isRed(row, 0);
    const QString text = toQt(table_.text(row, column));
    return table_.isRed(row, column) && !isSaid ? text + ", " + wordFor(Sign::Warning) : text;
}

QString TableModel::rowText(std::size_t row) const {
    std::string text;
    for (std::size_t column = 0; column < table_.columns.size(); ++column) {
        text += column == 0 ? "" : " ";
        text += table_.text(row, column);
    }
    return toQt(text);
}

void TableModel::sort(int column, Qt::SortOrder order) {
    if (column < 0 || column >= columnCount()) {
        return;
    }
    showInOrder(table_.sortedBy(static_cast<std::size_t>(column), order == Qt::DescendingOrder));
}

void TableModel::showInOrder(std::optional<std::vector<std::size_t>> order) {
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const auto former = std::exchange(order_, std::move(order));
    moveCurrentIndexes(former);
    emit layoutChanged({}, VerticalSortHint);
}

void TableModel::moveCurrentIndexes(const std::optional<std::vector<std::size_t>>& formerOrder) {
    const QModelIndexList from = persistentIndexList();
    if (from.isEmpty()) {
        return;
    }
    std::vector<int> shown(table_.rowCount(), -1);
    for (int row = 0; row < rowCount(); ++row) {
        shown[tableRow(row)] = row;
    }
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex& one : from) {
        const auto row = static_cast<std::size_t>(one.row());
        to.append(index(shown[formerOrder ? (*formerOrder)[row] : row], one.column()));
    }
    changePersistentIndexList(from, to);
}

}  // namespace controls
