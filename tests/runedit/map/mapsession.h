#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include "platform/files/files.h"
#include "startup/base/mdlGetMapSoftware.h"
#include "startup/base/session.h"
#include "support/districtsession.h"

/// A session on the small district with the exchange on and a row for the hand-off record.
class MapSession : public support::DistrictSession {
protected:
    using DatabaseFile = data::DatabaseFile;

    MapSession() {
        sql("UPDATE RUN SET VEHTYPE = 'LARGE', OverFill = 2, PICKUP = 1 WHERE RUN = '101-AM'");
        sql("INSERT INTO StartEnd(StartorEnd, Run, VehCapacity, UpdateMap) VALUES (' ', ' ', 0, "
            "0)");
        startup::gMapSoftware = startup::ArcView;
    }

    void sql(std::string_view statement) const { byOthers(statement); }
    static std::string row(const std::string& query) { return stored(query); }

    [[nodiscard]] std::string file(const std::string& name) const {
        return support::contentsOf(district.progPath() + name);
    }
    void write(const std::string& name, std::string_view text) const {
        files::write(district.progPath() + name, text);
    }

    /// The work files by name with their contents.
    [[nodiscard]] std::map<std::string, std::string> workFiles() const {
        std::map<std::string, std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(district.progPath())) {
            const std::string name = entry.path().filename().string();
            if (!name.starts_with("RouteWrk") && name != "Error.txt") {
                found[name] = file(name);
            }
        }
        return found;
    }
};
