#pragma once

#include <QString>

class QColor;
class QPainter;
class QRect;
class QWidget;

namespace controls {

/// Gives an input field the red background, the edge and the mark of one that was refused, or its
/// own look again. Looks that are not the program's own show the background only. What is wrong and
/// what is allowed stands under the field in a sentence, where one is given.
void showRefused(QWidget& control, bool refused, const QString& sentence = {});
[[nodiscard]] bool isRefused(const QWidget& control);

/// A warning triangle that fills a square.
void drawWarning(QPainter& painter, const QRect& square, const QColor& ink);

}  // namespace controls
