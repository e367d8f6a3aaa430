#include "tools/district/base/newfolder.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <fmt/chrono.h>
#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/store/base/location.h"
#include "tools/district/base/refuse.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

void requireFree(const fs::path& wanted) {
    std::error_code error;
    if (!fs::exists(wanted, error)) {
        return;
    }
    if (!fs::is_directory(wanted, error)) {
        refuse(fmt::format("{} is a file, not a folder.", wanted.string()));
    }
    if (!fs::is_empty(wanted, error) || error) {
        refuse(fmt::format("The folder {} is not empty. Choose another one, or a new one.",
                           wanted.string()));
    }
}

constexpr std::string_view Making = ".making-";

bool isInUse(const fs::path& folder) {
    try {
        const files::FolderLock lock(folder.string(), std::chrono::milliseconds(0));
        return false;
    } catch (const base::RunTimeError&) {
        return true;
    }
}

/// Those that killed programs left.
void removeAbandoned(const fs::path& wanted) {
    std::error_code error;
    const std::string beginning = wanted.filename().string() + std::string(Making);
    for (const auto& entry : fs::directory_iterator(wanted.parent_path(), error)) {
        if (entry.path().filename().string().starts_with(beginning) && entry.is_directory(error) &&
            !isInUse(entry.path())) {
            fs::remove_all(entry.path(), error);
        }
    }
}

fs::path makeBeside(const fs::path& wanted) {
    std::error_code error;
    fs::create_directories(wanted.parent_path(), error);
    std::string name = wanted.string() + std::string(Making) + "XXXXXX";
    if (error || ::mkdtemp(name.data()) == nullptr) {
        refuse(fmt::format("The folder {} cannot be made: {}.", wanted.string(),
                           error ? error.message() : std::strerror(errno)));
    }
    return name;
}

}  // namespace

fs::path timedName(const fs::path& folder, std::string_view start, std::string_view ending) {
    const std::string name =
        fmt::format("{}-{:%Y-%m-%d-%H%M%S}", start, fmt::localtime(std::time(nullptr)));
    fs::path path = folder / fmt::format("{}{}", name, ending);
    for (int number = 2; fs::exists(path); ++number) {
        path = folder / fmt::format("{}-{}{}", name, number, ending);
    }
    return path;
}

fs::path tidied(const fs::path& path) {
    if (store::isServer(path.string())) {
        return path;
    }
    const fs::path whole = fs::absolute(path).lexically_normal();
    return whole.has_filename() ? whole : whole.parent_path();
}

NewFolder::NewFolder(const fs::path& wanted, Place place) : wanted_(tidied(wanted)), place_(place) {
    if (place == Place::Free) {
        requireFree(wanted_);
    }
    removeAbandoned(wanted_);
    making_ = makeBeside(wanted_);
    inUse_ = std::make_unique<files::FolderLock>(making_.string(), std::chrono::seconds(1));
}

NewFolder::~NewFolder() {
    if (!finished_) {
        std::error_code ignored;
        fs::remove_all(making_, ignored);
    }
}

void NewFolder::finish() {
    const unsigned flags = place_ == Place::Replaced ? RENAME_EXCHANGE : 0;
    if (::renameat2(AT_FDCWD, making_.c_str(), AT_FDCWD, wanted_.c_str(), flags) != 0) {
        refuse(fmt::format("What was made cannot be moved to {}: {}.", wanted_.string(),
                           std::strerror(errno)));
    }
    finished_ = place_ == Place::Free;
}

}  // namespace tools::district
