#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

class QWidget;

namespace forms {

/// What is to be printed.
struct PrintQuestion {
    QString title;
    int pages = 1;
    int copies = 1;  ///< preset
    bool isA4 = false;
    bool isLandscape = false;
};

/// How: a printer with the options that the print service knows, or a file.
struct PrintChoice {
    QString printer;
    QString file;  ///< the user wants a PDF file instead
    std::vector<std::pair<QString, QString>> options;
};

/// Asks over a form; nothing where the user cancels. Throws base::EndProgram when the program ended
/// while the dialog was open.
[[nodiscard]] std::optional<PrintChoice> choosePrinter(QWidget& over,
                                                       const PrintQuestion& question);

/// Answers instead of the desktop's dialog, for tests and scripts; an empty one brings it back.
using PrinterChooser = std::function<std::optional<PrintChoice>(const PrintQuestion&)>;
void setPrinterChooser(PrinterChooser chooser);

}  // namespace forms
