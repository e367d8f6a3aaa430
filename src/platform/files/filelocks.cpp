#include <cerrno>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/base/error.h"
#include "platform/base/notcopied.h"
#include "platform/base/ports.h"
#include "platform/files/files.h"

namespace files {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds Glance{10};  // between two looks whether the lock is free

int openToRead(const std::string& path, int flags = 0) {
    return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags);
}

bool lockAtOnce(int handle) { return ::flock(handle, LOCK_EX | LOCK_NB) == 0; }

bool lockWithin(int handle, milliseconds patience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!lockAtOnce(handle)) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(Glance);
        base::ports().repaint();
    }
    return true;
}

/// Whether the file that was opened is still the one of that name.
bool isStillAt(int handle, const std::string& path) {
    struct stat opened {};
    struct stat named {};
    return ::fstat(handle, &opened) == 0 && ::stat(path.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

class Opened : private base::NotCopied {
public:
    explicit Opened(int handle) : handle_(handle) {}
    ~Opened() {
        if (handle_ >= 0) {
            ::close(handle_);
        }
    }
    [[nodiscard]] bool isOpen() const { return handle_ >= 0; }
    [[nodiscard]] int handle() const { return handle_; }
    /// The descriptor, for the caller to close.
    int release() { return std::exchange(handle_, -1); }

private:
    int handle_;
};

int lockedFolder(const std::string& folder, milliseconds patience) {
    Opened opened(openToRead(folder, O_DIRECTORY));
    if (!opened.isOpen()) {
        throw base::RunTimeError(
            base::errors::PathFileAccess,
            "Path/File access error: " + folder + ": " + std::generic_category().message(errno));
    }
    if (!lockWithin(opened.handle(), patience)) {
        throw base::RunTimeError(base::errors::PathFileAccess,
                                 "Another program is still at work in the folder " + folder +
                                     ".  Please wait for a moment and try again.");
    }
    return opened.release();
}

}  // namespace

bool removeUnheld(const std::string& path) {
    if (!exists(path)) {
        return false;
    }
    const Opened file(openToRead(find(path)));
    return (!file.isOpen() || lockAtOnce(file.handle())) && remove(path);
}

Hold::Hold(const std::string& path) : handle_(openToRead(find(path))) {
    if (handle_ < 0) {
        throw base::RunTimeError(base::errors::FileNotFound, "File not found: " + path);
    }
    ::flock(handle_, LOCK_SH | LOCK_NB);
}

Hold::~Hold() { ::close(handle_); }

FolderLock::FolderLock(const std::string& folder, milliseconds patience)
    : handle_(lockedFolder(folder, patience)) {}

FolderLock::~FolderLock() { ::close(handle_); }

void setAside(const std::string& path, const std::string& older, std::uintmax_t bytes) {
    const std::string name = find(path);
    struct stat status {};
    if (::stat(name.c_str(), &status) != 0 || static_cast<std::uintmax_t>(status.st_size) < bytes) {
        return;
    }
    const Opened file(openToRead(name));
    if (file.isOpen() && lockAtOnce(file.handle()) && isStillAt(file.handle(), name)) {
        ::rename(name.c_str(), find(older).c_str());
    }
}

}  // namespace files
