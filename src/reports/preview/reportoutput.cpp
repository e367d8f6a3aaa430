#include "reports/preview/reportoutput.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <chrono>
#include <filesystem>
#include <future>
#include <thread>

#include <fmt/format.h>

#include "map/sheet/sheetmaps.h"
#include "map/small/streetplaces.h"
#include "platform/base/error.h"
#include "platform/base/ports.h"
#include "platform/controls/qtext.h"
#include "platform/forms/filedialog.h"
#include "platform/forms/printerdialog.h"
#include "reports/preview/savedfilebar.h"
#include "reports/printing/printservice.h"
#include "startup/base/session.h"

namespace reports {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr auto FileName = "VIREOReport";

constexpr auto NoRunsTitle = "Nothing to Show";
constexpr auto NoRuns =
    "Oops, no run is left for this report.  The runs were probably deleted or changed meanwhile, "
    "or none was changed since the date.  Please search again.";
constexpr auto NoMapsTitle = "No Maps";
constexpr auto NoMaps = "The sheets are made without maps: the streets are not open.  {}";
constexpr auto NotExportedTitle = "Not Exported";
constexpr auto NotExported =
    "Oops, the file {} could not be written: {}.  Please choose another folder or name and try "
    "again.";
constexpr auto NotPrintedTitle = "Not Printed";
constexpr auto NoPrinters = "There is no printer on this computer.";
constexpr auto NoPrintService = "The print service of this computer does not answer.";
constexpr auto OfferFile = "{}  Do you want to save the pages as a PDF file instead?";
constexpr auto PrinterRefused =
    "Oops, the printer {} did not take the report: {}.  Please look after the printer and try "
    "again, or save the report as a file.";

struct OpenedStreets {
    std::shared_ptr<const streets::DistrictStreets> streets = {};
    std::string reason = {};
};

OpenedStreets openedStreets(const streets::StreetPlaces& places) {
    try {
        return {.streets = streets::openStreets(places)};
    } catch (const std::exception& fault) {
        return {.reason = fault.what()};
    }
}

/// Runs what may hang in a thread of its own; nothing where the planner stops waiting for it.
template <class Result>
std::optional<Result> waitFor(forms::Form::Operation& operation, std::function<Result()> work) {
    auto promise = std::make_shared<std::promise<Result>>();
    auto result = promise->get_future();
    std::thread([promise, work = std::move(work)] { promise->set_value(work()); }).detach();
    constexpr std::chrono::milliseconds Turn(20);
    while (result.wait_for(Turn) != std::future_status::ready) {
        if (operation.yield()) {
            return std::nullopt;
        }
    }
    return result.get();
}

/// Made where it is missing, for whom the folder above lets in. Where it cannot be made the file
/// dialog says so.
void makeReportFolder(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code failed;
    if (fs::create_directory(path, failed)) {
        const auto above = fs::status(fs::path(path).parent_path(), failed).permissions();
        fs::permissions(path, above, failed);
    }
}

/// "PDF (*.pdf)"; the chosen one first.
QString filterFor(Format chosen) {
    const auto one = [](Format format) {
        const std::string name(nameOf(format));
        return toQt(fmt::format("{}{} (*{})", static_cast<char>(std::toupper(name.front())),
                                name.substr(1), extensionOf(format)));
    };
    QStringList filters{one(chosen)};
    for (const Format format : AllFormats) {
        if (format != chosen) {
            filters << one(format);
        }
    }
    return filters.join(";;");
}

/// The system's reason at the end of an error's text.
std::string reasonOf(const base::RunTimeError& error) {
    const std::string text = error.description();
    const auto at = text.rfind(": ");
    return at == std::string::npos ? text : text.substr(at + 2);
}

}  // namespace

KeepGoing keepGoing(forms::Form::Operation& operation) {
    constexpr double Whole = 100;
    return [&operation](double done) {
        operation.progress(done * Whole);
        return !operation.yield();
    };
}

ReportOutput::ReportOutput(forms::Form& form, forms::OperationPanel panel, SavedFileBar* saved)
    : form_(form), panel_(std::move(panel)), saved_(saved) {}

/// What draws the maps of a report; nothing where it has none, or where the streets cannot be
/// opened, which is told.
MapsOfRuns ReportOutput::mapsFor(const Request& request) const {
    const Report* report = reportNamed(request.report);
    if (report == nullptr || !report->mayMap || !request.options.maps ||
        !streets::saysStreets(startup::gIniFile)) {
        return nullptr;
    }
    std::optional<OpenedStreets> opened;
    {
        forms::Form::Operation operation(form_, panel_);
        operation.status("Opening the streets…");
        opened = waitFor<OpenedStreets>(
            operation, [places = map::streetsOfSession()] { return openedStreets(places); });
    }
    panel_.clear();
    if (!opened || opened->streets == nullptr) {
        base::MsgBox(fmt::format(NoMaps, opened ? opened->reason : "You stopped opening them."),
                     NoMapsTitle, base::MsgIcon::Information);
        return nullptr;
    }
    return [maps = std::make_shared<const map::SheetMaps>(*startup::gcnRouting, opened->streets)](
               const std::string& run) { return maps->of(run); };
}

std::shared_ptr<Prepared> ReportOutput::prepare(const Request& request) const {
    if (saved_ != nullptr) {
        saved_->clear();
    }
    MapsOfRuns maps = mapsFor(request);
    std::shared_ptr<Prepared> prepared;
    {
        forms::Form::Operation operation(form_, panel_);
        operation.status("Preparing the report…");
        base::ports().repaint();  // the runs are found by one statement
        prepared = reports::prepare({.routing = *startup::gcnRouting,
                                     .work = *startup::gcnVIREORpt,
                                     .user = startup::gCommandLine,
                                     .now = base::Now(),
                                     .maps = std::move(maps)},
                                    request, keepGoing(operation));
    }
    panel_.clear();
    if (prepared && prepared->runs() == 0) {
        base::MsgBox(NoRuns, NoRunsTitle, base::MsgIcon::Information);
        return nullptr;
    }
    return prepared;
}

bool ReportOutput::write(Prepared& prepared, Format format, const std::string& path) const {
    try {
        forms::Form::Operation operation(form_, panel_);
        operation.status("Making the pages…");
        const auto content = prepared.content();
        const bool isWhole = exportReport(*content, format, path, keepGoing(operation));
        operation.status(isWhole ? "" : "You stopped; no file was made.");
        return isWhole;
    } catch (const base::RunTimeError& error) {
        if (error.number() != base::errors::PathFileAccess) {
            throw;
        }
        panel_.clear();
        base::MsgBox({.text = fmt::format(NotExported, path, reasonOf(error)),
                      .title = NotExportedTitle,
                      .icon = base::MsgIcon::Exclamation,
                      .details = error.description()});
        return false;
    }
}

void ReportOutput::exportFile(Prepared& prepared, Format format) const {
    makeReportFolder(startup::gReportPath);
    QString path = forms::chooseFile(form_, {.title = QObject::tr("Export Report"),
                                             .startAt = toQt(startup::gReportPath + "/" + FileName +
                                                             std::string(extensionOf(format))),
                                             .filter = filterFor(format),
                                             .isToWrite = true});
    if (path.isEmpty()) {
        return;
    }
    const auto typed = formatOf(fromQt(QFileInfo(path).suffix()));
    if (!typed) {
        path += toQt(extensionOf(format));
    }
    save(prepared, typed.value_or(format), path);
}

void ReportOutput::save(Prepared& prepared, Format format, const QString& path) const {
    if (write(prepared, format, fromQt(path)) && saved_ != nullptr) {
        panel_.clear();
        saved_->offer(path);
    }
}

/// Nothing where the planner stopped waiting; else why there is none, empty where there is one.
std::optional<std::string> ReportOutput::whyNoPrinter() const {
    using Names = std::optional<std::vector<std::string>>;
    std::optional<Names> names;
    {
        forms::Form::Operation operation(form_, panel_);
        operation.status("Asking for the printers…");
        names = waitFor<Names>(operation, printing::service().printers);
    }
    panel_.clear();
    if (!names) {
        return std::nullopt;
    }
    return !*names ? NoPrintService : (*names)->empty() ? NoPrinters : "";
}

void ReportOutput::print(Prepared& prepared, const Request& request, int copies, int pages) const {
    const auto why = whyNoPrinter();
    if (!why) {
        return;
    }
    if (!why->empty()) {
        return offerFile(prepared, *why);
    }
    const auto heading = prepared.content()->heading();
    const auto choice = forms::choosePrinter(form_, {.title = toQt(heading.title),
                                                     .pages = pages,
                                                     .copies = copies,
                                                     .isA4 = request.options.paper == Paper::A4,
                                                     .isLandscape = request.options.landscape});
    if (choice && !choice->file.isEmpty()) {
        save(prepared, Format::Pdf, choice->file);
    } else if (choice) {
        send(prepared, heading.title, *choice);
    }
}

/// The pages pass through a folder that nobody else can read; it goes when the print service has
/// them, however long that takes.
void ReportOutput::send(Prepared& prepared, const std::string& title,
                        const forms::PrintChoice& choice) const {
    const auto folder = std::make_shared<QTemporaryDir>();
    const auto file = folder->filePath(QString(FileName) + ".pdf");
    if (!write(prepared, Format::Pdf, fromQt(file))) {
        return;
    }
    printing::PrintJob job{fromQt(choice.printer), title, fromQt(file), {}};
    for (const auto& [name, value] : choice.options) {
        job.options.emplace_back(fromQt(name), fromQt(value));
    }
    std::optional<std::string> refusal;
    {
        forms::Form::Operation operation(form_, panel_);
        operation.status(fmt::format("Handing the pages to {}…", job.printer));
        refusal = waitFor<std::string>(
            operation, [folder, job, print = printing::service().print] { return print(job); });
        operation.status(!refusal           ? "You stopped; the printer may print all the same."
                         : refusal->empty() ? fmt::format("Sent to {}.", job.printer)
                                            : "");
    }
    if (refusal && !refusal->empty()) {
        panel_.clear();
        base::MsgBox(fmt::format(PrinterRefused, job.printer, *refusal), NotPrintedTitle,
                     base::MsgIcon::Exclamation);
    }
}

void ReportOutput::offerFile(Prepared& prepared, const std::string& why) const {
    if (base::MsgBox(fmt::format(OfferFile, why), NotPrintedTitle, base::MsgIcon::Question,
                     base::MsgButtons::YesNo) == base::MsgAnswer::Yes) {
        exportFile(prepared, Format::Pdf);
    }
}

}  // namespace reports
