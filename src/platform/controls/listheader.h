#pragma once

#include <QHeaderView>
#include <vector>

#include "platform/table/texttable.h"

namespace controls {

/// The captions of a list, on two lines each where asked for. The first one stands clear of a
/// gutter at the left edge. The columns that stand first may hold their place while the others
/// scroll sideways beneath them. Where rows are sorted by several columns each of those has its
/// arrow and the figure of its turn.
class ListHeader : public QHeaderView {
    Q_OBJECT

public:
    explicit ListHeader(QWidget* parent);

    void setTwoLines(bool on);
    void setGutter(int pixels);
    /// So many columns hold their place, as long as they leave half of the width to the others.
    void holdFirst(int columns) { held_ = columns; }
    /// The columns that always stand first and are always shown.
    [[nodiscard]] int fixedColumns() const { return std::min(held_, count()); }
    /// What the arrows show; none without a column.
    void showSorting(std::vector<table::SortBy> sorting);
    /// The columns that hold their place, scrolled or not.
    [[nodiscard]] int heldColumns() const;
    [[nodiscard]] bool holds(int logicalIndex) const;
    /// The width of what covers scrolled columns; 0 while nothing is scrolled. In pixels.
    [[nodiscard]] int heldWidth() const;
    /// How far what is seen there was moved from where scrolling took it.
    [[nodiscard]] int shiftAt(int x) const { return x < heldWidth() ? offset() : 0; }

protected:
    [[nodiscard]] QSize sectionSizeFromContents(int logicalIndex) const override;
    void initStyleOptionForIndex(QStyleOptionHeader* option, int logicalIndex) const override;
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;
    void paintEvent(QPaintEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    [[nodiscard]] QString captionOf(int logicalIndex) const;
    [[nodiscard]] int widthOfFirst(int columns) const;
    [[nodiscard]] int heldEdgeAt(int x) const;
    [[nodiscard]] bool dragsHeldEdge(const QMouseEvent& event);
    [[nodiscard]] int shiftOf(const QMouseEvent& event);
    /// The turn of a column among those sorted by, from 0; -1 for none of them.
    [[nodiscard]] int turnOf(int logicalIndex) const;
    void paintArrow(QPainter& painter, QRect caption, int turn) const;
    void paintTurn(QPainter& painter, const QRect& caption, int turn) const;

    std::vector<table::SortBy> sorting_;
    bool twoLines_ = false;
    int gutter_ = 0;
    int held_ = 0;
    int pressedShift_ = 0;  ///< where a button went down
    int dragged_ = -1;      ///< the column whose edge is dragged while others scroll beneath it
    int grownFrom_ = 0;     ///< its width with the mouse at the left edge
};

}  // namespace controls
