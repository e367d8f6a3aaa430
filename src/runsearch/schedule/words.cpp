#include "runsearch/schedule/words.h"

#include <QFontMetricsF>
#include <cmath>

#include "platform/controls/qtext.h"

namespace schedule {

namespace {

struct TypeSize {
    int pixels;
    bool isBold;
};
constexpr std::array<TypeSize, 7> Sizes{
    {{11, false}, {11, true}, {10, false}, {10, true}, {12, false}, {12, true}, {13, true}}};

/// Beyond that the words of a scrolled-away part of a large search are given up.
constexpr std::size_t MostLaid = 20000;

}  // namespace

Words::Words(const QFont& base, double unit) {
    for (std::size_t i = 0; i < Sizes.size(); ++i) {
        fonts_[i] = base;
        fonts_[i].setPixelSize(qRound(Sizes[i].pixels * unit));
        fonts_[i].setBold(Sizes[i].isBold);
    }
}

const QFont& Words::font(Type type) const { return fonts_[static_cast<std::size_t>(type)]; }

const Words::Laid& Words::laid(std::string_view text, Type type) {
    auto& known = laid_[static_cast<std::size_t>(type)];
    if (const auto found = known.find(text); found != known.end()) {
        return found->second;
    }
    if (known.size() >= MostLaid) {
        known.clear();
    }
    Laid made{QStaticText(controls::toQt(text)), {}};
    made.text.setTextFormat(Qt::PlainText);
    made.text.setPerformanceHint(QStaticText::AggressiveCaching);
    made.text.prepare({}, font(type));
    made.size = made.text.size();
    return known.emplace(text, std::move(made)).first->second;
}

const QPixmap& Words::sign(QSizeF size, double ratio,
                           const std::function<void(QPainter&)>& painted) {
    const QSize pixels(static_cast<int>(std::ceil(size.width() * ratio)),
                       static_cast<int>(std::ceil(size.height() * ratio)));
    if (sign_.size() != pixels) {
        sign_ = QPixmap(pixels);
        sign_.setDevicePixelRatio(ratio);
        sign_.fill(Qt::transparent);
        QPainter painter(&sign_);
        painted(painter);
    }
    return sign_;
}

double Words::width(std::string_view text, Type type) { return laid(text, type).size.width(); }

void Words::draw(QPainter& painter, double x, double y, std::string_view text, Type type) {
    const auto& word = laid(text, type);
    if (painter.font() != font(type)) {
        painter.setFont(font(type));
    }
    painter.drawStaticText(QPointF(x, y - word.size.height() / 2), word.text);
}

void Words::drawRight(QPainter& painter, double right, double y, std::string_view text, Type type) {
    draw(painter, right - width(text, type), y, text, type);
}

void Words::drawMiddle(QPainter& painter, double x, double y, std::string_view text, Type type) {
    draw(painter, x - width(text, type) / 2, y, text, type);
}

void Words::drawWithin(QPainter& painter, double x, double y, double most, std::string_view text,
                       Type type) {
    if (width(text, type) <= most) {
        draw(painter, x, y, text, type);
        return;
    }
    const auto cut =
        QFontMetricsF(font(type)).elidedText(controls::toQt(text), Qt::ElideRight, most);
    draw(painter, x, y, controls::fromQt(cut), type);
}

}  // namespace schedule
