#include "reports/lists/exportlist.h"

#include <vector>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/ports.h"
#include "platform/base/wait.h"
#include "platform/controls/qtext.h"
#include "platform/forms/filedialog.h"
#include "platform/forms/operation.h"
#include "reports/lists/listfile.h"
#include "startup/base/mdlSecurity_Routines.h"
#include "startup/base/session.h"

namespace reports {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr auto PrintPermission = "RTG270";
constexpr auto NotExportedTitle = "List Not Exported";
constexpr auto NoSuchKind =
    "Oops, the list was not exported.  A list can be a CSV file or a workbook: let the file's name "
    "end in .csv or .xlsx.";
constexpr auto NotExported =
    "Oops, the list was not exported.  The file cannot be written; please choose another folder.";
constexpr auto NotAllTitle = "Not All Rows Are Listed";
constexpr auto NotAll =
    "The list has more rows than are read yet: only those listed so far are exported.  For all of "
    "them press Cancel and then End in the list, and export it when it is read.";

/// What the form is called, as a file may be.
QString fileNameOf(const forms::Form& form) {
    QString name = form.windowTitle().section(" - ", 0, 0);
    name.remove('/').remove(':');
    return name.trimmed().isEmpty() ? QStringLiteral("List") : name.trimmed();
}

std::vector<std::size_t> rowsOf(const controls::MultiColumnList& list) {
    std::vector<std::size_t> rows;
    rows.reserve(static_cast<std::size_t>(list.rows()));
    for (int row = 0; row < list.rows(); ++row) {
        rows.push_back(list.tableRow(row));
    }
    return rows;
}

bool confirmsPart(const controls::MultiColumnList& list) {
    return !list.hasMore() ||
           base::MsgBox({.text = NotAll,
                         .title = NotAllTitle,
                         .icon = base::MsgIcon::Question,
                         .buttons = base::MsgButtons::OkCancel,
                         .concerns = fmt::format("{} rows", list.rows())}) == base::MsgAnswer::Ok;
}

void writeTo(const std::string& path, const forms::Form& form,
             const controls::MultiColumnList& list) {
    const auto kind = listFileOf(path);
    if (!kind) {
        base::MsgBox({.text = NoSuchKind,
                      .title = NotExportedTitle,
                      .icon = base::MsgIcon::Information,
                      .concerns = path});
        return;
    }
    try {
        const forms::BusyCursor hourglass;
        base::Work work("Writing the list to a file.");
        writeList(list.table(), rowsOf(list),
                  {.title = fromQt(fileNameOf(form)),
                   .printed = base::Now().text(),
                   .user = startup::gCommandLine},
                  *kind, path, [&work](double) { return work.goesOn(); });
    } catch (const base::RunTimeError& error) {
        base::MsgBox({.text = NotExported,
                      .title = NotExportedTitle,
                      .icon = base::MsgIcon::Exclamation,
                      .concerns = path,
                      .details = error.what()});
    }
}

}  // namespace

void exportList(forms::Form& form, const controls::MultiColumnList& list) {
    if (!startup::HasAuthority(PrintPermission, true) || !confirmsPart(list)) {
        return;
    }
    const QString file = forms::chooseFile(
        form, {.title = forms::Form::tr("Export List"),
               .startAt = toQt(startup::gReportPath + "/") + fileNameOf(form) + ".csv",
               .filter = forms::Form::tr("CSV (*.csv);;Workbook (*.xlsx)"),
               .isToWrite = true});
    if (!file.isEmpty()) {
        writeTo(fromQt(file), form, list);
    }
}

}  // namespace reports
