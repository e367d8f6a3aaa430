#include "runsearch/schedule/hovercard.h"

#include <QPainter>
#include <algorithm>

namespace schedule {

constexpr double Width = 292;
constexpr double WidestCard = 420;
constexpr double SignWidth = 14;
constexpr double Line = 17;
constexpr double LinesFrom = 46;
constexpr double LabelAt = 20;
constexpr double ValueAt = 98;
constexpr double Margin = 12;

void paintSign(QPainter& painter, QPointF middle, double unit, Trouble trouble,
               const Colours& colours) {
    const double size = 4 * unit;
    painter.setRenderHint(QPainter::Antialiasing);
    if (trouble == Trouble::Tight) {
        painter.setPen(QPen(colours.amberLine, 1));
        painter.setBrush(colours.amber);
        painter.drawPolygon(QPolygonF{{middle.x() - size - 1, middle.y() + size},
                                      {middle.x() + size + 1, middle.y() + size},
                                      {middle.x(), middle.y() - size}});
    } else if (trouble == Trouble::Nothing) {
        painter.setPen(QPen(colours.zones[2].edge, 2 * unit));
        painter.drawPolyline(QPolygonF{{middle.x() - size, middle.y()},
                                       {middle.x() - size / 4, middle.y() + size * 0.8},
                                       {middle.x() + size, middle.y() - size * 0.8}});
    } else {
        painter.setPen(QPen(colours.red, 2 * unit));
        painter.drawLine(middle - QPointF(size, size), middle + QPointF(size, size));
        painter.drawLine(middle + QPointF(-size, size), middle + QPointF(size, -size));
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
}

HoverCard::HoverCard(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void HoverCard::showCard(const Card& card, const QColor& edge, double unit) {
    card_ = card;
    edge_ = edge;
    unit_ = unit;
    words_ = std::make_unique<Words>(font(), unit);
    resize(qRound(std::clamp(neededWidth(), Width * unit, WidestCard * unit)),
           qRound((LinesFrom + Line * static_cast<double>(card.lines.size()) + Margin) * unit));
    update();
    show();
    raise();
}

double HoverCard::neededWidth() const {
    double width = words_->width(card_.run + "   " + card_.school, Type::Title) + LabelAt * unit_;
    for (const auto& line : card_.lines) {
        const bool hasSign = line.trouble != Trouble::Nothing || line.isGood;
        width =
            std::max(width, words_->width(line.text, line.isStrong ? Type::Bold : Type::Normal) +
                                (ValueAt + (hasSign ? SignWidth : 0)) * unit_);
    }
    return width + Margin * unit_;
}

void HoverCard::paintEvent(QPaintEvent*) {
    if (!words_) {
        return;
    }
    const auto& colours = coloursFor(palette());
    QPainter painter(this);
    const double unit = unit_;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colours.frame);
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 5, 5);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(QRectF(8 * unit, 10 * unit, 4 * unit, 30 * unit), edge_);
    painter.setPen(colours.words);
    const double room = width() - (LabelAt + 10) * unit;
    words_->drawWithin(painter, LabelAt * unit, 16 * unit, room, card_.run + "   " + card_.school,
                       Type::Title);
    painter.setPen(colours.soft);
    words_->drawWithin(painter, LabelAt * unit, 33 * unit, room, card_.description, Type::Normal);
    double y = (LinesFrom + Line / 2) * unit;
    for (const auto& line : card_.lines) {
        const bool isBad = line.trouble > Trouble::Tight;
        double x = ValueAt * unit;
        painter.setPen(colours.soft);
        words_->draw(painter, LabelAt * unit, y, line.label, Type::Normal);
        if (line.trouble != Trouble::Nothing || line.isGood) {
            paintSign(painter, {x + 4 * unit, y}, unit, line.trouble, colours);
            x += SignWidth * unit;
        }
        painter.setPen(isBad ? colours.redWords : colours.words);
        words_->drawWithin(painter, x, y, width() - x - 8 * unit, line.text,
                           line.isStrong ? Type::Bold : Type::Normal);
        y += Line * unit;
    }
}

}  // namespace schedule
