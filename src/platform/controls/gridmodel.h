#pragma once

#include <QAbstractTableModel>
#include <optional>
#include <string>
#include <vector>

#include "platform/controls/notebox.h"

namespace controls {

/// One column of a grid. The field name is what the program calls the column.
struct GridColumn {
    std::string caption;
    std::string field;
    bool editable = false;
    bool alignedRight = false;
};

/// What a cell is to its reader: the ink of its text, and a mark before it.
struct CellNote {
    Tone tone = Tone::Plain;
    std::optional<Sign> sign = {};
};

/// The cells of a grid as texts, for its view. An empty cell reads as one blank.
class GridModel : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    /// Replaces the columns and removes the rows.
    void setColumns(std::vector<GridColumn> columns);
    [[nodiscard]] const std::vector<GridColumn>& columns() const { return columns_; }
    /// Replaces the rows; a row may be shorter than there are columns. No cell is red.
    void setRows(std::vector<std::vector<std::string>> rows);

    [[nodiscard]] std::string text(int row, int column) const;
    void setText(int row, int column, const std::string& text);
    [[nodiscard]] bool isRed(int row, int column) const;
    void setRed(int row, int column, bool red);
    void setNote(int row, int column, CellNote note);
    [[nodiscard]] bool anyEditable() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    /// What the user typed; a cell that changed by it is told by `typed`.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    void typed(int row, int column);

private:
    struct Cell {
        std::string text;
        bool red = false;
        CellNote note = {};
    };
    [[nodiscard]] static QString spoken(const Cell& cell);
    [[nodiscard]] static QVariant dressOf(const CellNote& note, int role);
    [[nodiscard]] const Cell& cell(int row, int column) const;
    [[nodiscard]] Cell& cell(int row, int column);
    void cellChanged(int row, int column);

    std::vector<GridColumn> columns_;
    std::vector<std::vector<Cell>> rows_;
};

}  // namespace controls
