#include "data/schema/schema.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "platform/base/text.h"

namespace data {

namespace {

bool has(const store::Table& table, const std::string& column) {
    return std::ranges::any_of(table.columns, [&](const store::Column& one) {
        return base::equalsNoCase(one.name, column);
    });
}

const store::Table& table(DatabaseFile file, std::string_view name) {
    const auto& tables = tablesOf(file);
    return *std::ranges::find(tables, name, &store::Table::name);
}

}  // namespace

// A misspelt column in a key or an index shows only when a file is created.
TEST(Schema, KeysAndIndexesNameColumnsThatExist) {
    for (const DatabaseFile file : AllDatabaseFiles) {
        for (const auto& one : tablesOf(file)) {
            for (const auto& column : one.key) {
                EXPECT_TRUE(has(one, column)) << one.name << '.' << column;
            }
            for (const auto& index : one.indexes) {
                for (const auto& column : index.columns) {
                    EXPECT_TRUE(has(one, column)) << one.name << '.' << column;
                }
            }
        }
    }
}

TEST(Schema, TheWorkingCopyHoldsEveryColumnOfAStopTrip) {
    const auto& copy = table(DatabaseFile::RouteWrk, "Temp_Stop_TripType");
    for (const auto& column : table(DatabaseFile::Routing, "STOP_TRIPTYPE").columns) {
        EXPECT_TRUE(has(copy, column.name)) << column.name;
    }
    EXPECT_TRUE(has(copy, "StopType"));
    EXPECT_TRUE(has(copy, "StopID"));
}

}  // namespace data
