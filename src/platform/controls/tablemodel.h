#pragma once

#include <QAbstractTableModel>
#include <cstddef>
#include <optional>
#include <vector>

#include "platform/controls/celldelegate.h"
#include "platform/table/texttable.h"

namespace controls {

/// A TextTable as the toolkit's model, for lists and combos. Rows of the model are in the order
/// shown, which need not be all; tableRow() gives the row of the table. Texts are made only for the
/// cells that are asked for.
class TableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    /// All cells of the row as one text, for looking things up. Red cells answer to RedRole.
    enum Roles { RowTextRole = RedRole + 1 };

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows another table in one reset, in its own order.
    void setTable(table::TextTable table);
    void clearRows();
    /// Shows more rows, of the same columns, below the others.
    void append(const table::TextTable& more);
    /// Adds rows that are not shown, to a table some of whose rows are.
    void addUnseen(const table::TextTable& more);
    /// Shows rows of the table below the others.
    void showBelow(const std::vector<std::size_t>& rows);
    void reserve(std::size_t rows) { table_.reserve(rows); }
    [[nodiscard]] const table::TextTable& table() const { return table_; }

    [[nodiscard]] std::size_t tableRow(int row) const;
    /// Where a row of the table is shown; -1 for one that is not.
    [[nodiscard]] int shownRow(std::size_t tableRow) const;
    /// The shown row whose first column is `text` without regard to case and trailing blanks;
    /// -1 for none and for a blank text.
    [[nodiscard]] int find(const QString& text) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;
    void sort(int column, Qt::SortOrder order) override;
    /// Shows these rows of the table in that order, each once; all in the table's own without one.
    void showInOrder(std::optional<std::vector<std::size_t>> order);

private:
    [[nodiscard]] bool alignedRight(int column) const;
    [[nodiscard]] QString spoken(std::size_t row, std::size_t column) const;
    [[nodiscard]] QString rowText(std::size_t row) const;
    void moveCurrentIndexes(const std::optional<std::vector<std::size_t>>& formerOrder);

    table::TextTable table_;
    std::optional<std::vector<std::size_t>> order_;  ///< none: all rows in the table's own
};

}  // namespace controls
