#pragma once

#include <QAbstractScrollArea>
#include <QPixmap>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "runsearch/schedule/chart.h"
#include "runsearch/schedule/frame.h"
#include "runsearch/schedule/plan.h"
#include "runsearch/schedule/sketch.h"
#include "runsearch/schedule/telling.h"

namespace schedule {

class HoverCard;

/// The chart of a plan to look at and move about in. Hours, curve and row heads stay in view; only
/// what is in view is painted. One run may be selected.
///
/// Plan and chart are the form's and outlive what is shown of them; showChart() is called again
/// after every change.
class ScheduleView : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit ScheduleView(QWidget* parent = nullptr);
    ~ScheduleView() override;

    /// Shows a chart; the stretch of the day and the rows in view stay where they can.
    void showChart(const Plan& plan, const Chart& chart);
    [[nodiscard]] const Plan* plan() const { return frame_.plan; }
    [[nodiscard]] const Chart* chart() const { return frame_.chart; }
    [[nodiscard]] const Frame& frame() const { return frame_; }

    /// All of the day and, at the greatest row height that does, all rows.
    void fit();
    /// The day from its first start to its last end at the usual row height.
    void fitTime();
    void showStretch(double from, double until);
    /// Finer above 1, with the same time at x of the plot.
    void zoomTime(double factor, double x);
    /// To the next of the row heights, with the same row at y of the plot.
    void zoomRows(int steps, double y);
    void setRowHeight(double pixels);

    /// A run, or None; where it is asked for, it is brought into view.
    enum class Reveal { No, Yes };
    void select(int run, Reveal reveal = Reveal::Yes);
    [[nodiscard]] int selected() const { return frame_.selected; }

    /// Selects the next or the former problem and shows its card; around at the end.
    void goToProblem(int direction);
    /// Fades all runs but those that a typed text finds, and selects the first of them in the order
    /// of the rows, or the next behind the selected one. Blank shows all. How many were found.
    enum class From { First, Next };
    int find(const std::string& typed, From from = From::First);

    /// What a drag does: where it may go, and what is told meanwhile. Without one nothing is
    /// dragged.
    struct Sketching {
        std::function<Card(const Drag&)> card;
        std::function<Fit(const Drag&)> fit;
        std::function<void(const Drag&)> drop;
    };
    void setSketching(Sketching sketching) { sketching_ = std::move(sketching); }
    [[nodiscard]] const std::optional<Drag>& drag() const { return drag_; }

    /// The place of a run's bar in the viewport.
    [[nodiscard]] QRect barRect(int run) const;
    [[nodiscard]] bool isCardShown() const;

signals:
    /// The planner has selected another run; None for none.
    void runChosen(int run);
    /// Double click or Enter.
    void runActivated(int run);
    /// Another stretch, another zoom, another chart.
    void viewChanged();
    /// At a point of the screen.
    void menuAsked(const QPoint& at);
    /// The band of a school was clicked.
    void schoolClicked(int school);

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    [[nodiscard]] QSize sizeHint() const override;

private:
    void arrange();
    void repaintAll();
    void updateScrollBars();
    void setScale(TimeScale scale);
    [[nodiscard]] double unit() const;
    [[nodiscard]] const Bar* selectedBar() const;
    void choose(int run);
    void reveal(const Bar& bar);

    void moveInRow(int direction);
    void moveToRow(int direction);
    bool moveByKey(int key);
    bool zoomByKey(int key);
    bool sketchByKey(const QKeyEvent& event);

    void pointAt(QPointF point);
    void showCardSoon(int run);
    void showCard(int run);
    void hideCard();
    void placeCard(const QRectF& bar);

    void pressBar(const Bar& bar, QPointF point);
    void dragTo(QPointF point, Qt::KeyboardModifiers keys);
    void keepDragging(const Drag& drag);
    void endDrag(bool drops);
    void tellMoved(const Card& card);

    [[nodiscard]] QRectF heldRect() const;
    void paintPointer(QPainter& painter);
    void paintSelection(QPainter& painter);
    void paintStretch(QPainter& painter);
    void paintDrag(QPainter& painter);
    void paintSlacks(QPainter& painter);
    void paintSlack(QPainter& painter, int row, double right);
    void paintHeldTrips(QPainter& painter, const QRectF& held);
    [[nodiscard]] const std::optional<Change>& slackOf(int row);
    void paintEmpty(QPainter& painter);

    std::unique_ptr<Words> words_;
    Frame frame_;
    double rowStep_ = 26;  ///< as the measures count it
    QPixmap picture_;      ///< all but what follows the pointer
    bool isPainted_ = false;
    std::string selectedId_;  ///< of the selected run, whatever is shown anew
    bool isScrolling_ = false;
    bool showsDay_ = true;  ///< the whole of it, until the planner looks at a part
    std::optional<QPointF> pointer_;
    std::vector<bool> faded_;

    HoverCard* card_;
    QTimer cardTimer_;
    int cardRun_ = None;

    std::optional<double> stretchFrom_;  ///< x of the plot, while a stretch of the hours is dragged
    std::optional<QPointF> pressedAt_;   ///< on a bar that may be dragged
    Seconds grip_ = 0;                   ///< how far behind its start the bar is held
    Sketching sketching_;
    std::optional<Drag> drag_;
    std::map<int, std::optional<Change>> slacks_;  ///< by row, of those seen at the drag's time
};

}  // namespace schedule
