#include "platform/files/handles.h"

#include <cerrno>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/base/error.h"

namespace files {

void raiseAccess(const std::string& path, int error) {
    throw base::RunTimeError(
        base::errors::PathFileAccess,
        "Path/File access error: " + path + ": " + std::generic_category().message(error));
}

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

std::size_t nameIn(const std::string& path) {
    const auto separator = path.rfind('/');
    return separator == std::string::npos ? 0 : separator + 1;
}

void openToTheFolders(int handle, const std::string& path) {
    struct stat folder {};
    const std::string parent = path.substr(0, nameIn(path));
    if (::stat(parent.empty() ? "." : parent.c_str(), &folder) == 0) {
        ::fchmod(handle,
                 folder.st_mode & (S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH));
    }
}

}  // namespace files
