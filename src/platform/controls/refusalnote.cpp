#include "platform/controls/refusalnote.h"

#include <QAccessible>
#include <QEvent>
#include <QFocusEvent>
#include <algorithm>

namespace controls {

constexpr int WidestInLetters = 52;

RefusalNote::RefusalNote(QWidget& field, const QString& sentence)
    : NoteBox(field.window()), field_(&field), describedBefore_(field.accessibleDescription()) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_ShowWithoutActivating);
    const QString said = sentence.simplified();
    say(Tone::Wrong, said.toHtmlEscaped(), Sign::Warning);
    for (QWidget* part = &field; part != nullptr; part = part->parentWidget()) {
        part->installEventFilter(this);
        if (part->isWindow()) {
            break;
        }
    }
    field.setAccessibleDescription(said);
    place();
    QAccessibleEvent told(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

RefusalNote::~RefusalNote() {
    if (field_ != nullptr) {
        field_->setAccessibleDescription(describedBefore_);
    }
}

RefusalNote* RefusalNote::of(const QWidget& field) {
    const auto notes = field.window()->findChildren<RefusalNote*>(Qt::FindDirectChildrenOnly);
    const auto found = std::ranges::find_if(
        notes, [&](const RefusalNote* note) { return note->field_ == &field; });
    return found == notes.end() ? nullptr : *found;
}

bool RefusalNote::eventFilter(QObject* watched, QEvent* event) {
    const bool ofField = watched == field_;
    switch (event->type()) {
        case QEvent::FocusIn:
            wanted_ = wanted_ || ofField;
            break;
        case QEvent::FocusOut: {
            const auto reason = static_cast<QFocusEvent*>(event)->reason();
            const bool goesOn = reason != Qt::ActiveWindowFocusReason &&
                                reason != Qt::PopupFocusReason && reason != Qt::OtherFocusReason;
            wanted_ = wanted_ && !(ofField && goesOn);
            break;
        }
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Show:
        case QEvent::Hide:
            break;
        default:
            return false;
    }
    place();
    return false;
}

/// Under the field, or above it where the window ends.
void RefusalNote::place() {
    if (field_ == nullptr) {
        return;
    }
    const QWidget& window = *field_->window();
    setVisible(wanted_ && field_->isVisibleTo(&window));
    const int gap = std::max(2, fontMetrics().height() / 7);
    const int widest =
        std::min(WidestInLetters * fontMetrics().averageCharWidth(), window.width() - 2 * gap);
    const QMargins edges = contentsMargins();
    const int line = fontMetrics().horizontalAdvance(plainText()) + edges.left() + edges.right() +
                     2 * fontMetrics().averageCharWidth();
    const int width = std::min(widest, std::max(line, field_->width()));
    const int height = heightForWidth(width);
    const QPoint corner = field_->mapTo(&window, QPoint(0, field_->height() + gap));
    const bool fitsBelow = corner.y() + height <= window.height();
    setGeometry(std::clamp(corner.x(), gap, std::max(gap, window.width() - width - gap)),
                fitsBelow ? corner.y() : corner.y() - field_->height() - 2 * gap - height, width,
                height);
    raise();
}

}  // namespace controls
