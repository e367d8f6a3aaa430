#include "platform/forms/captions.h"

#include <QAbstractButton>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <algorithm>
#include <cstdlib>
#include <functional>

namespace forms {

namespace {

constexpr int ShortCaption = 12;
constexpr auto Caption = "isCaption";
constexpr auto Text = "text";

/// Two words are the fewest of a line, unless there are but two.
bool mayBreak(const QString& text) {
    const auto words = text.count(' ') + text.count('\n') + 1;
    const auto lines = text.count('\n') + 1;
    return lines < std::max<qsizetype>(2, words / 2);
}

/// The blank nearest to the middle of the longest line; -1 where the caption stays as it is.
qsizetype breakOf(const QString& text) {
    if (!mayBreak(text)) {
        return -1;
    }
    qsizetype from = 0;
    qsizetype length = 0;
    for (qsizetype start = 0; start <= text.size();) {
        const auto end = text.indexOf('\n', start);
        const auto size = (end < 0 ? text.size() : end) - start;
        if (size > length) {
            from = start;
            length = size;
        }
        start += size + 1;
    }
    if (length <= ShortCaption) {
        return -1;
    }
    const auto middle = from + length / 2;
    const auto after = text.indexOf(' ', middle);
    const auto before = text.lastIndexOf(' ', middle);
    const auto distanceOf = [&](qsizetype blank) {
        return blank <= from || blank >= from + length ? length : std::abs(blank - middle);
    };
    const auto nearest = distanceOf(before) <= distanceOf(after) ? before : after;
    return distanceOf(nearest) < length ? nearest : -1;
}

template <class Captioned>
bool breakText(Captioned& part) {
    const QString text = part.text();
    const auto blank = breakOf(text);
    if (blank < 0) {
        return false;
    }
    if (part.accessibleName().isEmpty()) {
        part.setAccessibleName(QString(text).remove('&'));
    }
    part.setText(QString(text).replace(blank, 1, '\n'));
    return true;
}

bool isCaption(const QLabel& label) {
    return label.property(Caption).toBool() && !label.wordWrap() &&
           label.textFormat() != Qt::RichText && label.pixmap().isNull() &&
           label.sizePolicy().horizontalPolicy() != QSizePolicy::Ignored;
}

bool breakCaption(QWidget& part) {
    if (auto* button = qobject_cast<QAbstractButton*>(&part)) {
        return breakText(*button);
    }
    auto* label = qobject_cast<QLabel*>(&part);
    return label != nullptr && isCaption(*label) && breakText(*label);
}

/// Pages that are not shown learn of no change by themselves.
void measureAgain(QWidget& part, const QWidget& contents) {
    for (QWidget* up = &part; up != &contents; up = up->parentWidget()) {
        up->updateGeometry();
        if (QLayout* around = up->parentWidget()->layout(); around != nullptr) {
            around->activate();
        }
    }
}

}  // namespace

void noteCaptions(const QWidget& form) {
    for (QLabel* label : form.findChildren<QLabel*>()) {
        label->setProperty(Caption, !label->text().isEmpty());
    }
}

void breakCaptions(QHBoxLayout& row) {
    for (int place = 0; place < row.count(); ++place) {
        const QLayout& column = *row.itemAt(place)->layout();
        for (int part = 0; row.stretch(place) == 0 && part < column.count(); ++part) {
            auto* button = qobject_cast<QPushButton*>(column.itemAt(part)->widget());
            if (button != nullptr && !button->text().contains('\n')) {
                breakCaption(*button);
            }
        }
    }
    row.invalidate();
}

CaptionBreaker::CaptionBreaker(QScrollArea& area)
    : QObject(&area), area_(area), contents_(area.widget()) {
    area.viewport()->installEventFilter(this);
    contents_->installEventFilter(this);
}

/// Sizes on the way to where a form settles do not count. While the area is destroyed events still
/// come here.
bool CaptionBreaker::eventFilter(QObject* watched, QEvent* event) {
    const bool ofContents = watched == contents_ && event->type() == QEvent::LayoutRequest;
    if ((ofContents || event->type() == QEvent::Resize) && !isAsked_) {
        isAsked_ = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                isAsked_ = false;
                if (area_.isVisible()) {
                    breakLongest();
                }
            },
            Qt::QueuedConnection);
    }
    return false;
}

bool CaptionBreaker::isTooWide() const {
    return area_.widget()->minimumSizeHint().width() > area_.viewport()->width();
}

/// Each caption once, then once more; those of pages that are not shown as well.
void CaptionBreaker::breakLongest() {
    constexpr int MostBreaks = 3;
    const QWidget& contents = *area_.widget();
    const auto need = [&] {
        return QSize(area_.viewport()->width(), contents.minimumSizeHint().width());
    };
    if (need() == tried_) {
        return;  // nothing that could still break would help
    }
    auto parts = contents.findChildren<QWidget*>();
    parts.removeIf([](const QWidget* part) { return part->isHidden(); });
    std::vector<Broken> broken;
    for (int turn = 0; turn < MostBreaks && isTooWide(); ++turn) {
        std::ranges::stable_sort(parts, std::greater{},
                                 [](const QWidget* part) { return part->sizeHint().width(); });
        for (auto part = parts.begin(); part != parts.end() && isTooWide(); ++part) {
            const QString before = (*part)->property(Text).toString();
            if (breakCaption(**part)) {
                broken.push_back({*part, before});
                measureAgain(**part, contents);
            }
        }
    }
    mendNeedless(broken);
    tried_ = need();
}

/// Those broken on the way to the one that the width hung on are whole again.
void CaptionBreaker::mendNeedless(const std::vector<Broken>& broken) {
    const QWidget& contents = *area_.widget();
    const int least = std::max(contents.minimumSizeHint().width(), area_.viewport()->width());
    const auto show = [&](QWidget& part, const QString& text) {
        part.setProperty(Text, text);
        measureAgain(part, contents);
    };
    std::for_each(broken.rbegin(), broken.rend(), [&](const Broken& one) {
        const QString now = one.part->property(Text).toString();
        show(*one.part, one.before);
        if (contents.minimumSizeHint().width() > least) {
            show(*one.part, now);
        }
    });
}

}  // namespace forms
