#include "tools/district/command/commandline.h"

#include <QCommandLineParser>
#include <QDateTime>
#include <QStringList>
#include <QTimeZone>
#include <algorithm>
#include <exception>
#include <istream>
#include <optional>
#include <ostream>
#include <set>
#include <sstream>

#include <fmt/format.h>

#include "platform/base/date.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/files/installation.h"
#include "platform/store/base/location.h"
#include "tools/district/backup/backup.h"
#include "tools/district/backup/restore.h"
#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"
#include "tools/district/base/terminal.h"
#include "tools/district/check/checks.h"
#include "tools/district/command/answer.h"
#include "tools/district/command/call.h"
#include "tools/district/command/commandhelp.h"
#include "tools/district/command/exportcommand.h"
#include "tools/district/command/importcommand.h"
#include "tools/district/command/importsources.h"
#include "tools/district/command/misuse.h"
#include "tools/district/command/passwordcommand.h"
#include "tools/district/command/reportcommand.h"
#include "tools/district/command/sqlcommand.h"
#include "tools/district/command/userscommand.h"
#include "tools/district/copy/copydistrict.h"
#include "tools/district/deadhead/filltravel.h"
#include "tools/district/import/apply/importer.h"
#include "tools/district/import/benchmark/plansources.h"
#include "tools/district/make/companions.h"
#include "tools/district/make/create.h"
#include "tools/district/make/generator.h"
#include "tools/district/place/centre.h"
#include "tools/district/streets/keephomes.h"
#include "tools/district/streets/makestreets.h"
#include "tools/district/upgrade/upgrade.h"
#include "tools/district/users/accounts.h"

namespace tools::district {

namespace {

/// The name of a folder as a district's own until somebody gives it another.
std::string nameOf(const std::filesystem::path& folder) {
    const auto whole = std::filesystem::absolute(folder).lexically_normal();
    return (whole.has_filename() ? whole : whole.parent_path()).filename().string();
}

std::string userToMake(const Call& call) {
    const std::string user = call.text("admin").value_or(Administrator().user);
    if (const std::string why = whyNoIdentifier(user); !why.empty()) {
        throw Misuse{why};
    }
    return std::string(base::trim(user));
}

/// Nothing where no password was given.
std::optional<EmptyDistrict> emptyDistrict(const Call& call) {
    const std::string user = userToMake(call);
    const auto password = firstPassword(user, call.isTyped(), call.in, call.complaints);
    if (!password) {
        return std::nullopt;
    }
    return EmptyDistrict{call.text("name").value_or(nameOf(call.words[0])), {user, *password}};
}

void refuseTogether(const Call& call, std::initializer_list<const char*> options,
                    const std::string& why) {
    if (std::ranges::any_of(options, [&](const char* one) { return call.options.isSet(one); })) {
        throw Misuse{why};
    }
}

bool create(const Call& call) {
    CreateOptions options{.folder = call.words[0]};
    if (call.options.isSet("empty")) {
        refuseTogether(call, {"runs", "seed"}, "An empty district has no runs.");
        options.empty = emptyDistrict(call);
        if (!options.empty) {
            return false;
        }
    } else {
        refuseTogether(call, {"name", "admin"}, "--name and --admin belong to --empty.");
    }
    if (const auto runs = call.number("runs", 1, MostRuns)) {
        options.runs = static_cast<std::int64_t>(*runs);
    }
    if (const auto seed = call.number("seed", 0, UINT64_MAX)) {
        if (!options.runs) {
            throw Misuse{"--seed says how to invent a district; it needs --runs."};
        }
        options.seed = *seed;
    }
    Progress progress;
    if (store::isServer(call.words[0])) {
        const PrivateFolder making;
        options.folder = making.path() / "district";
        createDistrict(options, progress);
        copyDistrict(options.folder.string(), call.words[0], progress);
    } else {
        createDistrict(options, progress);
    }
    progress.clear();
    call.tell("folder", pathJson(call.words[0]));
    call.out << fmt::format("Made a district in {}.\n", call.words[0]);
    return true;
}

bool copy(const Call& call) {
    Progress progress;
    const CopyOutcome made = copyDistrict(call.words[0], call.words[1], progress);
    progress.clear();
    call.tell("tables", qint64{made.tables});
    call.tell("rows", qint64{made.rows});
    call.out << fmt::format("Copied {} rows of {} tables to {}; every cell is the same.\n",
                            made.rows, made.tables, call.words[1]);
    return true;
}

bool connect(const Call& call) {
    connectFolder(call.words[0], call.words[1]);
    call.tell("folder", pathJson(call.words[0]));
    call.out << fmt::format("{} is a district now whose databases are at {}.\n", call.words[0],
                            call.words[1]);
    return true;
}

base::Date now() {
    const QDateTime now = QDateTime::currentDateTime();
    const auto [day, time] = std::pair{now.date(), now.time()};
    return base::Date::of(day.year(), day.month(), day.day(), time.hour(), time.minute(),
                          time.second());
}

/// The names of the district's own tables, however they are written.
std::set<std::string> tablesNamed(const QStringList& names) {
    std::set<std::string> tables;
    for (const QString& name : names) {
        const FileKind* kind = kindNamed(fromParser(name));
        if (kind == nullptr) {
            throw Misuse{fmt::format("There is no table \"{}\".", fromParser(name))};
        }
        tables.insert(kind->rows.front().table);
    }
    return tables;
}

std::vector<std::string> textsOf(const QStringList& given) {
    std::vector<std::string> texts;
    for (const QString& text : given) {
        texts.push_back(fromParser(text));
    }
    return texts;
}

bool import(const Call& call) {
    std::vector<std::filesystem::path> sources(call.words.begin() + 1, call.words.end());
    std::optional<PrivateFolder> planned;
    if (const auto plan = call.text("plan")) {
        refuseTogether(call, {"map", "sketch-map"}, "A plan needs no map.");
        planned.emplace();
        writePlanSources(*plan, planned->path());
        sources.push_back(planned->path());
    }
    if (sources.empty()) {
        throw Misuse{"Something is missing."};
    }
    const Folders folders = foldersOf(call.words[0]);
    const ImportSources read(sources,
                             {.trips = textsOf(call.options.values("trips")),
                              .sharedStops = call.options.isSet("shared-stops"),
                              .charset = call.text("charset").value_or("CP1252"),
                              .keepsCentre = call.options.isSet("apply")},
                             folders);
    call.out << read.remarks() << read.question();
    if (!read.question().empty()) {
        return false;
    }
    if (call.options.isSet("sketch-map")) {
        call.out << sketchMaps(read.files());
        return true;
    }
    ImportOptions options{.folders = folders,
                          .sources = read.files(),
                          .map = call.text("map").value_or(""),
                          .rejected = call.text("rejected").value_or("rejected.csv"),
                          .rules = {.addCodes = call.options.isSet("add-codes"),
                                    .overwriteEdited = call.options.isSet("overwrite-edited"),
                                    .replaced = tablesNamed(call.options.values("replace"))},
                          .user = call.text("user").value_or("IMPORT"),
                          .now = now(),
                          .apply = call.options.isSet("apply")};
    if (const auto day = call.text("roll-over")) {
        options.rules.rollOver = base::Date::parse(*day);
        if (!options.rules.rollOver) {
            throw Misuse{
                fmt::format("--roll-over takes a day such as 2026-06-30, not \"{}\".", *day)};
        }
    }
    return runImport(options, call.out, call.result);
}

bool check(const Call& call) {
    Progress progress;
    const CheckReport report = checkDistrict(foldersOf(call.words[0]), progress);
    progress.clear();
    if (call.result != nullptr) {
        district::tell(report, *call.result);
    }
    call.out << report.text();
    return report.isSound();
}

bool upgrade(const Call& call) {
    Progress progress;
    QJsonArray steps;
    upgradeDistrict(foldersOf(call.words[0]), progress, [&](const std::string& deed) {
        progress.clear();
        call.out << deed << std::endl;
        steps.append(toJson(deed));
    });
    call.tell("steps", steps);
    if (steps.isEmpty()) {
        call.out << "The district is of this program's version already; nothing was changed.\n";
    }
    return true;
}

std::string megabytes(std::int64_t bytes) {
    constexpr double Megabyte = 1e6;
    return fmt::format("{:.1f} MB", static_cast<double>(bytes) / Megabyte);
}

bool backUp(const Call& call) {
    BackupOptions options{.folders = foldersOf(call.words[0]), .target = call.words[1]};
    if (const auto keep = call.number("keep", 1, UINT32_MAX)) {
        options.keep = *keep;
    }
    Progress progress;
    const BackupOutcome made = backUpDistrict(options, progress);
    progress.clear();
    call.tell("file", pathJson(made.file));
    call.tell("bytes", static_cast<qint64>(made.bytes));
    call.tell("packedBytes", static_cast<qint64>(made.packedBytes));
    call.tell("leftOut", arrayOf(made.leftOut, [](const auto& file) { return pathJson(file); }));
    call.tell("removed", arrayOf(made.removed, [](const auto& older) { return pathJson(older); }));
    call.out << fmt::format("Backed up {} of {} as {} in {}.\n", megabytes(made.bytes),
                            options.folders.root.string(), megabytes(made.packedBytes),
                            made.file.string());
    for (const auto& file : made.leftOut) {
        call.out << fmt::format("Left out {}: it lies outside the district's folders.\n",
                                file.string());
    }
    for (const auto& older : made.removed) {
        call.out << fmt::format("Removed {}.\n", older.string());
    }
    return true;
}

/// Whether a district may be replaced that stands where another one is restored to.
bool mayReplace(const Call& call) {
    return call.options.isSet("replace") ||
           (call.isTyped() &&
            agrees(fmt::format("There is a district at {} already. It is backed up first. Replace "
                               "it?",
                               call.words[1])));
}

bool restore(const Call& call) {
    Progress progress;
    const auto former = restoreDistrict(
        call.words[0], call.words[1], [&] { return mayReplace(call); }, progress);
    progress.clear();
    const Folders folders = foldersOf(call.words[1]);
    if (!folders.isOnServer()) {
        linkCompanions(files::installation().companions, folders.programs());
    }
    call.tell("folder", pathJson(folders.root));
    call.tell("former", former ? QJsonValue(pathJson(*former)) : QJsonValue());
    call.out << fmt::format("Restored {}.\n", folders.root.string());
    if (former) {
        call.out << fmt::format(
            "{} as {} in {}.\n", folders.isOnServer() ? "The district" : "The files",
            folders.isOnServer() ? "it was is" : "they were are", former->string());
    }
    return check({call.options, {call.words[1]}, call.in, call.out, call.complaints, call.result});
}

base::Date day(const Call& call, const char* option, std::optional<base::Date> otherwise) {
    const auto text = call.text(option);
    const auto date = text ? base::Date::fromIso(*text + " 00:00:00") : otherwise;
    if (!date) {
        throw Misuse{
            fmt::format("--{} takes a day such as 2026-08-24, not \"{}\".", option, *text)};
    }
    return *date;
}

std::optional<geo::Degrees> centreGiven(const Call& call) {
    const auto text = call.text("centre");
    const auto centre = degreesFrom(text.value_or(""));
    if (text && !centre) {
        throw Misuse{
            fmt::format("--centre takes degrees such as 41.8818,-87.6232, not \"{}\".", *text)};
    }
    return centre;
}

FeedOptions feedOptions(const Call& call) {
    constexpr std::int64_t Year = 365 * base::Date::SecondsPerDay;
    FeedOptions options{.folders = foldersOf(call.words[0]),
                        .target = call.words[1],
                        .centre = centreGiven(call),
                        .result = call.result};
    const auto timezone = call.text("timezone");
    if (timezone && !QTimeZone::isTimeZoneIdAvailable(QByteArray::fromStdString(*timezone))) {
        throw Misuse{fmt::format("There is no time zone \"{}\".", *timezone)};
    }
    options.timezone = timezone.value_or(QTimeZone::systemTimeZoneId().toStdString());
    options.url = call.text("url").value_or("https://example.org/");
    options.from = day(call, "from", base::Now().dateValue());
    options.until = day(call, "until", options.from.plusSeconds(Year));
    if (options.until < options.from) {
        throw Misuse{"--until is a day before --from."};
    }
    return options;
}

bool exportAll(const Call& call) {
    if (call.options.isSet("gtfs")) {
        runFeedExport(feedOptions(call), call.out);
        return true;
    }
    runExport({.folders = foldersOf(call.words[0]),
               .target = call.words[1],
               .withoutNames = call.options.isSet("without-names"),
               .result = call.result},
              call.out);
    return true;
}

bool sql(const Call& call) {
    return runSql({.file = call.words[0],
                   .statement = call.words.size() > 1 ? std::optional(call.words[1]) : std::nullopt,
                   .onlyCheck = call.options.isSet("check"),
                   .result = call.result},
                  call.in, call.out, call.complaints);
}

bool password(const Call& call) {
    call.tell("user", toJson(call.words[1]));
    return runPassword(
        {.folders = foldersOf(call.words[0]), .user = call.words[1], .ask = call.isTyped()},
        call.in, call.out, call.complaints);
}

bool users(const Call& call) {
    return runUsers({.folders = foldersOf(call.words[0]),
                     .words = {call.words.begin() + 1, call.words.end()},
                     .result = call.result,
                     .ask = call.isTyped()},
                    call.in, call.out, call.complaints);
}

bool report(const Call& call) {
    const auto text = [&](const char* option) { return fromParser(call.options.value(option)); };
    const bool hasName = call.words.size() > 1;
    if (hasName == call.options.isSet("list")) {
        throw Misuse{hasName ? "--list takes no report." : "The report's name is missing."};
    }
    if (call.options.isSet("landscape")) {
        refuseTogether(call, {"portrait"}, "--landscape and --portrait exclude each other.");
    }
    ReportOptions options{.folders = foldersOf(call.words[0]),
                          .report = hasName ? call.words[1] : "",
                          .runs = text("runs"),
                          .selection = text("selection"),
                          .format = text("format"),
                          .output = text("output"),
                          .paper = text("paper"),
                          .pageBreak = text("break"),
                          .changedSince = text("changed-since"),
                          .sort = textsOf(call.options.values("sort")),
                          .user = text("user"),
                          .names = call.options.isSet("names"),
                          .withoutMaps = call.options.isSet("without-maps"),
                          .result = call.result};
    options.orientation = call.options.isSet("landscape")  ? "landscape"
                          : call.options.isSet("portrait") ? "portrait"
                                                           : "";
    return runReport(options, call.out, call.complaints);
}

constexpr std::uint64_t FarthestMiles = 500;

void takeHomes(const Call& call, const std::string& file) {
    Progress progress;
    const HomesReport report = keepHomes(foldersOf(call.words[0]), file, progress);
    progress.clear();
    call.out << report.text();
    call.tell("homes", static_cast<qint64>(report.homes));
    call.tell("homesWithoutPlace",
              arrayOf(report.unplaced, [](const std::string& line) { return toJson(line); }));
}

void makeStreetsOf(const Call& call) {
    StreetsOptions options{.folders = foldersOf(call.words[0]),
                           .extracts = {call.words.begin() + 1, call.words.end()},
                           .centre = centreGiven(call)};
    if (const auto addresses = call.text("addresses")) {
        options.addresses = *addresses;
    }
    if (const auto miles = call.number("around", 0, FarthestMiles)) {
        options.milesAround = static_cast<double>(*miles);
    }
    Progress progress;
    const StreetsReport report = makeStreets(options, progress);
    progress.clear();
    call.out << report.text();
    call.tell("file", toJson(report.file.string()));
    call.tell("miles", report.miles);
    call.tell("cutOff", static_cast<qint64>(report.unreachable));
    call.tell("farStops", arrayOf(report.farStops, [](const FarStop& stop) {
                  return QJsonObject{{"stop", toJson(stop.stop)},
                                     {"feet", stop.feet ? QJsonValue(*stop.feet) : QJsonValue()}};
              }));
}

/// Homes alone need no extract: they are placed on the streets that are there.
bool streets(const Call& call) {
    const auto homes = call.text("homes");
    if (call.words.size() < 2 && !homes) {
        throw Misuse{"Name an extract of OpenStreetMap, or a list of homes with --homes."};
    }
    if (call.words.size() > 1) {
        makeStreetsOf(call);
    }
    if (homes) {
        takeHomes(call, *homes);
    }
    return true;
}

bool travel(const Call& call) {
    Progress progress;
    const TravelReport report = fillTravel({.folders = foldersOf(call.words[0]),
                                            .all = call.options.isSet("all"),
                                            .again = call.options.isSet("again")},
                                           progress);
    progress.clear();
    call.out << report.text();
    call.tell("added", static_cast<qint64>(report.added));
    call.tell("renewed", static_cast<qint64>(report.renewed));
    call.tell("known", static_cast<qint64>(report.known));
    call.tell("open", arrayOf(report.open, [](const std::string& why) { return toJson(why); }));
    return report.open.empty();
}

bool programs(const Call& call) {
    const Folders folders = foldersOf(call.words[0]);
    const auto linked = linkCompanions(files::installation().companions, folders.programs());
    for (const std::string& name : linked) {
        call.out << fmt::format("Linked {}.\n", name);
    }
    call.tell("linked", arrayOf(linked, [](const std::string& name) { return toJson(name); }));
    return true;
}

constexpr std::size_t MostUserWords = 20;
constexpr std::size_t MostExtracts = 100;

struct Command {
    std::string_view name;
    std::string_view words;                     ///< what follows the name
    std::pair<std::size_t, std::size_t> count;  ///< of the words beside options: least and most
    std::string_view help;
    bool (*run)(const Call&);       ///< whether all went well
    std::string_view options = {};  ///< each takes a value where "=" follows it
};

const std::vector<Command>& commands() {
    static const std::vector<Command> all = {
        {"create",
         "FOLDER [--runs N [--seed S] | --empty [--name DISTRICT] [--admin USER]]",
         {1, 1},
         CreateHelp,
         create,
         "runs= seed= empty name= admin="},
        {"import",
         "FOLDER SOURCE... [--map FILE] [--plan INSTANCE] [--apply] [...]",
         {1, 10'000},
         ImportHelp,
         import,
         "apply map= plan= trips= shared-stops charset= sketch-map rejected= add-codes replace= "
         "overwrite-edited roll-over= user="},
        {"copy", "FROM TO", {2, 2}, CopyHelp, copy},
        {"connect", "FOLDER SERVER", {2, 2}, ConnectHelp, connect},
        {"check", "FOLDER", {1, 1}, CheckHelp, check},
        {"upgrade", "FOLDER", {1, 1}, UpgradeHelp, upgrade},
        {"backup", "FOLDER TARGET [--keep N]", {2, 2}, BackupHelp, backUp, "keep="},
        {"restore", "FILE FOLDER [--replace]", {2, 2}, RestoreHelp, restore, "replace"},
        {"export",
         "FOLDER TARGET [--without-names | --gtfs]",
         {2, 2},
         ExportHelp,
         exportAll,
         "without-names gtfs centre= timezone= url= from= until="},
        {"sql", "[--check] FILE [STATEMENT]", {1, 2}, SqlHelp, sql, "check"},
        {"password", "FOLDER USER", {2, 2}, PasswordHelp, password},
        {"users", "FOLDER [ACTION [USER ...]]", {1, MostUserWords}, UsersHelp, users},
        {"report",
         "FOLDER (NAME | --list)",
         {1, 2},
         ReportHelp,
         report,
         "list runs= selection= format= output= paper= landscape portrait break= sort= "
         "changed-since= user= names without-maps"},
        {"streets",
         "FOLDER [EXTRACT...] [--addresses FILE] [--homes FILE] [--centre LAT,LON] [--around "
         "MILES]",
         {1, MostExtracts},
         StreetsHelp,
         streets,
         "addresses= homes= centre= around="},
        {"travel", "FOLDER [--all] [--again]", {1, 1}, TravelHelp, travel, "all again"},
        {"programs", "FOLDER", {1, 1}, ProgramsHelp, programs}};
    return all;
}

std::string usageOf(const Command& command) {
    return fmt::format("vireo-district {} {}", command.name, command.words);
}

std::string help() {
    std::string text = "Usage:\n";
    for (const Command& command : commands()) {
        text += fmt::format("  {}\n      {}\n", usageOf(command),
                            command.help.substr(0, command.help.find('\n')));
    }
    return text + R"(
vireo-district COMMAND --help says more, vireo-district --version which release this is. It ends
with 0 when all went well, 1 after a failure or a finding, 2 for a wrong command line. Each command
takes --json, for scripts: it then tells all of that as one object.
)";
}

/// The words behind the command beside its options.
std::vector<std::string> wordsOf(const Command& command, const QCommandLineParser& options) {
    auto words = textsOf(options.positionalArguments());
    if (words.size() < command.count.first || std::ranges::find(words, "") != words.end()) {
        throw Misuse{"Something is missing."};
    }
    if (words.size() > command.count.second) {
        throw Misuse{fmt::format("\"{}\" is one word too many.", words[command.count.second])};
    }
    return words;
}

/// Whatever goes wrong in `work` is complained of.
template <class Work>
ExitStatus guarded(std::ostream& complaints, const Work& work) {
    try {
        return work();
    } catch (const Misuse& misuse) {
        complaints << misuse.what << "\nvireo-district --help says how to call it.\n";
        return ExitStatus::Misused;
    } catch (const Interrupted&) {
        complaints << "Stopped.\n";
    } catch (const std::exception& error) {
        complaints << error.what() << '\n';
    }
    return ExitStatus::Failed;
}

ExitStatus perform(const Command& command, const QCommandLineParser& options, std::istream& in,
                   std::ostream& out, std::ostream& complaints, Result result) {
    try {
        if (const auto unknown = options.errorText(); !unknown.isEmpty()) {
            throw Misuse{fromParser(unknown) + "."};
        }
        const Call call{options, wordsOf(command, options), in, out, complaints, result};
        return command.run(call) ? ExitStatus::Done : ExitStatus::Failed;
    } catch (const Misuse& misuse) {
        throw Misuse{fmt::format("{}\nUsage: {}", misuse.what, usageOf(command))};
    }
}

/// The same as one object on standard output, whatever comes of it.
ExitStatus performForScript(const Command& command, const QCommandLineParser& options,
                            std::istream& in, std::ostream& out) {
    std::ostringstream said;
    std::ostringstream complaints;
    QJsonObject result;
    const ExitStatus status = guarded(
        complaints, [&] { return perform(command, options, in, said, complaints, &result); });
    out << textOf({std::string(command.name), status, said.str(), complaints.str(), result});
    return status;
}

void addOptions(QCommandLineParser& parser, std::string_view options) {
    for (QString name : toParser(std::string(options)).split(' ', Qt::SkipEmptyParts)) {
        const bool takesValue = name.endsWith('=');
        name.chop(takesValue ? 1 : 0);
        parser.addOption({name, "", takesValue ? "VALUE" : ""});
    }
}

ExitStatus run(const Command& command, const QStringList& given, std::istream& in,
               std::ostream& out, std::ostream& complaints) {
    QCommandLineParser options;
    options.addHelpOption();
    options.addOption({"json", ""});
    addOptions(options, command.options);
    options.parse(given);
    if (options.isSet("help")) {
        out << fmt::format("Usage: {}\n\n{}\n", usageOf(command), command.help);
        return ExitStatus::Done;
    }
    return options.isSet("json") ? performForScript(command, options, in, out)
                                 : perform(command, options, in, out, complaints, nullptr);
}

ExitStatus dispatch(const std::vector<std::string>& words, std::istream& in, std::ostream& out,
                    std::ostream& complaints) {
    if (words.empty()) {
        throw Misuse{"A command is missing."};
    }
    if (words[0] == "--help" || words[0] == "-h") {
        out << help();
        return ExitStatus::Done;
    }
    if (words[0] == "--version") {
        out << fmt::format("vireo-district {}\n", files::installation().version);
        return ExitStatus::Done;
    }
    const auto command = std::ranges::find(commands(), words[0], &Command::name);
    if (command == commands().end()) {
        throw Misuse{fmt::format("Unknown command \"{}\".", words[0])};
    }
    QStringList given;
    std::ranges::transform(words, std::back_inserter(given), toParser);
    return run(*command, given, in, out, complaints);
}

}  // namespace

ExitStatus runCommand(const std::vector<std::string>& words, std::istream& in, std::ostream& out,
                      std::ostream& complaints) noexcept {
    return guarded(complaints, [&] { return dispatch(words, in, out, complaints); });
}

}  // namespace tools::district
