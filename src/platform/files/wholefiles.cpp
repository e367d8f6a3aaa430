#include <cerrno>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
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

void fill(int handle, const std::string& path, std::string_view contents) {
    int error = writeAll(handle, contents);
    // A full disk may be told as late as here.
    if (::close(handle) != 0 && error == 0) {
        error = errno;
    }
    if (error != 0) {
        ::unlink(path.c_str());
        raiseAccess(path, error);
    }
}

int openToWrite(const std::string& path, int flags) {
    return ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0666);
}

}  // namespace

std::string read(const std::string& path) {
    if (!exists(path)) {
        throw base::RunTimeError(base::errors::FileNotFound, "File not found: " + path);
    }
    std::ifstream file(find(path), std::ios::binary);
    std::string contents{std::istreambuf_iterator<char>(file), {}};
    if (!file) {
        raiseAccess(path, errno == 0 ? EIO : errno);
    }
    return contents;
}

void write(const std::string& path, std::string_view contents) {
    const std::string target = find(path);
    const int handle = openToWrite(target, O_TRUNC);
    if (handle < 0) {
        raiseAccess(path, errno);
    }
    fill(handle, target, contents);
}

bool writeNew(const std::string& path, std::string_view contents) {
    if (exists(path)) {
        return false;
    }
    const int handle = openToWrite(path, O_EXCL);
    if (handle < 0) {
        return errno == EEXIST ? false : (raiseAccess(path, errno), false);
    }
    fill(handle, path, contents);
    return true;
}

bool removeUnheld(const std::string& path) {
    if (!exists(path)) {
        return false;
    }
    const int handle = ::open(find(path).c_str(), O_RDONLY | O_CLOEXEC);
    const bool held = handle >= 0 && ::flock(handle, LOCK_EX | LOCK_NB) != 0;
    const bool removed = !held && remove(path);
    if (handle >= 0) {
        ::close(handle);
    }
    return removed;
}

Hold::Hold(const std::string& path) : handle_(::open(find(path).c_str(), O_RDONLY | O_CLOEXEC)) {
    if (handle_ < 0) {
        throw base::RunTimeError(base::errors::FileNotFound, "File not found: " + path);
    }
    ::flock(handle_, LOCK_SH | LOCK_NB);
}

Hold::~Hold() { ::close(handle_); }

}  // namespace files
