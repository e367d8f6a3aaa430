#include "platform/controls/gridmodel.h"

#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QIcon>
#include <QPalette>
#include <algorithm>
#include <utility>

#include "platform/base/text.h"
#include "platform/controls/celldelegate.h"
#include "platform/controls/qtext.h"

namespace controls {

namespace {

/// Broken at the blank nearest to its middle, so that a caption does not make its column wide.
QString inTwoLines(QString caption) {
    constexpr int Short = 8;
    const auto middle = caption.size() / 2;
    const auto before = caption.lastIndexOf(u' ', middle);
    const auto behind = caption.indexOf(u' ', middle);
    const auto at =
        before < 0 || (behind >= 0 && behind - middle < middle - before) ? behind : before;
    return caption.size() > Short && at >= 0 ? caption.replace(at, 1, u'\n') : caption;
}

}  // namespace

void GridModel::setColumns(std::vector<GridColumn> columns) {
    beginResetModel();
    columns_ = std::move(columns);
    rows_.clear();
    endResetModel();
}

void GridModel::setRows(std::vector<std::vector<std::string>> rows) {
    beginResetModel();
    rows_.clear();
    for (std::vector<std::string>& texts : rows) {
        std::vector<Cell>& cells = rows_.emplace_back(columns_.size());
        for (std::size_t column = 0; column < std::min(texts.size(), cells.size()); ++column) {
            cells[column].text = std::move(texts[column]);
        }
    }
    endResetModel();
}

const GridModel::Cell& GridModel::cell(int row, int column) const {
    return rows_.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column));
}

GridModel::Cell& GridModel::cell(int row, int column) {
    return rows_.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column));
}

void GridModel::cellChanged(int row, int column) {
    const QModelIndex changed = index(row, column);
    emit dataChanged(changed, changed);
}

std::string GridModel::text(int row, int column) const {
    const std::string& text = cell(row, column).text;
    return base::trim(text).empty() ? " " : text;
}

void GridModel::setText(int row, int column, const std::string& text) {
    cell(row, column).text = text;
    cellChanged(row, column);
}

bool GridModel::isRed(int row, int column) const { return cell(row, column).red; }

void GridModel::setRed(int row, int column, bool red) {
    cell(row, column).red = red;
    cellChanged(row, column);
}

void GridModel::setNote(int row, int column, CellNote note) {
    cell(row, column).note = note;
    cellChanged(row, column);
}

bool GridModel::anyEditable() const { return std::ranges::any_of(columns_, &GridColumn::editable); }

/// What is wrong stands out in weight, too.
/// The text, and a word for its mark.
QString GridModel::spoken(const Cell& cell) {
    const auto mark = cell.red ? Sign::Warning : cell.note.sign;
    const QString text = toQt(base::trim(cell.text));
    return mark ? text + ", " + wordFor(*mark) : text;
}

QVariant GridModel::dressOf(const CellNote& note, int role) {
    const QPalette palette = QGuiApplication::palette();
    if (role == Qt::DecorationRole && note.sign) {
        const int line = QFontMetrics(QGuiApplication::font()).height();
        QIcon icon(markFor(*note.sign, inkOf(note.tone, palette), line));
        icon.addPixmap(markFor(*note.sign, palette.color(QPalette::HighlightedText), line),
                       QIcon::Selected);
        return icon;
    }
    if (role == Qt::ForegroundRole && note.tone != Tone::Plain) {
        return inkOf(note.tone, palette);
    }
    if (role == Qt::FontRole && note.tone == Tone::Wrong) {
        QFont bold = QGuiApplication::font();
        bold.setBold(true);
        return bold;
    }
    return {};
}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    const Cell& shown = cell(index.row(), index.column());
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return toQt(base::trim(shown.text));
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(
                (columns_[static_cast<std::size_t>(index.column())].alignedRight ? Qt::AlignRight
                                                                                 : Qt::AlignLeft) |
                Qt::AlignVCenter);
        case RedRole:
            return shown.red;
        case Qt::AccessibleTextRole:
            return spoken(shown);
        default:
            return dressOf(shown.note, role);
    }
}

bool GridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const std::string text(base::trim(fromQt(value.toString())));
    if (role != Qt::EditRole || text == base::trim(cell(index.row(), index.column()).text)) {
        return false;
    }
    setText(index.row(), index.column(), text);
    emit typed(index.row(), index.column());
    return true;
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    const GridColumn& column = columns_.at(static_cast<std::size_t>(section));
    if (role == Qt::DisplayRole) {
        return inTwoLines(toQt(column.caption));
    }
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue((column.alignedRight ? Qt::AlignRight : Qt::AlignLeft) |
                                   Qt::AlignVCenter);
    }
    return {};
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
    const auto flags = QAbstractTableModel::flags(index);
    const bool editable = columns_[static_cast<std::size_t>(index.column())].editable;
    return editable ? flags | Qt::ItemIsEditable : flags;
}

}  // namespace controls
