#include "tools/district/base/openalone.h"

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/store/open/open.h"

namespace tools::district {

std::unique_ptr<store::Database> openAlone(const std::string& path) {
    try {
        return store::openAlone(path);
    } catch (const store::StoreError& error) {
        if (error.fault() != store::Fault::Locked) {
            throw;
        }
    }
    throw base::RunTimeError(
        base::errors::PermissionDenied,
        fmt::format("Somebody works in this district: {} is open in another program. Close it "
                    "there and try again; nothing was changed.",
                    path));
}

}  // namespace tools::district
