#include "tools/district/command/reportcommand.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <ostream>
#include <set>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <pwd.h>
#include <unistd.h>

#include "map/sheet/sheetmaps.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/error.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "reports/catalog/preparation.h"
#include "reports/formats/export.h"
#include "tools/district/base/progress.h"
#include "tools/district/command/fittingfile.h"
#include "tools/district/command/misuse.h"

namespace tools::district {

namespace {

using reports::PageBreak;
using reports::Report;

constexpr std::string_view StandardName = "VIREOReport";

std::vector<std::string> parts(std::string_view text) {
    std::vector<std::string> found;
    while (!text.empty()) {
        const auto end = std::min(text.find(','), text.size());
        if (const auto part = base::trim(text.substr(0, end)); !part.empty()) {
            found.emplace_back(part);
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return found;
}

/// Ids are parted by commas; what compares something is a condition.
bool isCondition(const std::string& runs) {
    const std::string text = ' ' + base::uppered(runs) + ' ';
    return text.find_first_of("=<>(") != std::string::npos ||
           std::ranges::any_of(
               std::array{" LIKE ", " IS ", " BETWEEN ", " IN ", " NOT "},
               [&](const char* word) { return text.find(word) != std::string::npos; });
}

std::string questionOf(const std::string& runs) {
    if (runs.empty()) {
        return "SELECT RUN.* FROM RUN";
    }
    if (isCondition(runs)) {
        return fmt::format("SELECT RUN.* FROM RUN WHERE ({})", runs);
    }
    std::vector<std::string> ids;
    for (const std::string& id : parts(runs)) {
        ids.push_back('\'' + ado::escaped(id) + '\'');
    }
    return fmt::format("SELECT RUN.* FROM RUN WHERE RUN.RUN IN ({})", fmt::join(ids, ","));
}

std::string inWords(const ReportOptions& options) {
    if (!options.selection.empty()) {
        return options.selection;
    }
    if (options.runs.empty()) {
        return "All runs";
    }
    return isCondition(options.runs) ? "Runs where " + options.runs
                                     : fmt::format("Runs {}", fmt::join(parts(options.runs), ", "));
}

/// The ids that no run has.
std::vector<std::string> missing(ado::Connection& routing, const std::string& runs) {
    if (runs.empty() || isCondition(runs)) {
        return {};
    }
    std::set<std::string> there;
    ado::Recordset rows;
    for (rows.Open(questionOf(runs), routing); !rows.Eof(); rows.MoveNext()) {
        there.insert(base::uppered(base::trimRight(rows["RUN"].Value().asText())));
    }
    std::vector<std::string> none = parts(runs);
    std::erase_if(none, [&](const std::string& id) { return there.contains(base::uppered(id)); });
    return none;
}

const Report& reportOf(const ReportOptions& options) {
    const Report* report = reports::reportNamed(options.report);
    if (report == nullptr) {
        throw Misuse{fmt::format("There is no report \"{}\"; --list shows them.", options.report)};
    }
    return *report;
}

[[noreturn]] void refuseChoice(const char* option, std::string_view choices,
                               const std::string& given) {
    throw Misuse{fmt::format("--{} takes {}, not \"{}\".", option, choices, given)};
}

reports::Format formatOf(const ReportOptions& options) {
    const auto dot = options.output.find_last_of("./");
    const bool hasExtension = dot != std::string::npos && options.output[dot] == '.';
    const std::string known = !options.format.empty() ? options.format
                              : hasExtension          ? options.output.substr(dot)
                                                      : "pdf";
    if (const auto format = reports::formatOf(known)) {
        return *format;
    }
    std::vector<std::string_view> names;
    std::ranges::transform(reports::AllFormats, std::back_inserter(names), reports::nameOf);
    refuseChoice("format", fmt::format("{}", fmt::join(names, ", ")), known);
}

PageBreak breakOf(const Report& report, const std::string& text) {
    constexpr std::pair<const char*, PageBreak> Known[] = {{"", PageBreak::None},
                                                           {"run", PageBreak::Run},
                                                           {"route", PageBreak::Route},
                                                           {"school", PageBreak::School}};
    std::vector<std::string_view> offered;
    for (const auto& [name, kind] : Known) {
        const bool isOffered = std::ranges::find(report.breaks, kind) != report.breaks.end();
        if (base::equalsNoCase(text, name) && (isOffered || text.empty())) {
            return isOffered ? kind : report.breaks.front();
        }
        if (isOffered && kind != PageBreak::None) {
            offered.emplace_back(name);
        }
    }
    refuseChoice("break",
                 offered.empty() ? std::string("nothing for this report")
                                 : fmt::format("{} for this report", fmt::join(offered, " or ")),
                 text);
}

reports::Options optionsOf(const Report& report, const ReportOptions& given) {
    reports::Options options{.landscape = report.landscape};
    if (!given.paper.empty() && !base::equalsNoCase(given.paper, "Letter")) {
        options.paper = reports::Paper::A4;
        if (!base::equalsNoCase(given.paper, "A4")) {
            refuseChoice("paper", "Letter or A4", given.paper);
        }
    }
    if (!given.orientation.empty()) {
        options.landscape = given.orientation == "landscape";
    }
    options.breaks = breakOf(report, given.pageBreak);
    if (given.names && !report.mayName) {
        throw Misuse{fmt::format("The report {} has no names to show.", report.id)};
    }
    options.names = given.names;
    options.maps = report.mayMap && !given.withoutMaps;
    return options;
}

std::optional<base::Date> dateOf(const std::string& text) {
    const auto date = base::Date::parse(text);
    if (!text.empty() && !date) {
        refuseChoice("changed-since", "a date as 11/21/2026", text);
    }
    return date;
}

std::vector<reports::SortField> sortOf(const std::vector<std::string>& given,
                                       const ado::Connection& work) {
    std::vector<reports::SortField> fields;
    const auto* table = work.catalog().find("RPT_RUN");
    for (const std::string& text : given) {
        for (const std::string& part : parts(text)) {
            const auto blank = part.find(' ');
            const std::string field = part.substr(0, blank);
            const std::string behind(
                base::trim(blank == std::string::npos ? "" : part.substr(blank)));
            const bool isDescending = base::equalsNoCase(behind, "DESC");
            const bool isKnown = base::equalsNoCase(field, "RunSeq") ||
                                 (table != nullptr && table->find(field) != nullptr);
            if (!isKnown ||
                !(behind.empty() || isDescending || base::equalsNoCase(behind, "ASC"))) {
                refuseChoice("sort", "fields of a run as STARTTIME or \"BELLTIME DESC\"", part);
            }
            fields.push_back({field, isDescending});
        }
    }
    return fields;
}

/// Who uses the computer.
std::string accountName() {
    const passwd* account = ::getpwuid(::getuid());
    return account == nullptr ? std::string() : account->pw_name;
}

void list(std::ostream& out, Result result) {
    if (result != nullptr) {
        result->insert("reports",
                       arrayOf(reports::reportsOf("RUNSEARCH"), [](const Report& report) {
                           return QJsonObject{{"name", toJson(report.id)},
                                              {"title", toJson(report.title)},
                                              {"purpose", toJson(report.purpose)},
                                              {"mayName", report.mayName}};
                       }));
    }
    for (const Report& report : reports::reportsOf("RUNSEARCH")) {
        out << fmt::format("{:<22}{}: {}{}\n", report.id, report.title, report.purpose,
                           report.mayName ? " (--names)" : "");
    }
}

/// A district's files as a report reads them.
struct Opened {
    explicit Opened(const Folders& folders) {
        const std::string file = folders.database(data::DatabaseFile::Routing).string();
        const std::string trip = folders.database(data::DatabaseFile::Trip).string();
        openFitting(routing, file);
        routing.link(trip);
        openFitting(work, folders.database(data::DatabaseFile::VIREORpt).string());
        work.link(file);
        work.link(trip);
    }

    ado::Connection routing;
    ado::Connection work;
};

bool hasPictures(reports::Format format) {
    using reports::Format;
    return format == Format::Pdf || format == Format::Html || format == Format::Tiff;
}

/// What draws the maps of drivers' sheets, without a display.
class Maps {
public:
    Maps(const Folders& folders, ado::Connection& routing);
    [[nodiscard]] std::shared_ptr<const reports::Drawable> of(const std::string& run) const {
        return maps_->of(run);
    }

private:
    std::optional<map::SheetMaps> maps_;
    int words_ = 1;
    std::string name_ = "vireo-district";
    std::array<char*, 2> arguments_{name_.data(), nullptr};
    std::unique_ptr<QGuiApplication> letters_;  ///< finds the fonts
};

Maps::Maps(const Folders& folders, ado::Connection& routing) {
    ado::Recordset district("SELECT DISTRICT.GIS_CLOSEDSTREETFILENAME FROM DISTRICT", routing);
    maps_.emplace(
        routing,
        streets::openStreets(
            {.settings = folders.settings().string(),
             .folder = folders.files().string(),
             .closed = district.Eof()
                           ? ""
                           : std::string(district["GIS_CLOSEDSTREETFILENAME"].textView())}));
    if (QCoreApplication::instance() == nullptr) {
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
        // A job at night has no session, which the toolkit would complain about.
        QLoggingCategory::setFilterRules("default.warning=false");
        letters_ = std::make_unique<QGuiApplication>(words_, arguments_.data());
    }
}

/// Null, with a complaint, where the streets cannot be opened.
std::shared_ptr<const Maps> mapsFor(const ReportOptions& options, ado::Connection& routing,
                                    std::ostream& complaints) {
    try {
        return streets::saysStreets(options.folders.settings().string())
                   ? std::make_shared<const Maps>(options.folders, routing)
                   : nullptr;
    } catch (const base::RunTimeError& fault) {
        complaints << fmt::format("The sheets are made without maps. {}\n", fault.description());
        return nullptr;
    }
}

/// Shows on a terminal how far a piece of the work is; Ctrl+C ends it.
reports::KeepGoing told(Progress& progress, const std::string& what) {
    constexpr std::int64_t Steps = 1000;
    progress.begin(what, Steps);
    return [&progress](double done) {
        progress.reach(static_cast<std::int64_t>(done * static_cast<double>(Steps)), Steps);
        return true;
    };
}

void make(const reports::Sources& sources, const reports::Request& request, reports::Format format,
          const std::string& path, std::ostream& out, Result result) {
    Progress progress;
    const auto prepared = reports::prepare(sources, request, told(progress, "Reading the runs"));
    reports::exportReport(*prepared->content(), format, path, told(progress, "Writing the report"));
    progress.clear();
    if (result != nullptr) {
        *result = {{"file", toJson(path)}, {"runs", static_cast<qint64>(prepared->runs())}};
    }
    out << fmt::format("Wrote {} {} to {}.\n", prepared->runs(),
                       prepared->runs() == 1 ? "run" : "runs", path);
}

}  // namespace

bool runReport(const ReportOptions& options, std::ostream& out, std::ostream& complaints) {
    if (options.report.empty()) {
        list(out, options.result);
        return true;
    }
    const Report& report = reportOf(options);
    const reports::Format format = formatOf(options);
    reports::Request request{.report = report.id,
                             .runs = questionOf(options.runs),
                             .selection = inWords(options),
                             .options = optionsOf(report, options),
                             .changedSince = dateOf(options.changedSince)};
    Opened files(options.folders);
    request.sort = sortOf(options.sort, files.work);
    if (const auto none = missing(files.routing, options.runs); !none.empty()) {
        complaints << fmt::format("There is no run {}.\n", fmt::join(none, ", "));
        return false;
    }
    const std::string name = fmt::format("{}{}", StandardName, reports::extensionOf(format));
    const auto maps = request.options.maps && hasPictures(format)
                          ? mapsFor(options, files.routing, complaints)
                          : nullptr;
    reports::MapsOfRuns mapOf;
    if (maps) {
        mapOf = [maps](const std::string& run) { return maps->of(run); };
    }
    make({.routing = files.routing,
          .work = files.work,
          .user = options.user.empty() ? accountName() : options.user,
          .now = base::Now(),
          .maps = mapOf},
         request, format,
         options.output.empty() ? (options.folders.reports() / name).string() : options.output, out,
         options.result);
    return true;
}

}  // namespace tools::district
