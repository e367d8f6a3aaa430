#include "platform/files/files.h"

#include <filesystem>
#include <system_error>

#include "platform/base/text.h"

namespace files {

namespace fs = std::filesystem;

namespace {

bool isFile(const fs::path& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    return !error && fs::exists(status) && !fs::is_directory(status);
}

}  // namespace

std::string find(const std::string& path) {
    const fs::path written(path);
    const std::string name = written.filename().string();
    if (name.empty() || isFile(written)) {
        return path;
    }
    const fs::path folder = written.has_parent_path() ? written.parent_path() : fs::path(".");
    std::string found;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string candidate = entry->path().filename().string();
        if (base::equalsNoCase(candidate, name) && (found.empty() || candidate < found) &&
            isFile(entry->path())) {
            found = candidate;
        }
    }
    return found.empty() ? path : path.substr(0, path.size() - name.size()) + found;
}

bool exists(const std::string& path) { return !path.empty() && isFile(find(path)); }

void copy(const std::string& from, const std::string& to) { write(to, read(from)); }

bool remove(const std::string& path) {
    std::error_code error;
    return exists(path) && fs::remove(find(path), error) && !error;
}

std::vector<std::string> folderList(std::string_view list) {
    std::vector<std::string> folders;
    while (!list.empty()) {
        const auto end = list.find(':');
        if (list.starts_with('/')) {
            folders.emplace_back(list.substr(0, end));
        }
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
    }
    return folders;
}

std::string programFolder() {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::current_path(error).string() : program.parent_path().string();
}

}  // namespace files
