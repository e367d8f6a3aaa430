#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <QStyledItemDelegate>
#include <array>
#include <vector>

#include "map/drawing/theme.h"
#include "map/window/panelrows.h"

namespace map {

/// The rows of the panel, two lines each, read out as one sentence.
class RowList : public QListView {
    Q_OBJECT

public:
    explicit RowList(QWidget* parent = nullptr);
    ~RowList() override;

    void showRows(const PanelColumns& columns, std::vector<PanelRow> rows);
    /// Numbers and one figure a row only.
    void setNarrow(bool narrow);
    [[nodiscard]] bool isNarrow() const { return narrow_; }
    /// Rows are dragged to another place; Alt+Up and Alt+Down move them by one.
    void setOrdering(bool on);
    [[nodiscard]] const PanelRow* row(int row) const;
    [[nodiscard]] int rowOfIndex(std::size_t index) const;
    /// Marks a row as the chosen one without telling of it; -1 for none.
    void choose(int row);
    [[nodiscard]] int chosen() const { return currentIndex().row(); }
    [[nodiscard]] QSize sizeHint() const override;
    /// How wide each of the three columns is, in pixels.
    [[nodiscard]] const std::array<int, 3>& widths() const { return widths_; }
    [[nodiscard]] const PanelColumns& columns() const { return columns_; }

signals:
    void rowChosen(int row);
    void rowActivated(int row);
    void rowChecked(int row, bool on);
    /// The row was dragged in front of another one; behind the last one at the number of rows.
    void rowDropped(int row, int before);

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    class Rows;
    class Look;
    class Head;

    void measure();
    void toggle(int row);

    Rows* rows_;
    Head* head_;
    PanelColumns columns_;
    std::array<int, 3> widths_{};
    bool narrow_ = false;
    bool quiet_ = false;
};

}  // namespace map
