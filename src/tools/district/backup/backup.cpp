#include "tools/district/backup/backup.h"

#include <algorithm>
#include <system_error>

#include <fmt/format.h>

#include "platform/files/files.h"
#include "platform/store/open/open.h"
#include "platform/store/open/standstill.h"
#include "tools/district/backup/archive.h"
#include "tools/district/backup/newfile.h"
#include "tools/district/backup/serverdump.h"
#include "tools/district/base/newfolder.h"
#include "tools/district/base/refuse.h"
#include "tools/district/place/streetsof.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

using data::DatabaseFile;

fs::path nameNow(const Folders& folders, const fs::path& target) {
    return folders.isOnServer() ? timedName(target, nameOnServer(folders), ".dump")
                                : timedName(target, folders.root.filename().string(), ".tar.zst");
}

fs::path fileOf(const BackupOptions& options) {
    const fs::path target = fs::absolute(options.target).lexically_normal();
    fs::path file = fs::is_directory(target) ? nameNow(options.folders, target) : target;
    if (fs::exists(file)) {
        refuse(fmt::format("There is a file {} already. Choose another name.", file.string()));
    }
    if (!fs::is_directory(file.parent_path())) {
        refuse(fmt::format("There is no folder {}.", file.parent_path().string()));
    }
    return file;
}

void copyFiles(const Folders& from, const Folders& to, Progress& progress) {
    std::vector<std::string> paths;
    paths.reserve(std::size(data::AllDatabaseFiles));
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        paths.push_back(from.database(file).string());
    }
    progress.begin("Waiting for a moment at which nobody writes", 0);
    const auto databases = store::openAtOneMoment(paths);
    for (std::size_t i = 0; i < databases.size(); ++i) {
        const DatabaseFile file = data::AllDatabaseFiles[i];
        progress.begin(fmt::format("Copying {}", data::fileName(file)), 0);
        databases[i]->copyTo(to.database(file).string(), [&](std::int64_t done, std::int64_t all) {
            progress.reach(done, all);
        });
    }
}

/// A damaged file must not push older, sound back-ups out.
void requireSound(const Folders& copies, Progress& progress) {
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        progress.begin(fmt::format("Looking {} over", data::fileName(file)), 0);
        const auto damages = store::open(copies.database(file).string())->damages();
        if (!damages.empty()) {
            refuse(fmt::format("{} is damaged: {}. No back-up was made; restore an older one.",
                               data::fileName(file), damages.front()));
        }
    }
}

/// Where everything stands below the copies and in the archive.
std::vector<fs::path> namesOf(const Folders& copies, const std::vector<fs::path>& beside) {
    std::vector<fs::path> names;
    names.reserve(data::AllDatabaseFiles.size() + beside.size());
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        names.push_back(copies.database(file).lexically_relative(copies.root));
    }
    names.insert(names.end(), beside.begin(), beside.end());
    return names;
}

/// Copies what belongs to the district beside its databases; where it stands below the copies.
std::vector<fs::path> copyBeside(const Folders& from, const Folders& to,
                                 std::vector<fs::path>& leftOut) {
    std::vector<fs::path> names;
    const auto routing = store::open(to.database(DatabaseFile::Routing).string());
    for (const fs::path& file : filesBeside(from, *routing)) {
        std::error_code error;
        if (!fs::is_regular_file(file, error)) {
            continue;
        }
        if (const auto name = nameInArchive(from, file)) {
            fs::create_directories((to.root / *name).parent_path());
            files::copy(file.string(), (to.root / *name).string());
            names.push_back(*name);
        } else {
            leftOut.push_back(file);
        }
    }
    return names;
}

std::int64_t sizeOf(const fs::path& root, const std::vector<fs::path>& names) {
    std::int64_t size = 0;
    for (const fs::path& name : names) {
        size += static_cast<std::int64_t>(fs::file_size(root / name));
    }
    return size;
}

void pack(const fs::path& root, const std::vector<fs::path>& names, const std::string& settings,
          int handle, Progress& progress) {
    ArchiveWriter archive(handle);
    const std::int64_t all = sizeOf(root, names);
    std::int64_t done = 0;
    progress.begin("Packing", all);
    for (const fs::path& name : names) {
        archive.add(name.string(), root / name,
                    [&](std::int64_t bytes) { progress.reach(done += bytes, all); });
    }
    if (!settings.empty()) {
        archive.addText(SettingsInArchive, settings);
    }
    archive.finish();
}

std::vector<fs::path> removeOlder(const fs::path& made, std::size_t keep) {
    const std::string kind = kindOf(made.filename().string());
    std::vector<fs::path> older;
    for (const auto& entry : fs::directory_iterator(made.parent_path())) {
        if (entry.is_regular_file() && entry.path() != made &&
            kindOf(entry.path().filename().string()) == kind) {
            older.push_back(entry.path());
        }
    }
    std::ranges::sort(older, std::greater<>(),
                      [](const fs::path& one) { return fs::last_write_time(one); });
    older.erase(older.begin(),
                older.begin() + static_cast<std::ptrdiff_t>(std::min(keep - 1, older.size())));
    for (const fs::path& one : older) {
        fs::remove(one);
    }
    return older;
}

std::int64_t packFiles(const BackupOptions& options, BackupOutcome& outcome, Progress& progress) {
    const FolderInTheMaking copies(options.folders.data().parent_path() / "backup-copies");
    copyFiles(options.folders, copies.folders(), progress);
    requireSound(copies.folders(), progress);
    const fs::path settings = options.folders.settings();
    const std::string settingsText = fs::exists(settings) ? files::read(settings.string()) : "";
    const auto names =
        namesOf(copies.folders(), copyBeside(options.folders, copies.folders(), outcome.leftOut));
    NewFile file(outcome.file);
    pack(copies.folders().root, names, settingsText, file.handle(), progress);
    file.finish();
    return sizeOf(copies.folders().root, names);
}

std::int64_t packServer(const Folders& folders, const fs::path& target, Progress& progress) {
    // Says in plain words what is wrong with the server or its district.
    static_cast<void>(store::open(folders.database(DatabaseFile::Routing).string()));
    return dumpDatabases(folders, target, progress);
}

}  // namespace

BackupOutcome backUpDistrict(const BackupOptions& options, Progress& progress) {
    BackupOutcome outcome{.file = fileOf(options)};
    outcome.bytes = options.folders.isOnServer()
                        ? packServer(options.folders, outcome.file, progress)
                        : packFiles(options, outcome, progress);
    outcome.packedBytes = static_cast<std::int64_t>(fs::file_size(outcome.file));
    if (options.keep) {
        outcome.removed = removeOlder(outcome.file, *options.keep);
    }
    return outcome;
}

}  // namespace tools::district
