#pragma once

#include <QFont>
#include <QPalette>

class QTextDocument;

namespace help {

/// How a page of the guide is set.
struct PageDress {
    QFont font;            ///< of the text; headings and code are measured by it
    QPalette palette;      ///< light or dark
    double width = 0;      ///< of the view in pixels; lines stay as short as one reads well
    double density = 1;    ///< device pixels to the pixel
    QString folder;        ///< of the pictures
    bool onPaper = false;  ///< no margins of its own
};

/// Sets a page that readPage() has read: type, margins, tables, code, and its pictures at the width
/// that there is, with their captions.
void dress(QTextDocument& document, const PageDress& look);

/// Ink of links that stands out from the ground well enough to be read.
[[nodiscard]] QColor linkInk(const QPalette& palette);

}  // namespace help
