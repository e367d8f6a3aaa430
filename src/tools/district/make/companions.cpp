#include "tools/district/make/companions.h"

#include <system_error>

#include <fmt/format.h>

#include "platform/base/error.h"

namespace tools::district {

namespace fs = std::filesystem;

std::vector<std::string> linkCompanions(const fs::path& from, const fs::path& programs) {
    std::vector<std::string> linked;
    for (const char* name : CompanionPrograms) {
        const fs::path link = programs / name;
        std::error_code error;
        if (!fs::exists(from / name, error) ||
            (fs::exists(link, error) && !fs::is_symlink(link, error))) {
            continue;
        }
        fs::remove(link, error);
        fs::create_symlink(from / name, link, error);
        if (error) {
            throw base::RunTimeError(
                base::errors::PathFileAccess,
                fmt::format("{} cannot be made: {}.", link.string(), error.message()));
        }
        linked.emplace_back(name);
    }
    return linked;
}

}  // namespace tools::district
