#include "tools/district/copy/copydistrict.h"

#include <memory>

#include <fmt/format.h>

#include "data/schema/announcing.h"
#include "platform/base/notcopied.h"
#include "platform/files/installation.h"
#include "platform/store/base/copying.h"
#include "platform/store/base/location.h"
#include "platform/store/open/open.h"
#include "platform/store/open/standstill.h"
#include "tools/district/base/refuse.h"
#include "tools/district/make/companions.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

using Databases = std::vector<std::unique_ptr<store::Database>>;

Databases openAll(const Folders& folders) {
    std::vector<std::string> paths;
    paths.reserve(data::AllDatabaseFiles.size());
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        paths.push_back(folders.database(file).string());
    }
    return store::openAtOneMoment(paths);
}

/// The copies as they are made, which are removed again unless all goes well.
class Copies : private base::NotCopied {
public:
    explicit Copies(const Folders& folders) : folders_(folders) {}
    ~Copies() {
        if (!isDone_) {
            remove();
        }
    }

    std::unique_ptr<store::Database> make(data::DatabaseFile file) {
        const std::string path = folders_.database(file).string();
        auto made = store::createFile(path);
        made_.push_back(path);
        return made;
    }
    void keep() { isDone_ = true; }

private:
    void remove() const {
        for (const std::string& path : made_) {
            try {
                store::removeFile(path);
            } catch (const store::StoreError&) {  // the fault that led here is told
            }
        }
    }

    const Folders& folders_;
    std::vector<std::string> made_;
    bool isDone_ = false;
};

/// Copies all tables of one database, the indexes last.
std::int64_t fill(store::Database& from, store::Database& to, data::DatabaseFile file,
                  Progress& progress) {
    const auto& tables = from.catalog().tables();
    progress.begin(fmt::format("Copying {}", data::fileName(file)),
                   static_cast<std::int64_t>(tables.size()));
    std::int64_t rows = 0;
    to.setDurability(store::Durability::Crash);
    to.begin();
    to.setMark(from.mark());
    for (const store::Table& table : tables) {
        store::Table bare = table;
        bare.indexes.clear();
        to.create(bare);
        rows += store::copyRows(from, table, to);
        progress.step();
    }
    for (const store::Table& table : tables) {
        to.createIndexes(table);
    }
    data::announceRuns(to, file);
    to.commit();
    to.checkpoint();
    return rows;
}

void compare(store::Database& from, store::Database& to, data::DatabaseFile file,
             Progress& progress) {
    const auto& tables = from.catalog().tables();
    progress.begin(fmt::format("Comparing {}", data::fileName(file)),
                   static_cast<std::int64_t>(tables.size()));
    for (const store::Table& table : tables) {
        if (const std::string difference = store::differenceOf(from, to, table);
            !difference.empty()) {
            refuse(fmt::format("The copy of {} is not like the original: {}.", data::fileName(file),
                               difference));
        }
        progress.step();
    }
}

CopyOutcome copyFiles(const Folders& from, const Folders& to, Progress& progress) {
    const Databases open = openAll(from);
    std::vector<store::Database*> originals;
    originals.reserve(open.size());
    for (const auto& database : open) {
        originals.push_back(database.get());
    }
    return copyDatabases(originals, to, progress);
}

}  // namespace

CopyOutcome copyDatabases(const std::vector<store::Database*>& originals, const Folders& to,
                          Progress& progress) {
    Copies copies(to);
    CopyOutcome outcome;
    std::size_t place = 0;
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        store::Database& original = *originals[place++];
        const auto copy = copies.make(file);
        outcome.rows += fill(original, *copy, file, progress);
        outcome.tables += static_cast<std::int64_t>(original.catalog().tables().size());
        compare(original, *copy, file, progress);
    }
    copies.keep();
    return outcome;
}

CopyOutcome copyDistrict(const std::string& from, const std::string& to, Progress& progress) {
    const Folders original = foldersOf(from);
    if (store::isServer(to)) {
        return copyFiles(original, foldersOf(to), progress);
    }
    FolderInTheMaking folder{fs::path(to)};
    const CopyOutcome outcome = copyFiles(original, folder.folders(), progress);
    writeSettings(folder.folders(), folder.wanted());
    linkCompanions(files::installation().companions, folder.folders().programs());
    folder.finish();
    return outcome;
}

void connectFolder(const fs::path& folder, const std::string& server) {
    if (!store::isServer(server)) {
        refuse(fmt::format("\"{}\" is no place on a server.", server));
    }
    const Folders there = foldersOf(server);
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        static_cast<void>(store::open(there.database(file).string()));
    }
    FolderInTheMaking made(folder);
    fs::remove_all(made.folders().data());
    fs::remove(made.folders().common());
    fs::create_directories(made.folders().programs() / "RouteRpts");
    writeSettings(made.folders(),
                  {made.wanted().root, Folders::Places{server, made.wanted().programs(), server}});
    linkCompanions(files::installation().companions, made.folders().programs());
    made.finish();
}

}  // namespace tools::district
