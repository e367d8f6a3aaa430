#include "platform/store/open/filepresence.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace store {

namespace {

namespace fs = std::filesystem;

constexpr mode_t ForReading = 0660;
constexpr std::size_t MostBytes = 1000;

/// Other accounts may do here what the folder above lets them.
mode_t rightsOf(const std::string& folder) {
    struct stat about {};
    return stat(folder.c_str(), &about) == 0 ? about.st_mode & 07777U : 0700U;
}

std::string contentsOf(int handle) {
    std::array<char, MostBytes> text{};
    const ssize_t count = pread(handle, text.data(), text.size(), 0);
    return {text.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
}

/// Who has the record open by what a file says: "A000512\nANN on DESK3". Empty where it is another
/// one, or where its program is gone, and the file with it then.
std::string whoSays(const std::string& path, const std::string& record) {
    const int handle = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (handle < 0) {
        return {};
    }
    std::string who;
    if (flock(handle, LOCK_SH | LOCK_NB) == 0) {
        unlink(path.c_str());
    } else if (const std::string text = contentsOf(handle); text.starts_with(record + '\n')) {
        who = text.substr(record.size() + 1);
    }
    close(handle);
    return who;
}

}  // namespace

FilePresence::FilePresence(const std::string& databasePath, std::string who)
    : folder_(fs::path(databasePath).parent_path().string() + "/open/"), who_(std::move(who)) {}

FilePresence::~FilePresence() { withdraw(); }

void FilePresence::withdraw() {
    if (handle_ >= 0) {
        unlink(file_.c_str());
        close(std::exchange(handle_, -1));
        rmdir(folder_.c_str());  // unless others are there
    }
    file_.clear();
    record_.clear();
}

bool FilePresence::makeFolder() const {
    const std::string above = fs::path(folder_).parent_path().parent_path().string();
    const mode_t rights = rightsOf(above);
    return (mkdir(folder_.c_str(), rights) == 0 && chmod(folder_.c_str(), rights) == 0) ||
           errno == EEXIST;
}

/// The file gets its name when it is locked: one without a lock is taken for a ghost.
void FilePresence::open(const std::string& record) {
    withdraw();
    record_ = record;
    if (record.empty() || !makeFolder()) {
        return;
    }
    std::string draft = folder_ + ".XXXXXX";
    handle_ = mkostemp(draft.data(), O_CLOEXEC);
    const std::string text = record + '\n' + who_;
    file_ = folder_ + draft.substr(folder_.size() + 1);
    if (handle_ < 0 || flock(handle_, LOCK_EX | LOCK_NB) != 0 ||
        write(handle_, text.data(), text.size()) != static_cast<ssize_t>(text.size()) ||
        fchmod(handle_, ForReading & rightsOf(folder_)) != 0 ||
        rename(draft.c_str(), file_.c_str()) != 0) {
        unlink(draft.c_str());
        withdraw();
        record_ = record;
    }
}

std::vector<std::string> FilePresence::others() const {
    std::vector<std::string> found;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(folder_, none)) {
        const std::string path = entry.path().string();
        const bool isDraft = entry.path().filename().string().starts_with('.');
        if (isDraft || path == file_ || record_.empty()) {
            continue;
        }
        if (std::string who = whoSays(path, record_);
            !who.empty() && std::ranges::find(found, who) == found.end()) {
            found.push_back(std::move(who));
        }
    }
    std::ranges::sort(found);
    return found;
}

}  // namespace store
