#include "platform/files/installation.h"

#include <filesystem>
#include <string_view>
#include <system_error>

#include "platform/files/files.h"

namespace files {

namespace {

namespace fs = std::filesystem;

/// The folder that holds bin, libexec and share.
fs::path prefixOf(const std::string& folder) {
    for (const std::string_view known : {"/" VIREO_BIN_DIR, "/" VIREO_LIBEXEC_DIR}) {
        if (folder.ends_with(known)) {
            return folder.substr(0, folder.size() - known.size() + 1);
        }
    }
    return fs::path(folder).parent_path();
}

/// Links resolved, so that what is told or kept is where the files really lie.
std::string realPath(const fs::path& path) {
    std::error_code error;
    const fs::path real = fs::weakly_canonical(path, error);
    return (error ? path : real).string();
}

}  // namespace

Installation installationAround(const std::string& folder) {
    const fs::path prefix = prefixOf(folder);
    return {realPath(prefix / VIREO_BIN_DIR), realPath(prefix / VIREO_LIBEXEC_DIR),
            realPath(prefix / VIREO_DATA_DIR / "guide"), VIREO_VERSION, VIREO_APPLICATION_ID};
}

Installation installation() { return installationAround(programFolder()); }

}  // namespace files
