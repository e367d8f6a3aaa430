#include "platform/controls/rowdrag.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTimerEvent>
#include <utility>

#include "platform/controls/multicolumnlist.h"

namespace controls {

constexpr int LineHeight = 3;
constexpr int ScrollMilliseconds = 80;

RowDrag::RowDrag(MultiColumnList& list, std::string column)
    : QObject(&list), list_(list), column_(std::move(column)), line_(new QWidget(list.viewport())) {
    line_->hide();
    line_->setAutoFillBackground(true);
    line_->setBackgroundRole(QPalette::WindowText);
    line_->setAttribute(Qt::WA_TransparentForMouseEvents);
    list.viewport()->setMouseTracking(true);
    list.viewport()->installEventFilter(this);
    list.installEventFilter(this);
}

/// The row that a grip there belongs to; -1 for none.
int RowDrag::gripRow(QPoint at) const {
    const auto index = list_.indexAt(at);
    const bool isGrip = index.isValid() &&
                        static_cast<std::size_t>(index.column()) == list_.table().columnOf(column_);
    return isGrip ? index.row() : -1;
}

/// The row in front of which the rows would go.
int RowDrag::placeAt(QPoint at) const {
    const auto index = list_.indexAt({0, at.y()});
    if (!index.isValid()) {
        return at.y() < 0 ? 0 : list_.rows();
    }
    return index.row() + (at.y() > list_.visualRect(index).center().y() ? 1 : 0);
}

bool RowDrag::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &list_) {
        const bool escapes = dragging_ && event->type() == QEvent::KeyPress &&
                             static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
        if (escapes || event->type() == QEvent::Hide) {
            stop();
        }
        return escapes;
    }
    switch (event->type()) {
        case QEvent::MouseButtonPress:
            return press(static_cast<QMouseEvent&>(*event));
        case QEvent::MouseMove:
            return move(static_cast<QMouseEvent&>(*event));
        case QEvent::MouseButtonRelease:
            return release(static_cast<QMouseEvent&>(*event));
        default:
            return false;
    }
}

/// A selected row stays selected with the others; any other row is the only one.
bool RowDrag::press(const QMouseEvent& event) {
    stop();
    const int row = event.button() == Qt::LeftButton && event.modifiers() == Qt::NoModifier
                        ? gripRow(event.pos())
                        : -1;
    if (row < 0) {
        return false;
    }
    list_.setFocus(Qt::MouseFocusReason);
    if (!list_.isRowSelected(row)) {
        list_.choose(row);
    }
    held_ = row;
    at_ = event.pos();
    return true;
}

bool RowDrag::move(const QMouseEvent& event) {
    if (held_ < 0) {
        list_.viewport()->setCursor(gripRow(event.pos()) < 0 ? Qt::ArrowCursor
                                                             : Qt::OpenHandCursor);
        return false;
    }
    const int far = (event.pos() - at_).manhattanLength();
    if (dragging_ || far >= QApplication::startDragDistance()) {
        dragging_ = true;
        at_ = event.pos();
        list_.viewport()->setCursor(Qt::ClosedHandCursor);
        scrolling_.start(ScrollMilliseconds, this);
        showPlace();
    }
    return true;
}

bool RowDrag::release(const QMouseEvent& event) {
    if (held_ < 0) {
        return false;
    }
    const int held = held_;
    const bool drops = dragging_;
    const int before = placeAt(event.pos());
    stop();
    if (drops) {
        emit dropped(before);
    } else {
        list_.choose(held);
    }
    return true;
}

void RowDrag::timerEvent(QTimerEvent* event) {
    if (event->timerId() != scrolling_.timerId()) {
        return;
    }
    const int edge = list_.fontMetrics().height();
    const int step = at_.y() < edge ? -1 : at_.y() > list_.viewport()->height() - edge ? 1 : 0;
    list_.verticalScrollBar()->setValue(list_.verticalScrollBar()->value() + step);
    showPlace();
}

void RowDrag::showPlace() {
    const int before = placeAt(at_);
    const bool atEnd = before >= list_.rows();
    const QRect row = list_.visualRect(list_.model()->index(atEnd ? before - 1 : before, 0));
    line_->setGeometry(0, (atEnd ? row.bottom() + 1 : row.top()) - LineHeight / 2,
                       list_.viewport()->width(), LineHeight);
    line_->show();
    line_->raise();
}

void RowDrag::stop() {
    held_ = -1;
    dragging_ = false;
    scrolling_.stop();
    line_->hide();
    list_.viewport()->unsetCursor();
}

}  // namespace controls
