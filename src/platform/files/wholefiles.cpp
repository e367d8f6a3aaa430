#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/base/error.h"
#include "platform/files/draft.h"
#include "platform/files/files.h"
#include "platform/files/handles.h"

namespace files {

std::string read(const std::string& path) {
    errno = 0;
    std::ifstream file(find(path), std::ios::binary);
    if (!file.is_open()) {
        const int why = errno;
        // That it is there now says nothing: another program may have made it meanwhile.
        if (why == ENOENT || !exists(path)) {
            throw base::RunTimeError(base::errors::FileNotFound, "File not found: " + path);
        }
        raiseAccess(path, why);
    }
    errno = 0;
    std::string contents{std::istreambuf_iterator<char>(file), {}};
    if (!file) {
        raiseAccess(path, errno == 0 ? EIO : errno);
    }
    return contents;
}

void write(const std::string& path, std::string_view contents) {
    Draft draft(find(path));
    draft.write(contents);
    draft.replace();
}

bool writeNew(const std::string& path, std::string_view contents) {
    if (exists(path)) {
        return false;
    }
    Draft draft(path);
    draft.write(contents);
    return draft.add();
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
