#include "tools/district/backup/restore.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files/files.h"
#include "platform/ini/ini.h"
#include "platform/store/base/database.h"
#include "platform/store/base/location.h"
#include "tools/district/backup/archive.h"
#include "tools/district/backup/serverdump.h"
#include "tools/district/base/folders.h"
#include "tools/district/base/newfolder.h"
#include "tools/district/base/openalone.h"
#include "tools/district/base/refuse.h"
#include "tools/district/place/centre.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

using data::DatabaseFile;

constexpr std::array Beside{"", "-wal"};

/// The district that stands in a folder already, if one does.
std::optional<Folders> districtIn(const fs::path& folder) {
    if (!fs::is_directory(folder)) {
        return std::nullopt;
    }
    const Folders folders = foldersOf(folder);
    const bool isThere = std::ranges::any_of(data::AllDatabaseFiles, [&](DatabaseFile file) {
        return fs::exists(folders.database(file));
    });
    if (!isThere) {
        return std::nullopt;
    }
    if (folders.elsewhere) {
        refuse(
            fmt::format("The settings of {} name folders elsewhere. Restore to a new folder, "
                        "and copy its files to where the others are.",
                        folder.string()));
    }
    return folders;
}

/// Keeps everybody out of the files of a district, as far as they can be opened: a damaged one is
/// why somebody restores.
std::vector<std::unique_ptr<store::Database>> shut(const Folders& folders) {
    constexpr std::array Harmless{store::Fault::Missing, store::Fault::NotADatabase,
                                  store::Fault::OtherKind, store::Fault::Damaged};
    std::vector<std::unique_ptr<store::Database>> files;
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        try {
            files.push_back(openAlone(folders.database(file).string()));
            files.back()->checkpoint();
        } catch (const store::StoreError& error) {
            if (std::ranges::find(Harmless, error.fault()) == Harmless.end()) {
                throw;
            }
        }
    }
    return files;
}

/// Where each file of a back-up goes, as far as it is one of a district.
class Targets {
public:
    explicit Targets(const Folders& making) : root_(making.root) {
        wanted_[SettingsInArchive] = making.settings();
        for (const DatabaseFile one : data::AllDatabaseFiles) {
            const fs::path path = making.database(one);
            wanted_[path.lexically_relative(root_).string()] = path;
        }
    }

    fs::path operator()(const std::string& name) {
        if (const auto found = wanted_.find(name); found != wanted_.end()) {
            return found->second;
        }
        if (!isNameBeside(name)) {
            return {};
        }
        beside_.emplace_back(name);
        fs::create_directories((root_ / name).parent_path());
        return root_ / name;
    }

    void requireAll(const fs::path& archive) const {
        for (const auto& [name, path] : wanted_) {
            if (name != SettingsInArchive && !fs::exists(path)) {
                refuse(fmt::format("{} holds no {}; it is no back-up of a district.",
                                   archive.string(), name));
            }
        }
    }

    /// The names of those that are neither databases nor settings.
    [[nodiscard]] const std::vector<fs::path>& beside() const { return beside_; }

private:
    fs::path root_;
    std::map<std::string, fs::path> wanted_;
    std::vector<fs::path> beside_;
};

std::vector<fs::path> unpack(const fs::path& file, const Folders& making, Progress& progress) {
    std::int64_t megabytes = 0;
    std::int64_t bytes = 0;
    progress.begin("Unpacking", 0);
    Targets targets(making);
    unpackArchive(file, std::ref(targets), [&](std::int64_t more) {
        bytes += more;
        if (constexpr std::int64_t Megabyte = 1000000; bytes / Megabyte != megabytes) {
            megabytes = bytes / Megabyte;
            progress.begin(fmt::format("Unpacked {} MB", megabytes), 0);
        }
    });
    targets.requireAll(file);
    return targets.beside();
}

/// A street file that was named with a folder of the former district is one of the new one's.
std::string withOwnStreets(const Folders& wanted, const std::string& settings) {
    const std::string streets = ini::valueIn(settings, "District", "Streets", "");
    for (const auto& [key, folder] : {std::pair{"datapath", wanted.data()},
                                      {"progpath", wanted.programs()},
                                      {"VIREOpath", wanted.common()}}) {
        const std::string former = ini::valueIn(settings, "AppPaths", key, "");
        if (former.starts_with('/') && streets.starts_with(former)) {
            return withSetting(settings, "District", "Streets",
                               (folder / streets.substr(former.size())).string());
        }
    }
    return settings;
}

void nameOwnFolders(const FolderInTheMaking& making) {
    const fs::path settings = making.folders().settings();
    const std::string text =
        fs::exists(settings) ? ini::decoded(files::read(settings.string())) : std::string();
    if (ini::valueIn(text, "AppPaths", "datapath", "").empty()) {
        writeSettings(making.folders(), making.wanted());
    } else {
        const auto own = withOwnStreets(making.wanted(), text);
        writePrivateFile(settings, settingsFor(making.wanted(), own));
    }
}

/// Who owns it and who may read it, as far as this account may say so.
void makeLike(const fs::path& former, const fs::path& made) {
    constexpr mode_t Permissions = 07777;
    struct stat status {};
    if (::stat(former.c_str(), &status) == 0) {
        [[maybe_unused]] const int given = ::chown(made.c_str(), status.st_uid, status.st_gid);
        ::chmod(made.c_str(), status.st_mode & Permissions);
    }
}

/// Files are linked, not copied: they are the same afterwards, and it takes no time.
void carryOver(const fs::directory_entry& entry, const fs::path& to) {
    if (entry.is_symlink()) {
        fs::copy_symlink(entry.path(), to);
    } else if (entry.is_directory()) {
        fs::create_directories(to);
        makeLike(entry.path(), to);
    } else if (entry.is_regular_file()) {
        fs::create_hard_link(entry.path(), to);
    }
}

/// What a restored district brings with it.
std::vector<fs::path> replacedFiles(const Folders& folders, const std::vector<fs::path>& beside) {
    std::vector<fs::path> files{folders.settings()};
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        for (const char* added : Beside) {
            files.emplace_back(folders.database(file).string() + added);
        }
    }
    std::ranges::transform(beside, std::back_inserter(files),
                           [&](const fs::path& name) { return folders.root / name; });
    return files;
}

void carryOverAll(const Folders& from, const Folders& to, const std::vector<fs::path>& beside) {
    const auto replaced = replacedFiles(from, beside);
    for (const auto& entry : fs::recursive_directory_iterator(from.root)) {
        const bool isShared =
            entry.path().string().ends_with("-shm");  // made anew by whoever opens
        if (!isShared && std::ranges::find(replaced, entry.path()) == replaced.end()) {
            carryOver(entry, to.root / entry.path().lexically_relative(from.root));
        }
    }
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        makeLike(from.database(file), to.database(file));
    }
    for (const fs::path& name : beside) {
        const bool wasThere = fs::exists(from.root / name);
        makeLike(wasThere ? from.root / name : from.database(DatabaseFile::Routing),
                 to.root / name);
    }
    makeLike(from.settings(), to.settings());
    makeLike(from.root, to.root);
}

/// Under a name that nothing has yet; of its owner only.
std::string keepFormer(const Folders& from, const Folders& to,
                       const std::vector<fs::path>& beside) {
    std::string name = timedName(from.root, "backup").filename().string();
    for (const fs::path& file : replacedFiles(from, beside)) {
        const fs::path kept = to.root / name / file.lexically_relative(from.root);
        fs::create_directories(kept.parent_path());
        if (fs::exists(file) && fs::file_size(file) > 0) {  // a log is empty mostly
            fs::create_hard_link(file, kept);
        }
    }
    fs::permissions(to.root / name, fs::perms::owner_all);
    return name;
}

/// Everything is on the disk before the district takes its place.
void sync(const fs::path& folder) {
    const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool isDone = handle >= 0 && ::syncfs(handle) == 0;
    ::close(handle);
    if (!isDone) {
        refuse(fmt::format("{} cannot be written: {}.", folder.string(), std::strerror(errno)));
    }
}

std::optional<fs::path> restoreFiles(const fs::path& file, const fs::path& folder,
                                     Progress& progress) {
    using Place = NewFolder::Place;
    const auto former = districtIn(folder);
    const auto keptShut = former ? shut(*former) : decltype(shut(*former)){};
    FolderInTheMaking making(folder, former ? Place::Replaced : Place::Free);
    const auto beside = unpack(file, making.folders(), progress);
    nameOwnFolders(making);
    std::optional<fs::path> kept;
    if (former) {
        kept = making.wanted().root / keepFormer(*former, making.folders(), beside);
        carryOverAll(*former, making.folders(), beside);
    }
    sync(making.folders().root);
    making.finish();
    return kept;
}

/// Beside the settings that name the server, otherwise where the command was given.
fs::path formerOnServer(const Folders& folders) {
    const fs::path beside =
        store::isServer(folders.root.string()) ? fs::current_path() : folders.root;
    return timedName(beside, "backup", ".dump");
}

bool isOnServer(const fs::path& target) {
    return store::isServer(target.string()) ||
           (fs::is_directory(target) && foldersOf(target).isOnServer());
}

}  // namespace

std::optional<fs::path> restoreDistrict(const fs::path& file, const fs::path& target,
                                        const std::function<bool()>& mayReplace,
                                        Progress& progress) {
    if (!fs::exists(file)) {
        refuse(fmt::format("There is no file {}.", file.string()));
    }
    const bool isDump = isServerDump(file);
    if (isDump != isOnServer(target)) {
        refuse(isDump
                   ? fmt::format("{} is the back-up of a district on a server: name a place there, "
                                 "postgresql://owner@server/database/, and not {}.",
                                 file.string(), target.string())
                   : fmt::format("{} is no back-up of a district on a server. One of files is "
                                 "restored to a folder, and vireo-district copy moves it there.",
                                 file.string()));
    }
    if (!isDump) {
        return restoreFiles(file, target, progress);
    }
    const Folders folders = foldersOf(target);
    const fs::path former = formerOnServer(folders);
    return restoreDatabases(file, folders, mayReplace, former, progress) ? std::optional(former)
                                                                         : std::nullopt;
}

}  // namespace tools::district
