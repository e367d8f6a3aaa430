#include "map/drawing/lettering.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <array>
#include <utility>

namespace map {

namespace {

constexpr double Halo = 3;

QString keyOf(const QString& text, const NameStyle& style) {
    return QStringLiteral("%1 %2 %3").arg(style.pixels).arg(style.isBold ? 1 : 0).arg(text);
}

/// Curves become lines to their ends: behind a letter nobody sees the difference, and paper takes a
/// third of the numbers.
QPainterPath cornersOf(const QPainterPath& curved) {
    QPainterPath corners;
    for (int i = 0; i < curved.elementCount(); ++i) {
        const auto element = curved.elementAt(i);
        if (element.isMoveTo()) {
            corners.moveTo(element);
        } else if (element.isLineTo()) {
            corners.lineTo(element);
        } else if (element.isCurveTo()) {
            i += 2;
            corners.lineTo(curved.elementAt(i));
        }
    }
    return corners;
}

/// Words of a city stand on many sheets, and finding their outlines takes longer than all else.
const QPainterPath& outlineOf(const QFont& font, const QString& words) {
    constexpr qsizetype Most = 4000;
    thread_local QHash<QString, QPainterPath> known;
    const QString key = font.key() + QLatin1Char('\n') + words;
    if (const auto found = known.constFind(key); found != known.constEnd()) {
        return *found;
    }
    if (known.size() >= Most) {
        known.clear();
    }
    QPainterPath outline;
    outline.addText({}, font, words);
    return *known.insert(key, outline);
}

void paintOutlined(QPainter& painter, QPointF begin, const QString& words, const TextInk& inks) {
    const QPainterPath letters = outlineOf(painter.font(), words).translated(begin);
    if (inks.halo.alpha() > 0) {
        painter.strokePath(cornersOf(letters),
                           QPen(inks.halo, Halo, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    }
    painter.fillPath(letters, inks.ink);
}

/// The same on an empty picture, where letters that are moved about are much quicker than their
/// outlines.
void paintInPicture(QPainter& painter, QPointF begin, const QString& words, const TextInk& inks) {
    constexpr double Straight = Halo / 2, Slant = Straight * 0.7;
    constexpr std::array<std::pair<double, double>, 8> Around{{{Straight, 0},
                                                               {-Straight, 0},
                                                               {0, Straight},
                                                               {0, -Straight},
                                                               {Slant, Slant},
                                                               {Slant, -Slant},
                                                               {-Slant, Slant},
                                                               {-Slant, -Slant}}};
    if (inks.halo.alpha() > 0) {
        QColor opaque = inks.halo;
        opaque.setAlpha(255);
        painter.setPen(opaque);
        for (const auto& [x, y] : Around) {
            painter.drawText(begin + QPointF(x, y), words);
        }
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        const QRectF box = QFontMetricsF(painter.font()).boundingRect(words).translated(begin);
        painter.fillRect(box.adjusted(-Halo, -Halo, Halo, Halo),
                         QColor(0, 0, 0, inks.halo.alpha()));
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    if (inks.ink.alpha() > 0) {
        painter.setPen(inks.ink);
        painter.drawText(begin, words);
    }
}

}  // namespace

QString toQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QFont fontOf(const NameStyle& style) {
    QFont font;
    font.setPixelSize(style.pixels);
    font.setWeight(style.isBold ? QFont::DemiBold : QFont::Normal);
    font.setHintingPreference(QFont::PreferNoHinting);
    if (!style.isBold && style.pixels <= 11) {
        font.setStretch(QFont::SemiCondensed);
    }
    return font;
}

double TextWidths::operator()(std::string_view text, const NameStyle& style) {
    const QString words = toQt(text);
    const QString key = keyOf(words, style);
    const auto known = widths_.constFind(key);
    if (known != widths_.constEnd()) {
        return *known;
    }
    return *widths_.insert(key, QFontMetricsF(fontOf(style)).horizontalAdvance(words));
}

void paintText(QPainter& painter, Stamps& stamps, const PlacedText& text, const NameStyle& style,
               const TextInk& inks, double width) {
    const QString words = toQt(text.text);
    const QFont font = fontOf(style);
    const bool hasHalo = inks.halo.alpha() > 0;
    const QString key = QStringLiteral("text %1 %2 %3")
                            .arg(inks.ink.rgba())
                            .arg(hasHalo ? inks.halo.rgba() : 0)
                            .arg(keyOf(words, style));
    const QSizeF size(width + 2 * Halo + 2, style.pixels * 1.5 + 2 * Halo);
    stamps.stamp(painter, key, size, text.centre, text.degrees, [&](QPainter& on) {
        const QFontMetricsF metrics(font);
        const QPointF begin(-metrics.horizontalAdvance(words) / 2, metrics.capHeight() / 2);
        on.setFont(font);
        if (stamps.keepsPictures()) {
            paintInPicture(on, begin, words, inks);
        } else {
            paintOutlined(on, begin, words, inks);
        }
    });
}

}  // namespace map
