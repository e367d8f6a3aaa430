#pragma once

#include <QColor>
#include <QFont>
#include <QHash>
#include <QString>
#include <string_view>

#include "map/drawing/stamps.h"
#include "map/names/namelayout.h"

class QPainter;

namespace map {

[[nodiscard]] QString toQt(std::string_view text);

[[nodiscard]] QFont fontOf(const NameStyle& style);

/// The widths of texts, each measured once. For one thread.
class TextWidths {
public:
    [[nodiscard]] double operator()(std::string_view text, const NameStyle& style);

private:
    QHash<QString, double> widths_;
};

struct TextInk {
    QColor ink;
    QColor halo;  ///< 3 pixels around the letters; transparent for none
};

/// Paints a text about a place, turned, by its kept picture. What has the same key of inks looks
/// the same.
void paintText(QPainter& painter, Stamps& stamps, const PlacedText& text, const NameStyle& style,
               const TextInk& inks, double width);

}  // namespace map
