#pragma once

#include <QString>

class QWidget;

namespace help {

/// Asks for a printer over a window and hands it a page of the guide as it is written, or saves it
/// as a PDF file where that is asked for. Returns what became of it, in words; empty where the user
/// cancelled.
[[nodiscard]] QString printPage(QWidget& over, const QString& title, const QString& markdown,
                                const QString& folder);

/// Writes such a page as a PDF file; false where it cannot be written.
[[nodiscard]] bool writePdf(const QString& file, const QString& title, const QString& markdown,
                            const QString& folder, bool isA4);

}  // namespace help
