#pragma once

#include <QElapsedTimer>
#include <QTreeView>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/table/rowfilter.h"
#include "platform/table/tablecopy.h"
#include "platform/table/texttable.h"

class QMenu;

namespace controls {

class ListHeader;
class TableModel;

/// A list with column headers, several rows to select, red cells, and sorting by a click on a
/// header. Rows count from 0 in the order shown; -1 is no row.
///
/// The chosen row is the list's own: a click of any button, a drag, an arrow key or typing chooses,
/// tabbing into the list does not. Typing looks for a row whose first column starts with the
/// letters, otherwise for one with a word in the second column that does; where each click selects
/// another row, typing only goes there and the space bar selects. What the user makes of the
/// columns, their widths, order and which are seen, is remembered for each set of captions; a right
/// click on a caption offers it. Gutter and first column stay in sight while the other columns
/// scroll sideways. Shift or Ctrl with a click on a caption sorts by that column after those
/// before.
///
/// A filter hides rows. What is hidden is neither selected nor chosen, nor copied, exported or
/// printed. The row that was chosen is so again when it is shown, unless another one was meanwhile.
class MultiColumnList : public QTreeView {
    Q_OBJECT
    /// Shown in the middle while there are no rows.
    Q_PROPERTY(QString emptyText READ emptyText WRITE setEmptyText)
    /// Whether a click on a header sorts by that column. On from the start.
    Q_PROPERTY(bool headerSorts READ headerSorts WRITE setHeaderSorts)
    /// Whether the user may sort by several columns and by the menu although a click on a header
    /// does not sort by itself.
    Q_PROPERTY(bool sortsBySeveral READ sortsBySeveral WRITE setSortsBySeveral)
    /// Whether a gutter at the left edge carries marks: a triangle for the chosen row, a warning
    /// for one whose first cell is red. The chosen row is then solid and the other selected ones
    /// tinted.
    Q_PROPERTY(bool marksRows READ marksRows WRITE setMarksRows)
    /// Whether captions of several words stand on two lines.
    Q_PROPERTY(bool twoLineCaptions READ twoLineCaptions WRITE setTwoLineCaptions)
    /// How many rows it would like to show; it then never shrinks below its fewest and half of one
    /// more. 0 leaves its height to the form.
    Q_PROPERTY(int rowsShown READ rowsShown WRITE setRowsShown)
    Q_PROPERTY(int fewestRows READ fewestRows WRITE setFewestRows)

public:
    explicit MultiColumnList(QWidget* parent = nullptr);

    /// Fills the list in one reset: own order, nothing sorted, selected or chosen.
    void setTable(table::TextTable table);
    /// The columns that stand first on screen, by name; the others follow in their own order. All
    /// keep their numbers. So many of them stay in sight when the rest scrolls sideways. From the
    /// next setTable() on.
    void showFirst(std::vector<std::string> names, int inSight);
    /// Has the cells of a column, by its name, drawn by another delegate. From the next setTable()
    /// on.
    void drawColumnBy(std::string name, QAbstractItemDelegate* delegate) {
        delegates_.emplace_back(std::move(name), delegate);
    }
    /// Adds rows of the same columns at the end, for a list that is read as it is needed. What is
    /// chosen, selected and in view stays; a sort ends. A scroll bar that the user holds at its end
    /// follows.
    void appendRows(const table::TextTable& more);
    /// Room for so many rows in all, when they are known to be many: saves moving them about.
    void reserveRows(std::size_t rows);
    /// Whether the list is seen, and the rows in view are the last ones or at most a page above.
    [[nodiscard]] bool showsEnd() const;
    [[nodiscard]] const table::TextTable& table() const;
    /// Removes the rows and keeps the columns.
    void clearRows();
    /// Removes rows and columns.
    void clearAll();

    [[nodiscard]] int rows() const;
    [[nodiscard]] std::string cellText(int row, int column) const;
    /// By the name of a column that is shown or hidden.
    [[nodiscard]] base::Value cellValue(int row, std::string_view name) const;
    [[nodiscard]] bool isRed(int row, int column) const;
    /// The row of table() that is shown there.
    [[nodiscard]] std::size_t tableRow(int row) const;
    /// What is shown, row by row and column by column.
    [[nodiscard]] table::Excerpt shown() const;

    /// Shows only the rows that hold all these words in their visible columns, in any order and
    /// without regard to case; every row without a word. It goes on when the list is filled anew.
    void setFilter(const QString& words);
    [[nodiscard]] QString filter() const { return filterText_; }
    [[nodiscard]] bool isFiltered() const { return !filter_.isEmpty(); }
    /// Gets ready for the first words of a filter, a part of the rows at a time; true while there
    /// is more to be done.
    [[nodiscard]] bool readForFilter();
    /// With those that the filter hides.
    [[nodiscard]] int rowsInAll() const;
    /// The first column of the row that was chosen until the filter hid it; "" for none.
    [[nodiscard]] std::string hiddenChoice() const;
    /// Goes into the list by key, to the chosen row or else to the one where keys go on from, which
    /// is chosen.
    void enter();

    [[nodiscard]] int chosenRow() const { return chosenRow_; }
    /// The first column of the chosen row; "" where none is chosen.
    [[nodiscard]] std::string chosenKey() const;
    /// Chooses, selects and shows a row without a signal; a row behind the last is the last.
    void choose(int row);
    /// Chooses and shows a row without a signal and leaves the selection as it is.
    void chooseAmongSelected(int row);
    /// Where keys go on from, without choosing or selecting a row.
    void standAt(int row);

    [[nodiscard]] bool isRowSelected(int row) const;
    /// Rising.
    [[nodiscard]] std::vector<int> selectedRows() const;
    [[nodiscard]] int selectedCount() const;
    void selectAllRows();
    /// Selects exactly these rows (rising).
    void selectRows(std::span<const int> rows);
    void selectNone();

    /// Sorts by the column, ascending at first and the other way at each repetition; the arrow
    /// shows in that column alone. Selection and chosen row stay with their rows.
    void toggleSort(int column);
    /// Whether toggleSort() would turn the order round.
    [[nodiscard]] bool sortsDescendingNext(int column) const;
    /// What toggleSort() does, with the order of the table's rows that was worked out elsewhere.
    void showSorted(int column, std::vector<std::size_t> order);
    /// Off: no arrow; the rows stay as they are until the next setTable().
    void sortingOff();
    /// Sorts by several columns; by none is sortingOff().
    void sortBy(const std::vector<table::SortBy>& columns);
    /// Sorts by the column after those that the list is sorted by, or turns its order round.
    void addSort(int column);
    [[nodiscard]] const std::vector<table::SortBy>& sorting() const { return sorting_; }
    /// The first one sorted by; -1 while sorting is off.
    [[nodiscard]] int sortColumn() const;
    [[nodiscard]] Qt::SortOrder sortOrder() const;

    /// Whether the column could be hidden or moved: those that stay in sight cannot.
    [[nodiscard]] bool isFixed(int column) const;
    /// Hides or shows a column. The user's choice, which is remembered.
    void showColumn(int column, bool shown);
    /// The columns as they stand from the left, hidden ones included.
    [[nodiscard]] std::vector<int> columnOrder() const;
    /// Puts the columns in that order. The user's choice, which is remembered.
    void orderColumns(const std::vector<int>& columns);
    /// Columns, order and widths as they were given.
    void resetColumns();

    /// Puts the selected rows (else the chosen one) on the clipboard as a table.
    void copyRows(table::Captions captions = table::Captions::Shown) const;

    [[nodiscard]] QString emptyText() const { return emptyText_; }
    void setEmptyText(const QString& text);
    [[nodiscard]] bool headerSorts() const { return headerSorts_; }
    void setHeaderSorts(bool on) { headerSorts_ = on; }
    [[nodiscard]] bool sortsBySeveral() const { return headerSorts_ || sortsBySeveral_; }
    void setSortsBySeveral(bool on) { sortsBySeveral_ = on; }
    [[nodiscard]] bool marksRows() const { return marksRows_; }
    void setMarksRows(bool on);
    [[nodiscard]] bool twoLineCaptions() const { return twoLineCaptions_; }
    void setTwoLineCaptions(bool on);
    [[nodiscard]] int rowsShown() const { return rowsShown_; }
    void setRowsShown(int rows);
    [[nodiscard]] int fewestRows() const { return fewestRows_; }
    void setFewestRows(int rows);
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    /// Whether rows are still to be read that the list does not show yet.
    [[nodiscard]] bool hasMore() const { return hasMore_; }
    void setHasMore(bool hasMore) { hasMore_ = hasMore; }

    /// What stands in the menu of a right click: the actions of the list, what can be copied and
    /// selected, columns and sorting, and Export List and Print List where somebody does that.
    void fillMenu(QMenu& menu);
    /// What stands in the menu of a right click on a column's caption.
    void fillColumnMenu(QMenu& menu, int column);
    [[nodiscard]] QModelIndex indexAt(const QPoint& at) const override;
    [[nodiscard]] QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    void keyboardSearch(const QString& letters) override;

    void selectAll() override { selectAllRows(); }
    void reset() override;

signals:
    /// The user chose a row by mouse or keyboard.
    void rowClicked(int row);
    /// Double click, or Enter on the chosen row.
    void rowActivated(int row);
    void columnClicked(int column);
    /// The user scrolled to where showsEnd() is true.
    void endShown();
    /// The user pressed the End key, and stands on the last row that there is.
    void endAsked();
    void selectionCountChanged(int count);
    /// The filter, or which rows it shows; a chosen row may be hidden or shown again.
    void filterChanged();
    /// The user wants all rows shown in a file.
    void exportAsked();
    /// The user wants all rows shown on paper.
    void printAsked();

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& on, const QItemSelection& off) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;
    void drawBranches(QPainter* painter, const QRect& rect,
                      const QModelIndex& index) const override;
    void paintEvent(QPaintEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    [[nodiscard]] QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    [[nodiscard]] int sizeHintForColumn(int column) const override;

private:
    void wireHeader();
    void columnPressed(int column);
    void addCopyItems(QMenu& menu);
    void addSortItems(QMenu& menu);
    void addFileItems(QMenu& menu);
    void arrangeColumns();
    [[nodiscard]] std::vector<int> givenOrder() const;
    void keepFixedFirst(int from, int to);
    void columnsChanged();
    [[nodiscard]] std::vector<std::size_t> shownColumns() const;
    void showOrdered(std::vector<table::SortBy> sorting, std::vector<std::size_t> order);
    /// Shows the rows that the filter leaves, in their order; selection and chosen row stay with
    /// their rows.
    void arrangeRows();
    [[nodiscard]] std::optional<std::vector<std::size_t>> orderShown();
    void appendFiltered(const table::TextTable& more);
    void drawHeld(QPainter& painter, const QStyleOptionViewItem& row,
                  const QModelIndex& index) const;
    void drawHeldCell(QPainter& painter, QStyleOptionViewItem cell, const QModelIndex& index) const;
    /// Does what the user does, and tells of the row that it chose.
    void asUser(const std::function<void()>& act);
    void setChosen(int row);
    [[nodiscard]] int rowTyped(const QString& typed, int from) const;
    [[nodiscard]] bool startsRow(const QString& typed, int row, int column) const;
    [[nodiscard]] int heightOf(double rows) const;
    void applyWidths();
    void rememberWidths();
    void rememberArrangement();
    [[nodiscard]] QString layoutKey(const char* what) const;
    [[nodiscard]] std::vector<std::size_t> selectedTableRows() const;
    void selectTableRows(const std::vector<std::size_t>& tableRows);

    TableModel* model_;
    ListHeader* captions_;
    QString emptyText_;
    std::vector<std::string> shownFirst_;
    std::vector<std::pair<std::string, QAbstractItemDelegate*>> delegates_;
    QString typed_;
    QElapsedTimer sinceTyped_;
    int chosenRow_ = -1;
    std::optional<std::size_t> hiddenChoice_;  ///< the table's row that was chosen
    std::vector<table::SortBy> sorting_;
    std::vector<std::size_t> order_;  ///< of all rows; empty while in the table's own
    QString filterText_;
    table::RowFilter filter_;
    std::map<int, int> hiddenWidths_;
    bool headerSorts_ = true;
    bool sortsBySeveral_ = false;
    int rowsShown_ = 0;
    int fewestRows_ = 4;
    bool marksRows_ = false;
    bool twoLineCaptions_ = false;
    bool hasMore_ = false;
    bool userActs_ = false;
    bool pressTold_ = false;      ///< the press of this click has told of its row
    bool arranging_ = false;      ///< the program sets widths and places of columns
    bool widthsFitRows_ = false;  ///< found for these columns when there were rows to measure
};

}  // namespace controls
