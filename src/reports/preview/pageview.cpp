#include "reports/preview/pageview.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <array>
#include <cmath>

#include "platform/controls/access.h"
#include "platform/controls/qtext.h"
#include "reports/preview/pageaccess.h"

namespace reports {

namespace {

constexpr double PointsPerInch = 72;
constexpr double Gap = 14;  // between pages and around them, in pixels
constexpr std::array ZoomSteps{0.25, 0.33, 0.5, 0.67, 0.75, 0.9, 1.0,
                               1.25, 1.5,  2.0, 2.5,  3.0,  4.0};

const QColor HitInk(255, 205, 0, 110);
const QColor CurrentHitInk(255, 120, 0, 150);
constexpr int SelectionAlpha = 85;

QRectF scaled(const Area& area, double scale) {
    return {area.x * scale, area.y * scale, area.width * scale, area.height * scale};
}

}  // namespace

PageView::PageView(QWidget* parent) : QAbstractScrollArea(parent) {
    controls::makeAccessible<PageView, PageAccess>();
    setFocusPolicy(Qt::StrongFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Mid);
    viewport()->setAutoFillBackground(true);
    setAccessibleName(tr("Pages of the report"));
}

void PageView::showPages(const Pages* pages) {
    pages_ = pages;
    selection_ = {};
    anchor_.reset();
    hits_.clear();
    currentHit_ = -1;
    page_ = 0;
    verticalScrollBar()->setValue(0);
    applyFit();
    grow();
    emit pageChanged(0);
}

void PageView::grow() {
    fitBars();
    followPage();
    viewport()->update();
}

int PageView::pageCount() const {
    return pages_ == nullptr ? 0 : static_cast<int>(pages_->pages.size());
}

double PageView::scale() const { return zoom_ * logicalDpiX() / PointsPerInch; }

QSizeF PageView::paper() const {
    const auto size = pages_ == nullptr ? PageSize() : pages_->size;
    return {std::round(size.width * scale()), std::round(size.height * scale())};
}

double PageView::stride() const { return paper().height() + Gap; }

QRectF PageView::rectOf(int page) const {
    const QSizeF size = paper();
    const double room = viewport()->width() - size.width();
    const double left = room > 2 * Gap ? std::floor(room / 2) : Gap;
    return {{left - horizontalScrollBar()->value(),
             Gap + page * stride() - verticalScrollBar()->value()},
            size};
}

int PageView::pageNear(double y) const {
    const double inDocument = y + verticalScrollBar()->value() - Gap / 2;
    return std::clamp(static_cast<int>(inDocument / stride()), 0, std::max(pageCount() - 1, 0));
}

void PageView::fitBars() {
    const QSizeF size = paper();
    const QSize room = viewport()->size();
    const double height = Gap + pageCount() * stride();
    verticalScrollBar()->setRange(0, std::max(0, static_cast<int>(height) - room.height()));
    verticalScrollBar()->setPageStep(room.height());
    verticalScrollBar()->setSingleStep(fontMetrics().height() * 3);
    const int width = static_cast<int>(size.width() + 2 * Gap);
    horizontalScrollBar()->setRange(0, std::max(0, width - room.width()));
    horizontalScrollBar()->setPageStep(room.width());
    horizontalScrollBar()->setSingleStep(fontMetrics().height());
}

void PageView::goTo(int page, double y) {
    constexpr double MarginInPoints = 12;
    const double inPage = std::max(0.0, y - MarginInPoints) * scale();
    verticalScrollBar()->setValue(static_cast<int>(page * stride() + inPage + (y > 0 ? Gap : 0)));
}

void PageView::setZoom(double zoom) {
    fit_ = Fit::None;
    changeZoom(zoom, QRectF(viewport()->rect()).center());
}

void PageView::stepZoom(int steps) {
    constexpr double Same = 0.005;
    double zoom = zoom_;
    for (; steps > 0; --steps) {
        const auto next =
            std::ranges::find_if(ZoomSteps, [&](double z) { return z > zoom + Same; });
        zoom = next == ZoomSteps.end() ? zoom : *next;
    }
    for (; steps < 0; ++steps) {
        const auto next = std::ranges::lower_bound(ZoomSteps, zoom - Same);
        zoom = next == ZoomSteps.begin() ? zoom : *(next - 1);
    }
    setZoom(zoom);
}

void PageView::setFit(Fit fit) {
    fit_ = fit;
    applyFit();
    emit zoomChanged();
}

void PageView::applyFit() {
    if (fit_ == Fit::None) {
        return;
    }
    const auto size = pages_ == nullptr ? PageSize() : pages_->size;
    const double points = logicalDpiX() / PointsPerInch;
    const double across = (viewport()->width() - 2 * Gap) / (size.width * points);
    const double down = (viewport()->height() - 2 * Gap) / (size.height * points);
    const int page = page_;
    const bool atTop = fit_ == Fit::Page;
    changeZoom(fit_ == Fit::Width ? across : std::min(across, down), {0, 0});
    if (atTop) {
        goTo(page);
    }
}

/// What lies below a point of the view stays there.
void PageView::changeZoom(double zoom, const QPointF& fixed) {
    const int page = pageNear(fixed.y());
    const QPointF inPage = (fixed - rectOf(page).topLeft()) / scale();
    zoom_ = std::clamp(zoom, LeastZoom, MostZoom);
    fitBars();
    const QPointF now = rectOf(page).topLeft() + inPage * scale();
    verticalScrollBar()->setValue(verticalScrollBar()->value() +
                                  static_cast<int>(std::round(now.y() - fixed.y())));
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() +
                                    static_cast<int>(std::round(now.x() - fixed.x())));
    followPage();
    viewport()->update();
    emit zoomChanged();
}

void PageView::followPage() {
    const int page = pageNear(viewport()->height() / 2.0);
    if (page != page_) {
        page_ = page;
        emit pageChanged(page);
        QAccessibleValueChangeEvent turned(this, page + 1);
        QAccessible::updateAccessibility(&turned);
    }
}

void PageView::scrollContentsBy(int /*dx*/, int /*dy*/) {
    followPage();
    viewport()->update();
}

void PageView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    applyFit();
    fitBars();
}

void PageView::paintEvent(QPaintEvent* /*event*/) {
    if (pageCount() == 0) {
        return;
    }
    QPainter painter(viewport());
    for (int page = pageNear(0); page < pageCount(); ++page) {
        if (rectOf(page).top() > viewport()->height()) {
            break;
        }
        paintPage(painter, page);
    }
}

void PageView::paintPage(QPainter& painter, int page) {
    const QRectF paperRect = rectOf(page);
    painter.setPen(palette().color(QPalette::Dark));
    painter.setBrush(Qt::white);
    painter.drawRect(paperRect.adjusted(-0.5, -0.5, 0.5, 0.5));
    painter.save();
    painter.translate(paperRect.topLeft());
    painter.setClipRect(paperRect.intersected(viewport()->rect()).translated(-paperRect.topLeft()));
    painter_.paint(painter, pages_->pages[static_cast<std::size_t>(page)], scale());
    const auto from = std::ranges::lower_bound(hits_, static_cast<std::size_t>(page), {},
                                               [](const TextRange& hit) { return hit.from.page; });
    for (auto hit = from; hit != hits_.end() && hit->from.page == static_cast<std::size_t>(page);
         ++hit) {
        paintMarks(painter, *hit, page,
                   hit - hits_.begin() == currentHit_ ? CurrentHitInk : HitInk);
    }
    QColor accent = palette().color(QPalette::Highlight);
    accent.setAlpha(SelectionAlpha);
    paintMarks(painter, selection_, page, accent);
    painter.restore();
}

void PageView::paintMarks(QPainter& painter, const TextRange& range, int page,
                          const QColor& colour) {
    if (range.isEmpty()) {
        return;
    }
    for (const Area& area : areasOf(pages_->pages, range, static_cast<std::size_t>(page))) {
        painter.fillRect(scaled(area, scale()), colour);
    }
}

void PageView::showHits(std::vector<TextRange> hits) {
    hits_ = std::move(hits);
    currentHit_ = -1;
    viewport()->update();
}

void PageView::addHits(const std::vector<TextRange>& more) {
    hits_.insert(hits_.end(), more.begin(), more.end());
    viewport()->update();
}

void PageView::goToHit(int hit) {
    currentHit_ = hit;
    if (hit >= 0 && hit < static_cast<int>(hits_.size())) {
        bringIntoSight(hits_[static_cast<std::size_t>(hit)]);
    }
    viewport()->update();
}

void PageView::bringIntoSight(const TextRange& range) {
    const int page = static_cast<int>(range.from.page);
    const auto areas = areasOf(pages_->pages, range, range.from.page);
    if (areas.empty()) {
        return goTo(page);
    }
    const QRectF seen = QRectF(viewport()->rect()).adjusted(Gap, Gap, -Gap, -Gap);
    const QRectF area = scaled(areas.front(), scale()).translated(rectOf(page).topLeft());
    if (area.top() < seen.top() || area.bottom() > seen.bottom()) {
        verticalScrollBar()->setValue(verticalScrollBar()->value() +
                                      static_cast<int>(area.center().y() - seen.center().y()));
    }
    if (area.left() < seen.left() || area.right() > seen.right()) {
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() +
                                        static_cast<int>(area.center().x() - seen.center().x()));
    }
}

void PageView::select(const TextRange& range) {
    selection_ = range;
    viewport()->update();
}

void PageView::selectEverything() {
    if (pages_ != nullptr) {
        select(wholeText(pages_->pages));
    }
}

void PageView::copy() const {
    if (pages_ != nullptr && !selection_.isEmpty()) {
        QApplication::clipboard()->setText(controls::toQt(textBetween(pages_->pages, selection_)));
    }
}

QString PageView::pageText() const {
    const auto page = static_cast<std::size_t>(page_);
    return pageCount() == 0
               ? QString()
               : controls::toQt(textBetween(pages_->pages, {{page, 0, 0}, {page + 1, 0, 0}}));
}

QSize PageView::sizeHint() const {
    return fontMetrics().size(Qt::TextSingleLine, "0") * 60;  // the form gives it what is left
}

void PageView::wheelEvent(QWheelEvent* event) {
    constexpr int Notch = 120;
    if ((event->modifiers() & Qt::ControlModifier) == 0) {
        return QAbstractScrollArea::wheelEvent(event);
    }
    fit_ = Fit::None;
    changeZoom(zoom_ * std::pow(1.15, 1.0 * event->angleDelta().y() / Notch), event->position());
    event->accept();
}

void PageView::keyPressEvent(QKeyEvent* event) {
    const bool turnsPages = fit_ == Fit::Page;
    switch (event->key()) {
        case Qt::Key_Home:
            return goTo(0);
        case Qt::Key_End:
            return goTo(pageCount() - 1);
        case Qt::Key_PageDown:
        case Qt::Key_Space:
            return turnsPages
                       ? goTo(page_ + 1)
                       : verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
        case Qt::Key_PageUp:
            return turnsPages
                       ? goTo(page_ - 1)
                       : verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepSub);
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            return stepZoom(1);
        case Qt::Key_Minus:
            return stepZoom(-1);
        default:
            break;
    }
    if (event->matches(QKeySequence::Copy)) {
        copy();
    } else if (event->matches(QKeySequence::SelectAll)) {
        selectEverything();
    } else {
        QAbstractScrollArea::keyPressEvent(event);
    }
}

std::optional<TextPlace> PageView::placeUnder(const QPointF& point) const {
    if (pageCount() == 0) {
        return std::nullopt;
    }
    const int page = pageNear(point.y());
    const QPointF inPage = (point - rectOf(page).topLeft()) / scale();
    return placeAt(pages_->pages, static_cast<std::size_t>(page), static_cast<float>(inPage.x()),
                   static_cast<float>(inPage.y()));
}

void PageView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const bool extends = (event->modifiers() & Qt::ShiftModifier) != 0 && anchor_.has_value();
    if (!extends) {
        anchor_ = placeUnder(event->position());
        select({});
    }
    mouseMoveEvent(event);
}

void PageView::mouseMoveEvent(QMouseEvent* event) {
    const auto place = placeUnder(event->position());
    if ((event->buttons() & Qt::LeftButton) == 0 || !anchor_ || !place) {
        return;
    }
    const double y = event->position().y();
    const int step = verticalScrollBar()->singleStep() / 2;
    if (y < 0 || y > viewport()->height()) {
        verticalScrollBar()->setValue(verticalScrollBar()->value() + (y < 0 ? -step : step));
    }
    select({std::min(*anchor_, *place), std::max(*anchor_, *place)});
}

void PageView::mouseReleaseEvent(QMouseEvent* event) { event->accept(); }

void PageView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (const auto place = placeUnder(event->position())) {
        const TextRange word = wordAt(pages_->pages, *place);
        anchor_ = word.from;
        select(word);
    }
}

void PageView::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* copies = menu->addAction(tr("&Copy"), this, &PageView::copy);
    copies->setShortcut(QKeySequence::Copy);
    copies->setEnabled(!selection_.isEmpty());
    menu->addAction(tr("Select &All"), this, &PageView::selectEverything)
        ->setShortcut(QKeySequence::SelectAll);
    menu->popup(event->globalPos());
}

}  // namespace reports
