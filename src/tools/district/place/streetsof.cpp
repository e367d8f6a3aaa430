#include "tools/district/place/streetsof.h"

#include <algorithm>
#include <string_view>
#include <variant>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/text.h"
#include "platform/files/files.h"
#include "platform/ini/ini.h"

namespace tools::district {

namespace {

constexpr const char* ClosedStreets = "GIS_CLOSEDSTREETFILENAME";

/// The names in the rows of a table; none where it lacks the column.
std::vector<std::string> closedIn(store::Database& routing, std::string_view table) {
    std::vector<std::string> names;
    const auto* const found = routing.catalog().find(table);
    if (found == nullptr || found->find(ClosedStreets) == nullptr) {
        return names;
    }
    const auto rows =
        routing.prepare(fmt::format("SELECT DISTINCT {} FROM {}", ClosedStreets, table));
    while (rows->step()) {
        if (const auto name = base::trim(rows->text(0)); !name.empty()) {
            names.emplace_back(name);
        }
    }
    return names;
}

/// The street file; nothing where the district drives on a grid, or on what nobody understands.
std::vector<std::string> streetFileIn(const std::string& settings) {
    try {
        const auto setting =
            streets::streetSettingIn(ini::readString("District", "Streets", "", settings));
        const auto* const file = std::get_if<std::string>(&setting);
        return file == nullptr ? std::vector<std::string>() : std::vector{*file};
    } catch (const base::RunTimeError&) {
        return {};
    }
}

}  // namespace

std::string closedStreetsName(store::Database& routing) {
    const auto names = closedIn(routing, "District");
    return names.empty() ? "" : names.front();
}

std::shared_ptr<const streets::DistrictStreets> openStreetsOf(const Folders& folders,
                                                              store::Database& routing) {
    return streets::openStreets({.settings = folders.settings().string(),
                                 .folder = folders.files().string(),
                                 .closed = closedStreetsName(routing)});
}

std::vector<std::filesystem::path> filesBeside(const Folders& folders, store::Database& routing) {
    std::vector<std::filesystem::path> files{folders.addresses(), folders.homes(), folders.computedTravel()};
    for (const auto& names : {streetFileIn(folders.settings().string()),
                              closedIn(routing, "District"), closedIn(routing, "RUN")}) {
        for (const std::string& name : names) {
            files.emplace_back(files::find((folders.files() / name).lexically_normal().string()));
        }
    }
    std::ranges::sort(files);
    files.erase(std::unique(files.begin(), files.end()), files.end());
    return files;
}

}  // namespace tools::district
