#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/base/error.h"
#include "platform/files/files.h"

namespace files {

namespace {

[[noreturn]] void raiseAccess(const std::string& path, int error) {
    throw base::RunTimeError(
        base::errors::PathFileAccess,
        "Path/File access error: " + path + ": " + std::generic_category().message(error));
}

/// 0, or the system's error number.
int writeAll(int handle, std::string_view contents) {
    while (!contents.empty()) {
        const ssize_t count = ::write(handle, contents.data(), contents.size());
        if (count < 0 && errno != EINTR) {
            return errno;
        }
        contents.remove_prefix(static_cast<std::size_t>(count < 0 ? 0 : count));
    }
    return 0;
}

/// Where the name begins in a path.
std::size_t nameIn(const std::string& path) {
    const auto separator = path.rfind('/');
    return separator == std::string::npos ? 0 : separator + 1;
}

/// A new file is for whom its folder lets in: its group in a folder that a group shares.
void openToTheFolders(int handle, const std::string& path) {
    struct stat folder {};
    const std::string parent = path.substr(0, nameIn(path));
    if (::stat(parent.empty() ? "." : parent.c_str(), &folder) == 0) {
        ::fchmod(handle,
                 folder.st_mode & (S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH));
    }
}

/// A file that is written beside its place; gone with this unless it was put there.
class Draft {
public:
    Draft(const std::string& target, std::string_view contents) : target_(target), path_(target) {
        path_.insert(nameIn(path_), ".");
        path_ += ".XXXXXX";
        const int handle = ::mkostemp(path_.data(), O_CLOEXEC);
        if (handle < 0) {
            raiseAccess(target, errno);
        }
        fill(handle, contents);
    }
    ~Draft() { ::unlink(path_.c_str()); }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    void replace() const {
        if (::rename(path_.c_str(), target_.c_str()) != 0) {
            raiseAccess(target_, errno);
        }
    }
    /// False where a file of that name is there.
    [[nodiscard]] bool add() const {
        if (::link(path_.c_str(), target_.c_str()) == 0) {
            return true;
        }
        return errno == EEXIST ? false : (raiseAccess(target_, errno), false);
    }

private:
    void fill(int handle, std::string_view contents) const {
        openToTheFolders(handle, target_);
        int error = writeAll(handle, contents);
        // A full disk may be told as late as here.
        if (::close(handle) != 0 && error == 0) {
            error = errno;
        }
        if (error != 0) {
            ::unlink(path_.c_str());
            raiseAccess(target_, error);
        }
    }

    std::string target_;
    std::string path_;
};

}  // namespace

std::string read(const std::string& path) {
    std::ifstream file(find(path), std::ios::binary);
    if (!file.is_open() && !exists(path)) {
        throw base::RunTimeError(base::errors::FileNotFound, "File not found: " + path);
    }
    std::string contents{std::istreambuf_iterator<char>(file), {}};
    if (!file) {
        raiseAccess(path, errno == 0 ? EIO : errno);
    }
    return contents;
}

void write(const std::string& path, std::string_view contents) {
    Draft(find(path), contents).replace();
}

bool writeNew(const std::string& path, std::string_view contents) {
    return !exists(path) && Draft(path, contents).add();
}

bool appendLine(const std::string& path, std::string line) {
    std::ranges::replace_if(
        line, [](char c) { return c == '\r' || c == '\n'; }, ' ');
    const std::string name = find(path);
    const int handle =
        ::open(name.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (handle < 0) {
        return false;
    }
    struct stat status {};
    if (::fstat(handle, &status) == 0 && status.st_size == 0) {
        openToTheFolders(handle, name);
    }
    const bool written = writeAll(handle, line + '\n') == 0;
    return ::close(handle) == 0 && written;
}

std::optional<std::chrono::milliseconds> age(const std::string& path) {
    struct stat status {};
    if (::stat(find(path).c_str(), &status) != 0) {
        return std::nullopt;
    }
    using namespace std::chrono;
    const auto written = seconds(status.st_mtim.tv_sec) + nanoseconds(status.st_mtim.tv_nsec);
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch() - written);
}

}  // namespace files
