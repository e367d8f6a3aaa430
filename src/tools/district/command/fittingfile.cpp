#include "tools/district/command/fittingfile.h"

#include <filesystem>
#include <optional>

#include "data/schema/version.h"
#include "platform/base/error.h"
#include "platform/base/text.h"
#include "platform/store/base/location.h"

namespace tools::district {

namespace {

std::optional<data::DatabaseFile> whichFile(const std::string& path, std::int32_t kind) {
    const std::string name = store::isServer(path)
                                 ? store::serverPathOf(path).file
                                 : std::filesystem::path(path).filename().string();
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        const bool isNamed = kind == 0 && base::equalsNoCase(data::fileName(file), name);
        if (isNamed || data::markOf(file).kind == kind) {
            return file;
        }
    }
    return std::nullopt;
}

}  // namespace

void openFitting(ado::Connection& connection, const std::string& path) {
    connection.Open(path);
    const auto mark = connection.mark();
    const auto file = whichFile(path, mark.kind);
    if (!file) {
        return;
    }
    const auto found = data::lookAt(*file, path, mark, connection.catalog());
    const std::string folder =
        store::isServer(path)
            ? store::pathBeside(path, "")
            : std::filesystem::absolute(path).parent_path().parent_path().string();
    const std::string complaint = data::versionComplaint({{found}}, folder);
    if (!complaint.empty()) {
        throw base::RunTimeError(base::errors::InvalidProcedureCall, complaint);
    }
}

}  // namespace tools::district
