#pragma once

#include <QFrame>
#include <span>
#include <string>
#include <vector>

#include "platform/controls/gridmodel.h"

class QLabel;
class QTableView;

namespace controls {

class GridView;

/// A grid that holds its own cells: a caption, columns with captions and field names, rows to
/// select, and cells to type into where the column is editable. Typing anywhere in a row goes into
/// its editable cell, Enter goes on to the next row, Del empties the editable cells of the selected
/// rows. Without an editable column it is a list to read. Rows and columns count from 0.
class Grid : public QFrame {
    Q_OBJECT
    Q_PROPERTY(QString caption READ caption WRITE setCaption)

public:
    explicit Grid(QWidget* parent = nullptr);

    [[nodiscard]] QString caption() const;
    void setCaption(const QString& caption);

    /// Replaces the columns and removes the rows.
    void setColumns(std::vector<GridColumn> columns);
    [[nodiscard]] const std::vector<GridColumn>& columns() const;

    /// Replaces the rows; nothing is selected afterwards and no cell red.
    void setRows(std::vector<std::vector<std::string>> rows);
    [[nodiscard]] int rows() const;
    /// A cell that is empty or was never filled reads as one blank.
    [[nodiscard]] std::string cellText(int row, int column) const;
    void setCellText(int row, int column, const std::string& text);
    [[nodiscard]] bool isRed(int row, int column) const;
    void setRed(int row, int column, bool red);
    /// The ink of a cell's text and the mark before it.
    void setNote(int row, int column, CellNote note);

    /// Rising.
    [[nodiscard]] std::vector<int> selectedRows() const;
    void selectRows(std::span<const int> rows);
    void selectAllRows();
    void selectNone();

    /// Takes over what is being typed into a cell just now.
    void finishTyping();
    /// Goes to a cell, shows it and opens it for typing.
    void typeInto(int row, int column);

    [[nodiscard]] QTableView& view();

    /// As wide as what stands in them now; setRows() does it for the texts.
    void fitColumns();
    /// A column that takes the width that is left, alone or with others; the last one unless told.
    void setWideColumn(int column);

signals:
    /// The user has typed another text into the cell, or emptied it.
    void cellEdited(int row, int column);
    void selectionCountChanged(int count);

private:
    void addActions();
    void copyRows() const;
    void emptyRows();

    GridModel* model_;
    QLabel* caption_;
    GridView* view_;
};

}  // namespace controls
