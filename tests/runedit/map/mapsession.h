#pragma once

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include <gmock/gmock.h>

#include "platform/ado/recordset.h"
#include "platform/files/files.h"
#include "startup/base/mdlGetMapSoftware.h"
#include "startup/base/session.h"
#include "support/smalldistrict.h"
#include "support/testsession.h"

/// A session on the small district with the exchange on and a row for the hand-off record.
class MapSession : public testing::Test {
protected:
    using DatabaseFile = data::DatabaseFile;

    MapSession() {
        support::fillSmall(district);
        sql("UPDATE RUN SET VEHTYPE = 'LARGE', OverFill = 2, PICKUP = 1 WHERE RUN = '101-AM'");
        sql("INSERT INTO StartEnd(StartorEnd, Run, VehCapacity, UpdateMap) VALUES (' ', ' ', 0, "
            "0)");
        session.start(district.configFolder());
        startup::gMapSoftware = startup::ArcView;
    }

    void sql(std::string_view statement) const { district.sql(DatabaseFile::Routing, statement); }

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

    /// A row of the routing database, its values parted by "|"; Null is nothing.
    [[nodiscard]] std::string row(const std::string& query) const {
        ado::Recordset rows;
        rows.Open(query, *startup::gcnRouting);
        std::string line;
        for (int i = 0; !rows.Eof() && i < rows.fieldCount(); ++i) {
            line += (i == 0 ? "" : "|") + (rows.Fields(i).isNull() ? "" : rows.Fields(i).asText());
        }
        return line;
    }

    support::TestDistrict district;
    support::TestSession session;
};
