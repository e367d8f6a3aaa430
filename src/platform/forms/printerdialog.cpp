#include "platform/forms/printerdialog.h"

#include <QPageRanges>
#include <QPrintDialog>
#include <QPrinter>

#include "platform/forms/application.h"

namespace forms {

namespace {

PrinterChooser& printersInForce() {
    static PrinterChooser chooser;
    return chooser;
}

QString pagesAsked(const QPrinter& printer) {
    switch (printer.printRange()) {
        case QPrinter::PageRange:
            return printer.pageRanges().isEmpty()
                       ? QString("%1-%2").arg(printer.fromPage()).arg(printer.toPage())
                       : printer.pageRanges().toString();
        default:
            return {};
    }
}

QString sidesAsked(const QPrinter& printer) {
    const bool isAcross = printer.pageLayout().orientation() == QPageLayout::Landscape;
    switch (printer.duplex()) {
        case QPrinter::DuplexLongSide:
            return "two-sided-long-edge";
        case QPrinter::DuplexShortSide:
            return "two-sided-short-edge";
        case QPrinter::DuplexAuto:
            return isAcross ? "two-sided-short-edge" : "two-sided-long-edge";
        case QPrinter::DuplexNone:
            break;
    }
    return "one-sided";
}

PrintChoice choiceOf(const QPrinter& printer, const PrintQuestion& question) {
    PrintChoice choice{printer.printerName(), printer.outputFileName(), {}};
    choice.options = {{"copies", QString::number(printer.copyCount())},
                      {"Collate", printer.collateCopies() ? "True" : "False"},
                      {"sides", sidesAsked(printer)},
                      {"media", question.isA4 ? "iso_a4_210x297mm" : "na_letter_8.5x11in"}};
    if (const auto pages = pagesAsked(printer); !pages.isEmpty()) {
        choice.options.emplace_back("page-ranges", pages);
    }
    if (printer.colorMode() == QPrinter::GrayScale) {
        choice.options.emplace_back("print-color-mode", "monochrome");
    }
    return choice;
}

}  // namespace

std::optional<PrintChoice> choosePrinter(QWidget& over, const PrintQuestion& question) {
    if (printersInForce()) {
        return printersInForce()(question);
    }
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(question.title);
    printer.setCopyCount(question.copies);
    printer.setPageSize(QPageSize(question.isA4 ? QPageSize::A4 : QPageSize::Letter));
    printer.setPageOrientation(question.isLandscape ? QPageLayout::Landscape
                                                    : QPageLayout::Portrait);
    QPrintDialog dialog(&printer, &over);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange);
    dialog.setOption(QAbstractPrintDialog::PrintSelection, false);
    dialog.setMinMax(1, question.pages);
    const bool isWanted = dialog.exec() == QDialog::Accepted;
    Application::instance().throwIfEnding();
    return isWanted ? std::optional(choiceOf(printer, question)) : std::nullopt;
}

void setPrinterChooser(PrinterChooser chooser) { printersInForce() = std::move(chooser); }

}  // namespace forms
