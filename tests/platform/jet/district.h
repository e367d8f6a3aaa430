#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/translate.h"
#include "platform/store/base/database.h"
#include "support/temporaryfolder.h"

namespace jet::testing {

/// A small district in one file of its own, or in one place on a server, all six files' tables
/// together; the rows of district.txt. The file goes with the object.
class District {
public:
    District();
    /// The same rows as another one has.
    District(const std::string& path, District& original);

    [[nodiscard]] store::Database& database() { return *database_; }
    [[nodiscard]] const store::Catalog& catalog() const { return database_->catalog(); }

    /// The visible cells of a SELECT's rows, joined by "|", Null as "Null"; of a change one row
    /// with the number of rows changed.
    std::vector<std::string> run(std::string_view sql);
    /// The first row alone, empty where there is none.
    std::string first(std::string_view sql);
    /// The translation alone.
    std::string text(std::string_view sql) const { return translate(sql, catalog()).text; }
    /// What SQLite means to do, one step a line.
    std::string plan(std::string_view sql);

private:
    void createTables();

    support::TemporaryFolder folder_{support::TemporaryFolder::Place::Memory};
    std::unique_ptr<store::Database> database_;
};

/// The same rows on a server of this program's own; null where there is none.
District* serverDistrict();

/// One for all tests of the program; who changes it puts it back.
District& sharedDistrict();

}  // namespace jet::testing
