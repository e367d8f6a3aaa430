#include "tools/district/upgrade/upgrade.h"

#include <algorithm>
#include <memory>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "data/schema/announcing.h"
#include "data/schema/version.h"
#include "platform/base/error.h"
#include "platform/store/base/database.h"
#include "platform/store/base/location.h"
#include "platform/store/open/open.h"
#include "tools/district/base/newfolder.h"
#include "tools/district/base/openalone.h"
#include "tools/district/copy/copydistrict.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

using data::DatabaseFile;

constexpr std::string_view BackupName = "backup";

[[noreturn]] void refuse(const std::string& why) {
    throw base::RunTimeError(base::errors::PermissionDenied, why);
}

using OpenFile = std::unique_ptr<store::Database> (*)(const std::string& path);

std::unique_ptr<store::Database> openBesideOthers(const std::string& path) {
    return store::open(path);
}

/// All six files, open.
class OpenFiles {
public:
    OpenFiles(const Folders& folders, OpenFile open) : folders_(folders) {
        for (const DatabaseFile file : data::AllDatabaseFiles) {
            const std::string path = folders.database(file).string();
            databases_.push_back(open(path));
            const auto& database = *databases_.back();
            found_.push_back(data::lookAt(file, path, database.mark(), database.catalog()));
        }
    }

    [[nodiscard]] const std::vector<data::FoundFile>& found() const { return found_; }
    [[nodiscard]] store::Database& database(std::size_t i) const { return *databases_[i]; }
    [[nodiscard]] std::vector<store::Database*> databases() const {
        std::vector<store::Database*> all;
        all.reserve(databases_.size());
        for (const auto& one : databases_) {
            all.push_back(one.get());
        }
        return all;
    }

    /// Refuses files that are newer or something else.
    [[nodiscard]] bool needUpgrade() const {
        if (anyIs(data::Age::Foreign) || anyIs(data::Age::Newer)) {
            refuse(data::versionComplaint(found_, folders_.root.string()));
        }
        return anyIs(data::Age::Older);
    }

private:
    [[nodiscard]] bool anyIs(data::Age age) const {
        return std::ranges::find(found_, age, &data::FoundFile::age) != found_.end();
    }

    const Folders& folders_;
    std::vector<std::unique_ptr<store::Database>> databases_;
    std::vector<data::FoundFile> found_;
};

/// Those that a kill left behind.
void removeUnfinished(const fs::path& beside) {
    const std::string start = fmt::format("{}-", BackupName);
    for (const auto& entry : fs::directory_iterator(beside)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with(start) && name.find(".making-") != std::string::npos) {
            fs::remove_all(entry.path());
        }
    }
}

/// Under a name that nothing beside the data folder has yet.
fs::path newBackup(const Folders& folders) {
    const bool hasFolder = !store::isServer(folders.root.string());
    const fs::path beside = !folders.isOnServer() ? folders.data().parent_path()
                            : hasFolder           ? folders.root
                                                  : fs::current_path();
    removeUnfinished(beside);
    return timedName(beside, BackupName);
}

/// A back-up that was broken off is removed again and never stands under its name.
fs::path backUp(const Folders& folders, const OpenFiles& files, Progress& progress) {
    const Folders wanted{newBackup(folders)};
    FolderInTheMaking making(wanted.root);
    if (folders.isOnServer()) {
        copyDatabases(files.databases(), making.folders(), progress);
        making.finish();
        return wanted.root;
    }
    for (std::size_t i = 0; i < files.found().size(); ++i) {
        const DatabaseFile file = files.found()[i].file;
        progress.begin(fmt::format("Backing up {}", data::fileName(file)), 0);
        files.database(i).copyTo(
            making.folders().database(file).string(),
            [&](std::int64_t done, std::int64_t all) { progress.reach(done, all); });
    }
    making.finish();
    return wanted.root;
}

/// What was done to one file, in words.
std::vector<std::string> bringUp(store::Database& database, const data::FoundFile& found) {
    std::vector<std::string> deeds;
    database.begin();
    for (const store::Table& table : data::tablesOf(found.file)) {
        for (const std::string& added : database.complete(table)) {
            deeds.push_back("added " + added);
        }
    }
    for (const data::UpgradeStep& step : data::upgradeSteps()) {
        if (step.file == found.file && step.number > found.mark.version) {
            std::int64_t changed = 0;
            for (const std::string& statement : step.statements) {
                changed += database.execute(statement);
            }
            if (changed > 0) {
                deeds.push_back(fmt::format("step {} {}", step.number, step.what));
            }
        }
    }
    data::announceRuns(database, found.file);
    database.setMark(data::markOf(found.file));
    database.commit();
    return deeds;
}

/// For a district that came to its server before changes were told there. Planners may be at work.
void announceWhereMissing(const OpenFiles& files,
                          const std::function<void(const std::string&)>& tell) {
    for (std::size_t i = 0; i < files.found().size(); ++i) {
        const DatabaseFile file = files.found()[i].file;
        if (!data::areRunsAnnounced(files.database(i), file)) {
            data::announceRuns(files.database(i), file);
            tell(fmt::format("{}: what a planner changes is told to the others from now on.",
                             data::fileName(file)));
        }
    }
}

}  // namespace

void upgradeDistrict(const Folders& folders, Progress& progress,
                     const std::function<void(const std::string&)>& tell) {
    if (const OpenFiles files(folders, openBesideOthers); !files.needUpgrade()) {
        return announceWhereMissing(files, tell);
    }
    const OpenFiles files(folders, openAlone);
    if (!files.needUpgrade()) {
        return;
    }
    tell(fmt::format("The files as they were are in {}.",
                     backUp(folders, files, progress).string()));
    for (std::size_t i = 0; i < files.found().size(); ++i) {
        const data::FoundFile& found = files.found()[i];
        if (found.age == data::Age::Older) {
            progress.begin(fmt::format("Upgrading {}", data::fileName(found.file)), 0);
            const auto deeds = bringUp(files.database(i), found);
            tell(fmt::format("{}: version {}{}{}.", data::fileName(found.file),
                             data::currentVersion(), deeds.empty() ? "" : "; ",
                             fmt::join(deeds, ", ")));
        }
    }
}

}  // namespace tools::district
