#include <QDateTime>
#include <QLocale>
#include <QPrintDialog>
#include <QPrinter>

#include <fmt/format.h>

#include "data/lookups/mdlGetItems.h"
#include "map/page/mappage.h"
#include "map/shown/districtground.h"
#include "map/window/mapwindow.h"
#include "platform/base/ports.h"
#include "platform/controls/qtext.h"
#include "platform/forms/application.h"
#include "platform/forms/filedialog.h"
#include "startup/base/session.h"

#include "ui_mapwindow.h"

namespace map {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr auto PrintedFormat = "MMM d, yyyy h:mm AP";
constexpr auto NotPrintedTitle = "Not Printed";
constexpr auto NotPrinted =
    "The printer did not take the map.  Please look whether it is on and has paper.";
constexpr auto NotExportedTitle = "Not Exported";
constexpr auto NotExported = "{} could not be written: {}.";

/// A name that a file may have.
QString fileNameOf(const std::string& run) {
    QString name = run.empty() ? QStringLiteral("Map") : QStringLiteral("Map of ") + toQt(run);
    for (QChar& letter : name) {
        letter = letter == u'/' ? QChar(u'-') : letter;
    }
    return name + QStringLiteral(".pdf");
}

}  // namespace

MapPage MapWindow::page() const {
    const auto now = QDateTime::fromString(toQt(base::Now().iso()), Qt::ISODate);
    const bool isOne = isOfOneRun();
    return {.ground = groundOf(district_.streets),
            .scene = ui_->Streets->scene(),
            .shown = ui_->Streets->camera(),
            .heading = {.title = isOne ? headingOf(shown_.run)
                                       : (runsHeading_.empty() ? "Map" : runsHeading_),
                        .selection = isOne ? subjectOf(shown_.run) : "",
                        .district = data::GetDistrictName(),
                        .printed = fromQt(QLocale::c().toString(now, PrintedFormat)),
                        .user = district_.user()}};
}

void MapWindow::PrintIt_Click() {
    const auto printed = page();
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(printed.isLandscape() ? QPageLayout::Landscape
                                                     : QPageLayout::Portrait);
    printer.setDocName(toQt(printed.heading.title));
    QPrintDialog dialog(&printer, this);
    const bool isWanted = dialog.exec() == QDialog::Accepted;
    forms::Application::instance().throwIfEnding();
    if (isWanted && !printMapPage(printer, printed)) {
        base::MsgBox(NotPrinted, NotPrintedTitle, base::MsgIcon::Information);
    }
}

void MapWindow::ExportIt_Click() {
    const std::string run = isOfOneRun() ? shown_.run.id : std::string();
    const auto file = forms::chooseFile(
        *this, {.title = tr("Export Map"),
                .startAt = toQt(startup::gReportPath) + QStringLiteral("/") + fileNameOf(run),
                .filter = tr("PDF (*.pdf)"),
                .isToWrite = true});
    if (file.isEmpty()) {
        return;
    }
    if (const auto reason = saveMapPage(file, page()); !reason.isEmpty()) {
        base::MsgBox(fmt::format(NotExported, fromQt(file), fromQt(reason)), NotExportedTitle,
                     base::MsgIcon::Information);
    }
}

}  // namespace map
