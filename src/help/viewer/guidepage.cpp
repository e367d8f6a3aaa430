#include "help/viewer/guidepage.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "help/guide/pagetext.h"
#include "help/viewer/pagedress.h"
#include "platform/controls/tones.h"

namespace help {

constexpr int ResizeMs = 80;
constexpr double Percent = 100;

GuidePage::GuidePage(QWidget* parent) : QTextBrowser(parent) {
    setOpenLinks(false);
    // A bar that comes and goes would change the width that the page is set for.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    later_.setSingleShot(true);
    later_.setInterval(ResizeMs);
    connect(&later_, &QTimer::timeout, this, &GuidePage::setAgain);
}

void GuidePage::showPage(const QString& markdown, const QString& folder) {
    markdown_ = markdown;
    folder_ = folder;
    set();
    verticalScrollBar()->setValue(0);
}

void GuidePage::set() {
    later_.stop();
    marks_.clear();
    current_ = -1;
    setExtraSelections({});
    QFont type = font();
    type.setPointSizeF(type.pointSizeF() * zoom_ / Percent);
    setWidth_ = viewport()->width();
    // Laid out once, when all is set.
    auto* page = new QTextDocument(this);
    readPage(*page, markdown_);
    dress(*page, {type, palette(), static_cast<double>(setWidth_), devicePixelRatioF(), folder_});
    page->setTextWidth(setWidth_);
    setDocument(page);
    delete std::exchange(page_, page);
}

void GuidePage::setAgain() {
    const int place = placeInSight();
    set();
    bringIntoSight(place);
}

/// The number of the block at the upper edge.
int GuidePage::placeInSight() const { return cursorForPosition(QPoint(4, 4)).blockNumber(); }

void GuidePage::bringIntoSight(int position) {
    const QTextBlock block = document()->findBlockByNumber(position);
    const QRectF place = document()->documentLayout()->blockBoundingRect(block);
    verticalScrollBar()->setValue(static_cast<int>(place.top()));
}

void GuidePage::goTo(const QString& anchor) {
    if (anchor.isEmpty()) {
        verticalScrollBar()->setValue(0);
    } else {
        scrollToAnchor(anchor);
    }
}

void GuidePage::setZoom(int percent) {
    zoom_ = std::clamp(percent, LeastZoom, MostZoom);
    if (!markdown_.isEmpty()) {
        setAgain();
    }
    emit zoomChanged();
}

int GuidePage::mark(const QString& text) {
    marks_.clear();
    current_ = -1;
    QTextCursor found(document());
    while (!text.isEmpty() && !(found = document()->find(text, found)).isNull()) {
        marks_.push_back(found);
    }
    showMarks();
    return static_cast<int>(marks_.size());
}

void GuidePage::markPlaces(const std::vector<std::pair<int, int>>& places) {
    marks_.clear();
    current_ = -1;
    for (const auto& [at, length] : places) {
        QTextCursor cursor(document());
        cursor.setPosition(at);
        cursor.setPosition(at + length, QTextCursor::KeepAnchor);
        marks_.push_back(cursor);
    }
    showMarks();
}

void GuidePage::goToMark(int mark) {
    current_ = mark;
    showMarks();
    QTextCursor place = marks_[static_cast<std::size_t>(mark)];
    place.setPosition(place.selectionStart());
    setTextCursor(place);
    ensureCursorVisible();
}

void GuidePage::showMarks() {
    QList<ExtraSelection> shown;
    for (int i = 0; const QTextCursor& cursor : marks_) {
        const bool isCurrent = i++ == current_;
        QTextCharFormat format;
        if (isCurrent) {
            format.setBackground(palette().color(QPalette::Highlight));
            format.setForeground(palette().color(QPalette::HighlightedText));
        } else {
            format.setBackground(controls::groundOf(controls::Tone::Look, palette()));
            format.setForeground(controls::inkOf(controls::Tone::Look, palette()));
        }
        shown.push_back({cursor, format});
    }
    setExtraSelections(shown);
}

void GuidePage::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    if (viewport()->width() != setWidth_ && !markdown_.isEmpty()) {
        later_.start();
    }
}

void GuidePage::changeEvent(QEvent* event) {
    QTextBrowser::changeEvent(event);
    const bool isLook = event->type() == QEvent::PaletteChange ||
                        event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
    if (isLook && !markdown_.isEmpty()) {
        later_.start();
    }
}

void GuidePage::wheelEvent(QWheelEvent* event) {
    if ((event->modifiers() & Qt::ControlModifier) != 0) {
        setZoom(zoom_ + (event->angleDelta().y() > 0 ? ZoomStep : -ZoomStep));
        event->accept();
    } else {
        QTextBrowser::wheelEvent(event);
    }
}

}  // namespace help
