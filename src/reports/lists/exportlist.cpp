#include "reports/lists/exportlist.h"

#include <memory>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/ports.h"
#include "platform/base/wait.h"
#include "platform/controls/qtext.h"
#include "platform/forms/filedialog.h"
#include "platform/forms/operation.h"
#include "reports/lists/listfile.h"
#include "reports/preview/ReportPreview.h"
#include "reports/selection/choices.h"
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
    "The list has more rows than are read yet: only those listed so far are taken.  For all of "
    "them press Cancel and then End in the list, and go on when it is read.";

/// What the form is called, as a file may be.
QString fileNameOf(const forms::Form& form) {
    QString name = form.windowTitle().section(" - ", 0, 0);
    name.remove('/').remove(':');
    return name.trimmed().isEmpty() ? QStringLiteral("List") : name.trimmed();
}

bool confirmsPart(const controls::MultiColumnList& list) {
    return !list.hasMore() ||
           base::MsgBox({.text = NotAll,
                         .title = NotAllTitle,
                         .icon = base::MsgIcon::Question,
                         .buttons = base::MsgButtons::OkCancel,
                         .concerns = fmt::format("{} rows", list.rows())}) == base::MsgAnswer::Ok;
}

std::string selectionOf(const controls::MultiColumnList& list) {
    return !list.isFiltered() ? fmt::format("{} rows", list.rows())
                              : fmt::format("{} of {} rows, filtered by “{}”", list.rows(),
                                            list.rowsInAll(), fromQt(list.filter().trimmed()));
}

ListHeading headingOf(const forms::Form& form, const controls::MultiColumnList& list) {
    return {.title = fromQt(fileNameOf(form)),
            .printed = base::Now().text(),
            .user = startup::gCommandLine,
            .selection = selectionOf(list)};
}

Options listOptions() {
    Options options;
    options.paper = usualPaper();
    options.landscape = true;
    return options;
}

/// What a list showed when it was to be printed, whatever becomes of the list.
class PrintedList : public Prepared {
public:
    PrintedList(const controls::MultiColumnList& list, ListHeading heading)
        : table_(list.table()),
          columns_(list.shown().columns),
          rows_(list.shown().rows),
          heading_(std::move(heading)) {}

    [[nodiscard]] std::unique_ptr<Content> content() override {
        return listContent({table_, columns_, rows_}, heading_, listOptions());
    }
    [[nodiscard]] std::size_t runs() const override { return rows_.size(); }

private:
    table::TextTable table_;
    std::vector<std::size_t> columns_;
    std::vector<std::size_t> rows_;
    ListHeading heading_;
};

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
        writeList(list.shown(), headingOf(form, list), *kind, path,
                  [&work](double) { return work.goesOn(); });
    } catch (const base::RunTimeError& error) {
        base::MsgBox({.text = NotExported,
                      .title = NotExportedTitle,
                      .icon = base::MsgIcon::Exclamation,
                      .concerns = path,
                      .details = error.what()});
    }
}

}  // namespace

void printList(forms::Form& form, const controls::MultiColumnList& list) {
    if (!startup::HasAuthority(PrintPermission, true) || !confirmsPart(list)) {
        return;
    }
    const auto heading = headingOf(form, list);
    showPreview(form, std::make_shared<PrintedList>(list, heading),
                {.selection = heading.selection, .options = listOptions()}, 1);
}

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
