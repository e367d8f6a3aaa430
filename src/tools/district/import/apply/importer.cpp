#include "tools/district/import/apply/importer.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <system_error>

#include <fmt/format.h>

#include "data/schema/version.h"
#include "platform/base/notcopied.h"
#include "platform/base/text.h"
#include "platform/files/files.h"
#include "platform/store/open/open.h"
#include "platform/table/csv.h"
#include "tools/district/base/refuse.h"
#include "tools/district/import/apply/rowspool.h"
#include "tools/district/import/apply/runfinish.h"
#include "tools/district/import/apply/tablewriter.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;
using data::DatabaseFile;

constexpr int MostAttempts = 3;

/// Files whose rows nothing in a later one names yet when it is killed in between.
constexpr std::array CommitOrder = {DatabaseFile::RouteWrk,  DatabaseFile::Trip,
                                    DatabaseFile::QDSC,      DatabaseFile::Routing,
                                    DatabaseFile::DeadCross, DatabaseFile::VIREORpt};

bool isCsv(const fs::path& path) {
    const std::string extension = base::lowered(path.extension().string());
    return extension == ".csv" || extension == ".txt" || extension == ".tsv";
}

std::vector<fs::path> filesOf(const std::vector<fs::path>& sources) {
    std::vector<fs::path> files;
    for (const fs::path& source : sources) {
        if (!fs::exists(source)) {
            refuse(fmt::format("There is no file {}.", source.string()));
        }
        if (!fs::is_directory(source)) {
            files.push_back(source);
            continue;
        }
        for (const auto& entry : fs::directory_iterator(source)) {
            if (entry.is_regular_file() && isCsv(entry.path())) {
                files.push_back(entry.path());
            }
        }
    }
    std::ranges::sort(files);
    return files;
}

std::string namesOfKinds() {
    return base::joined(practicalKinds(), ", ",
                        [](const auto& kind) { return kind.name + ".csv"; });
}

void addSources(const fs::path& file, bool isNamed, const std::vector<MapSection>& map,
                std::vector<ImportSource>& sources) {
    const std::size_t before = sources.size();
    for (const MapSection& section : map) {
        if (base::equalsNoCase(section.source, file.filename().string()) ||
            base::equalsNoCase(section.source, file.stem().string())) {
            sources.push_back({file, section.kind, section});
        }
    }
    if (sources.size() > before) {
        return;
    }
    if (const FileKind* kind = kindNamed(file.stem().string())) {
        sources.push_back({file, kind, {}});
    } else if (isNamed) {
        refuse(
            fmt::format("{} is none of {}, and no table of the district. A map file can say what "
                        "it is; --sketch-map writes a first one.",
                        file.filename().string(), namesOfKinds()));
    }
}

/// In the order in which they need one another; tables and practical files do not go together,
/// because they tell rows apart in different ways.
std::vector<ImportSource> sourcesOf(const ImportOptions& options) {
    const auto map = options.map.empty() ? std::vector<MapSection>()
                                         : readMap(files::read(options.map.string()));
    std::vector<ImportSource> sources;
    for (const fs::path& file : filesOf(options.sources)) {
        const bool isNamed = std::ranges::find(options.sources, file) != options.sources.end();
        addSources(file, isNamed, map, sources);
    }
    if (sources.empty()) {
        refuse(fmt::format("None of the files is one that can be imported: {}, or a table.",
                           namesOfKinds()));
    }
    const auto isTable = [](const ImportSource& source) { return source.kind->isTable; };
    if (std::ranges::any_of(sources, isTable) && !std::ranges::all_of(sources, isTable)) {
        refuse(
            "Files of whole tables and others cannot be imported together; import the tables "
            "first, by themselves.");
    }
    std::ranges::stable_sort(sources, {}, [](const ImportSource& source) {
        return source.kind->isTable ? nullptr : source.kind;  // the kinds stand in one array
    });
    return sources;
}

/// Raises base::RunTimeError for a district of another version.
OpenDistrict openDistrict(const Folders& folders) {
    OpenDistrict district;
    std::vector<data::FoundFile> found;
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        const std::string path = folders.database(file).string();
        district[file] = store::open(path);
        found.push_back(
            data::lookAt(file, path, district[file]->mark(), district[file]->catalog()));
    }
    if (const auto complaint = data::versionComplaint(found, folders.root.string());
        !complaint.empty()) {
        refuse(complaint);
    }
    return district;
}

/// The write locks of all files that an import writes to. What is not committed is undone.
class WriteLocks : private base::NotCopied {
public:
    WriteLocks(const OpenDistrict& district, const std::set<DatabaseFile>& files) {
        for (const DatabaseFile file : CommitOrder) {
            if (files.contains(file)) {
                district.at(file)->begin();
                locked_.push_back(district.at(file).get());
            }
        }
    }
    ~WriteLocks() {
        for (store::Database* file : locked_) {
            try {
                if (file->inTransaction()) {
                    file->rollback();
                }
            } catch (const store::StoreError&) {  // closing the file rolls back, too
            }
        }
    }

    void commit() {
        for (store::Database* file : locked_) {
            file->commit();
        }
        for (store::Database* file : locked_) {
            file->checkpoint();
        }
    }

private:
    std::vector<store::Database*> locked_;
};

/// Numbers that change as soon as another program has written.
std::vector<std::int64_t> marksOf(const OpenDistrict& district) {
    std::vector<std::int64_t> marks;
    for (const auto& [file, database] : district) {
        marks.push_back(database->changeMark());
    }
    return marks;
}

/// The lines that were refused, as a file that can be mended and imported again.
class RejectedFile {
public:
    explicit RejectedFile(fs::path path) : path_(std::move(path)) {}

    void add(const Rejection& rejection) {
        if (path_.empty()) {
            return;
        }
        if (!file_.is_open()) {
            writePrivateFile(path_, "");
            file_.open(path_, std::ios::binary);
            row({"file", "line", "column", "reason", "text"});
        }
        row({rejection.file, std::to_string(rejection.line), rejection.column, rejection.reason,
             rejection.text});
    }

    void close() {
        if (file_.is_open()) {
            file_.close();
            if (!file_) {
                refuse(fmt::format("{} cannot be written.", path_.string()));
            }
        }
    }

private:
    void row(const std::vector<std::string>& cells) {
        for (const std::string& cell : cells) {
            csv_.text(cell);
        }
        csv_.endRow();
    }

    fs::path path_;
    std::ofstream file_;
    table::CsvWriter csv_{file_};
};

std::set<DatabaseFile> filesToLock(const Comparison& comparison) {
    std::set<DatabaseFile> files = comparison.filesWritten();
    if (files.contains(DatabaseFile::Routing)) {
        files.insert(DatabaseFile::RouteWrk);  // names the activity of the run log
    }
    return files;
}

class Import {
public:
    Import(const ImportOptions& options, Progress& progress)
        : options_(options),
          progress_(progress),
          sources_(sourcesOf(options)),
          district_(openDistrict(options.folders)),
          comparison_(sources_, options.rules, district_) {
        refuseOtherReplacements();
    }

    ImportResult run() {
        if (!options_.apply) {
            return {compare(nullptr), false};
        }
        for (int attempt = 1; attempt < MostAttempts; ++attempt) {
            const auto marks = marksOf(district_);
            RowSpool spool;
            ImportOutcome outcome = compare(&spool);
            const auto locks = lock();
            if (marksOf(district_) == marks) {
                return write(spool, std::move(outcome), *locks);
            }
            comparison_.forgetDistrict();
        }
        const auto locks = lock();  // they wait now: a busy office would never let it through
        RowSpool spool;
        ImportOutcome outcome = compare(&spool);
        return write(spool, std::move(outcome), *locks);
    }

private:
    ImportOutcome compare(RowSink* sink) {
        RejectedFile rejected(options_.rejected);
        ImportOutcome outcome = comparison_.read(
            sink, [&](const Rejection& one) { rejected.add(one); }, progress_);
        rejected.close();
        return outcome;
    }

    [[nodiscard]] std::unique_ptr<WriteLocks> lock() {
        progress_.begin("Waiting for other programs", 0);
        return std::make_unique<WriteLocks>(district_, filesToLock(comparison_));
    }

    /// Runs that are what the sources say already are known from now on, too.
    ImportResult write(RowSpool& spool, ImportOutcome outcome, WriteLocks& locks) {
        const bool hasChanges = outcome.hasChanges();
        if (hasChanges) {
            const ImportAudit audit{options_.user, options_.now, sources_.front().kind->isTable};
            TableWriter writer(district_, audit);
            spool.writeTo(writer, progress_);
            progress_.begin("Finishing", 0);
            finishRuns(comparison_, outcome, district_, audit);
        }
        comparison_.runs().record();
        locks.commit();
        return {std::move(outcome), hasChanges};
    }

    void refuseOtherReplacements() const {
        for (const std::string& table : options_.rules.replaced) {
            const bool isBrought = std::ranges::any_of(sources_, [&](const ImportSource& source) {
                return source.kind->rows.front().table == table;
            });
            if (!isBrought) {
                refuse(fmt::format("--replace {}: none of the files brings the rows of this table.",
                                   table));
            }
        }
    }

    const ImportOptions& options_;
    Progress& progress_;
    std::vector<ImportSource> sources_;
    OpenDistrict district_;
    Comparison comparison_;
};

}  // namespace

ImportResult importInto(const ImportOptions& options, Progress& progress) {
    return Import(options, progress).run();
}

PrivateFolder::PrivateFolder() {
    std::string name = (fs::temp_directory_path() / "vireo-import-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        refuse(fmt::format("The folder {} cannot be made.", name));
    }
    path_ = name;
}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string sketchMaps(const std::vector<fs::path>& sources) {
    std::string text =
        "# Which column of each file becomes which of the district's. \"field = column\", \"#3\" "
        "for "
        "the third,\n# \"a text\" for the same in every row; \"field: theirs = ours\" changes "
        "values.\n";
    for (const fs::path& path : filesOf(sources)) {
        std::ifstream file(path, std::ios::binary);
        CsvReader reader(file, shapeOf(file));
        if (reader.next() != CsvReader::Item::Record) {
            refuse(fmt::format("{}: the first line must name the columns.", path.string()));
        }
        const FileKind* kind = kindNamed(path.stem().string());
        text += '\n' + sketchMap(path.filename().string(),
                                 kind == nullptr ? likeliestKind(reader.record()) : *kind,
                                 reader.record());
    }
    return text;
}

}  // namespace tools::district
