#include "platform/controls/notebox.h"

#include <QEvent>
#include <QPainter>
#include <QTextDocumentFragment>

#include "platform/controls/qtext.h"

namespace controls {

namespace {

/// The grid's step at the font's size.
int stepOf(const QWidget& widget) { return widget.fontMetrics().height() * 2 / 7; }

}  // namespace

QString toRich(std::string_view text) { return toQt(text).toHtmlEscaped(); }

NoteBox::NoteBox(QWidget* parent) : QLabel(parent) {
    setWordWrap(true);
    setTextFormat(Qt::RichText);
    applyMargins();
}

void NoteBox::say(Tone tone, const QString& text, std::optional<Sign> sign) {
    tone_ = tone;
    sign_ = sign;
    setText(text);
    applyMargins();
    update();
}

QString NoteBox::plainText() const { return QTextDocumentFragment::fromHtml(text()).toPlainText(); }

void NoteBox::applyMargins() {
    const int step = stepOf(*this);
    setAlignment(Qt::AlignLeft | (tone_ == Tone::Plain ? Qt::AlignVCenter : Qt::AlignTop));
    const int edge = tone_ == Tone::Plain ? 0 : 2 * step;
    setContentsMargins(edge + (sign_ ? fontMetrics().height() + step : 0), edge / 2, edge,
                       edge / 2);
}

void NoteBox::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ink = inkOf(tone_, palette());
    if (tone_ != Tone::Plain) {
        painter.setPen(ink);
        painter.setBrush(groundOf(tone_, palette()));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    }
    if (sign_) {
        const int line = fontMetrics().height();
        const int left = contentsMargins().left() - line - stepOf(*this) / 2;
        const int top = tone_ == Tone::Plain ? (height() - line) / 2 : contentsMargins().top();
        painter.drawPixmap(left, top + line / 8, markFor(*sign_, ink, line));
    }
    QLabel::paintEvent(event);
}

void NoteBox::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        applyMargins();
    }
}

}  // namespace controls
