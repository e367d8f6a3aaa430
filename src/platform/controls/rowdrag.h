#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPoint>
#include <string>

class QMouseEvent;
class QWidget;

namespace controls {

class MultiColumnList;

/// Lets the user drag the selected rows of a list to another place, by the cells of one column; in
/// the others a drag selects, as it does without. A line shows where the rows would go, the list
/// scrolls while the mouse is held at its edge, and Escape ends it. The list itself stays as it is.
class RowDrag : public QObject {
    Q_OBJECT

public:
    /// `column` goes by its name. The list owns this.
    RowDrag(MultiColumnList& list, std::string column);

signals:
    /// The selected rows were dropped in front of that row; behind the last one at rows().
    void dropped(int before);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    [[nodiscard]] int gripRow(QPoint at) const;
    [[nodiscard]] int placeAt(QPoint at) const;
    bool press(const QMouseEvent& event);
    bool move(const QMouseEvent& event);
    bool release(const QMouseEvent& event);
    void showPlace();
    void stop();

    MultiColumnList& list_;
    std::string column_;
    QWidget* line_;
    QBasicTimer scrolling_;
    QPoint at_;
    int held_ = -1;  ///< the row by which the mouse holds; -1 while it holds none
    bool dragging_ = false;
};

}  // namespace controls
