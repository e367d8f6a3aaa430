#pragma once

#include <QAbstractScrollArea>
#include <optional>
#include <vector>

#include "reports/page/layout.h"
#include "reports/preview/pagepainter.h"
#include "reports/preview/pagetext.h"

namespace reports {

/// The pages of a report below one another, white on the desktop's surroundings; only those in
/// sight are painted. Zoom 1 is as large as on paper on a screen of the usual resolution. Pages
/// count from 0.
class PageView : public QAbstractScrollArea {
    Q_OBJECT

public:
    enum class Fit { None, Width, Page };
    static constexpr double LeastZoom = 0.25;
    static constexpr double MostZoom = 4;

    explicit PageView(QWidget* parent = nullptr);

    /// From their beginning. The pages outlive the view, or another showPages().
    void showPages(const Pages* pages);
    /// More pages are laid out.
    void grow();

    [[nodiscard]] int pageCount() const;
    /// The page that takes most of the view.
    [[nodiscard]] int page() const { return page_; }
    void goTo(int page, double y = 0);

    [[nodiscard]] double zoom() const { return zoom_; }
    [[nodiscard]] Fit fit() const { return fit_; }
    /// Bounded; the middle of what is seen stays.
    void setZoom(double zoom);
    /// To the next usual step up or down.
    void stepZoom(int steps);
    void setFit(Fit fit);

    /// Marks what was found, in reading order.
    void showHits(std::vector<TextRange> hits);
    void addHits(const std::vector<TextRange>& more);
    [[nodiscard]] const std::vector<TextRange>& hits() const { return hits_; }
    /// The one that stands out from the others, from 0; -1 is none.
    [[nodiscard]] int currentHit() const { return currentHit_; }
    /// Brings it into sight.
    void goToHit(int hit);

    [[nodiscard]] const TextRange& selection() const { return selection_; }
    void select(const TextRange& range);
    void selectEverything();
    void copy() const;
    /// The text of the page in sight, a line a row.
    [[nodiscard]] QString pageText() const;

    [[nodiscard]] QSize sizeHint() const override;

signals:
    void pageChanged(int page);
    void zoomChanged();

protected:
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

private:
    [[nodiscard]] double scale() const;  ///< pixels to the point
    [[nodiscard]] QSizeF paper() const;  ///< in pixels
    [[nodiscard]] double stride() const;
    [[nodiscard]] QRectF rectOf(int page) const;  ///< in the view
    [[nodiscard]] int pageNear(double y) const;
    [[nodiscard]] std::optional<TextPlace> placeUnder(const QPointF& point) const;
    void changeZoom(double zoom, const QPointF& fixed);
    void applyFit();
    void fitBars();
    void followPage();
    void bringIntoSight(const TextRange& range);
    void paintPage(QPainter& painter, int page);
    void paintMarks(QPainter& painter, const TextRange& range, int page, const QColor& colour);

    const Pages* pages_ = nullptr;
    PagePainter painter_;
    double zoom_ = 1;
    Fit fit_ = Fit::Width;
    int page_ = 0;
    std::vector<TextRange> hits_;
    int currentHit_ = -1;
    TextRange selection_;
    std::optional<TextPlace> anchor_;  ///< where a selection began
};

}  // namespace reports
