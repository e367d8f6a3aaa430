#include "tools/district/export/tables.h"

#include <charconv>
#include <optional>

#include <gmock/gmock.h>

#include "platform/table/csv.h"
#include "tools/district/make/madedistrict.h"

namespace tools::district {

namespace {

using data::DatabaseFile;
using testing::HasSubstr;
using testing::Not;

using Row = std::vector<std::optional<std::string>>;

/// Reads what the writer wrote, on its own: nothing for Null.
std::vector<Row> rowsOf(const std::string& text) {
    std::vector<Row> rows(1);
    for (std::size_t at = 0; at < text.size();) {
        std::optional<std::string> field;
        if (text[at] == '"') {
            field.emplace();
            for (++at; text[at] != '"' || text[at + 1] == '"'; ++at) {
                at += text[at] == '"' ? 1 : 0;
                *field += text[at];
            }
            ++at;
        } else if (const auto end = text.find_first_of(",\r", at); end > at) {
            field = text.substr(at, end - at);
            at = end;
        }
        rows.back().push_back(field);
        at += text[at] == ',' ? 1 : 2;
        if (text[at - 1] == '\n') {
            rows.emplace_back();
        }
    }
    rows.pop_back();
    return rows;
}

std::optional<std::string> expectedOf(const store::Statement& row, int i, store::ColumnKind kind) {
    if (row.type(i) == store::CellType::Null) {
        return std::nullopt;
    }
    if (kind == store::ColumnKind::YesNo) {
        return row.integer(i) == 1 ? "True" : "False";
    }
    return std::string(row.text(i));
}

/// A number read back is the same number, though the engine writes it with other digits.
bool isSame(const std::optional<std::string>& written, const std::optional<std::string>& expected,
            const store::Statement& row, int i) {
    if (row.type(i) != store::CellType::Real || !written) {
        return written == expected;
    }
    double number = 0;
    const char* end = written->data() + written->size();
    return std::from_chars(written->data(), end, number).ptr == end && number == row.real(i);
}

class Export : public testing::Test {
protected:
    TablesWritten write(bool withoutNames) {
        Progress progress;
        return writeTables(DistrictSnapshot(made_.folders()), to_.path(), withoutNames, progress);
    }
    std::string file(const std::string& table) {
        return support::contentsOf(to_.path() + table + ".csv");
    }

    MadeDistrict made_{30};
    support::TemporaryFolder to_;
};

TEST_F(Export, SaysEveryCellWithoutLoss) {
    made_.execute(DatabaseFile::Routing,
                  "UPDATE RUN SET COMMENT = ' a \"b\", c' || char(13, 10) || 'é' || char(10),"
                  " GIS_CLOSEDSTREETFILENAME = '', DESCRIPTION = NULL, TOTAL_MILES = 0.1 + 0.2,"
                  " DEADHEAD_BEFORE_TIME = -1e-7 WHERE rowid = 3");
    const TablesWritten written = write(false);
    std::int64_t rows = 0;
    std::int64_t tables = 0;
    for (const DatabaseFile which : data::AllDatabaseFiles) {
        if (which == DatabaseFile::VIREORpt) {
            continue;
        }
        const auto database = made_.open(which);
        for (const store::Table& table : data::tablesOf(which)) {
            const auto found = rowsOf(file(table.name));
            const auto stored =
                database->prepare("SELECT * FROM \"" + table.name + "\" ORDER BY rowid");
            std::size_t at = 1;
            for (; stored->step(); ++at, ++rows) {
                ASSERT_LT(at, found.size()) << table.name;
                ASSERT_EQ(found[at].size(), table.columns.size()) << table.name << at;
                for (std::size_t i = 0; i < table.columns.size(); ++i) {
                    const int column = static_cast<int>(i);
                    EXPECT_EQ(found[0][i], table.columns[i].name);
                    EXPECT_TRUE(isSame(found[at][i],
                                       expectedOf(*stored, column, table.columns[i].kind), *stored,
                                       column))
                        << table.name << at << table.columns[i].name;
                }
            }
            EXPECT_EQ(at, found.size()) << table.name;
            ++tables;
        }
    }
    EXPECT_EQ(written.rows, rows);
    EXPECT_EQ(written.tables, tables);
    EXPECT_THAT(file("RUN"), HasSubstr(",\" a \"\"b\"\", c\r\né\n\","));
}

TEST_F(Export, WithoutNamesTellsNothingOfPeople) {
    made_.execute(DatabaseFile::Routing,
                  "UPDATE STUDENT SET LASTNAME = 'Secret', FIRSTNAME = 'Secret', STUID = 'Secret'");
    made_.execute(DatabaseFile::Routing,
                  "UPDATE STU_ADDR SET ADDR1 = 'Secret', ADDR2 = 'Secret', PHONE = 'Secret',"
                  " COMMENT = 'Secret' WHERE ADDRESSID > 1");
    made_.execute(DatabaseFile::Routing, "UPDATE STU_ADDR SET ADDR1 = NULL WHERE ADDRESSID = 1");
    made_.execute(DatabaseFile::Trip,
                  "UPDATE EMPLOYEE SET LASTNAME = 'Secret', FIRSTNAME = 'Secret'");
    made_.execute(DatabaseFile::QDSC, "UPDATE QDSCU SET QDSC2 = 'Secret'");
    write(true);
    for (const char* table : {"STUDENT", "STU_ADDR", "EMPLOYEE", "QDSCU"}) {
        EXPECT_THAT(file(table), Not(HasSubstr("Secret"))) << table;
    }
    const auto students = rowsOf(file("STUDENT"));
    EXPECT_EQ(students.size() - 1,
              static_cast<std::size_t>(made_.number("SELECT COUNT(*) FROM STUDENT")));
    EXPECT_NE(students[1][2], students[2][2]);
    EXPECT_EQ(rowsOf(file("STU_ADDR"))[1][3], std::nullopt) << "what is not known stays so";
    const std::string before = file("STUDENT");
    write(true);
    EXPECT_EQ(file("STUDENT"), before) << "everybody keeps the invented name";
}

}  // namespace

}  // namespace tools::district
