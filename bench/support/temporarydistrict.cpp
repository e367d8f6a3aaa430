#include "support/temporarydistrict.h"

#include <stdexcept>

#include <stdlib.h>

#include "tools/district/base/folders.h"
#include "tools/district/make/create.h"

namespace bench {

namespace fs = std::filesystem;

TemporaryDistrict::TemporaryDistrict(std::optional<std::int64_t> runs) {
    std::string pattern = (fs::temp_directory_path() / "vireo-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no folder to work in");
    }
    folder_ = pattern;
    tools::district::Progress progress;
    tools::district::createDistrict({.folder = folder_ / "district", .runs = runs, .seed = 1},
                                    progress);
}

TemporaryDistrict::~TemporaryDistrict() { fs::remove_all(folder_); }

std::string TemporaryDistrict::path(data::DatabaseFile file) const {
    return tools::district::Folders{folder_ / "district"}.database(file).string();
}

}  // namespace bench
