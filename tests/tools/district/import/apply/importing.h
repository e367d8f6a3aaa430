#pragma once

#include <map>
#include <string>

#include <gmock/gmock.h>

#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "support/temporaryfolder.h"
#include "tools/district/check/checks.h"
#include "tools/district/import/apply/importer.h"
#include "tools/district/make/create.h"

namespace tools::district {

/// A district of its own, empty at first but for a few codes, into which files are imported.
class Importing : public testing::Test {
protected:
    Importing() {
        createDistrict({.folder = folders_.root, .empty = EmptyDistrict{"Test", {"ADMIN", "pw"}}},
                       progress_);
        execute(data::DatabaseFile::Trip,
                "INSERT INTO VEHTYPE (VEHTYPE, ACTIVE) VALUES ('BUS', 1)");
        options_.now = base::Date::of(2026, 8, 1, 9);
        options_.apply = true;
    }

    /// Imports files that hold these texts, written in this order.
    ImportResult import(const std::map<std::string, std::string>& files) {
        options_.sources.clear();
        for (const auto& [name, text] : files) {
            options_.sources.emplace_back(temporary_.write(name, text));
        }
        options_.rejected = temporary_.path() + "rejected.csv";
        return importInto(options_, progress_);
    }

    /// "STOP 2 1 0": new, changed and same of each table that has any.
    static std::string counts(const ImportResult& result) {
        std::string all;
        for (const TableOutcome& table : result.outcome.tables) {
            if (table.added + table.changed + table.same > 0) {
                all += fmt::format("{}{} {} {} {}", all.empty() ? "" : ", ", table.table,
                                   table.added, table.changed, table.same);
            }
        }
        return all;
    }

    void execute(data::DatabaseFile file, const std::string& sql) const {
        store::open(folders_.database(file).string())->execute(sql);
    }

    /// All rows of a query, cells parted by bars and rows by slashes.
    [[nodiscard]] std::string rows(const std::string& sql,
                                   data::DatabaseFile file = data::DatabaseFile::Routing) const {
        const auto database = store::open(folders_.database(file).string());
        const auto row = database->prepare(sql);
        std::string all;
        while (row->step()) {
            all += all.empty() ? "" : " / ";
            for (int i = 0; i < row->columnCount(); ++i) {
                all += (i == 0 ? "" : "|") +
                       (row->type(i) == store::CellType::Real      ? base::numberText(row->real(i))
                        : row->type(i) == store::CellType::Integer ? std::to_string(row->integer(i))
                                                                   : std::string(row->text(i)));
            }
        }
        return all;
    }

    [[nodiscard]] std::string faults() {
        const CheckReport report = checkDistrict(folders_, progress_);
        return report.isSound() ? "" : report.text();
    }

    support::TemporaryFolder temporary_;
    Folders folders_{temporary_.path() + "district"};
    Progress progress_;
    ImportOptions options_{
        .folders = folders_, .sources = {}, .map = {}, .rejected = {}, .rules = {}};
};

}  // namespace tools::district
