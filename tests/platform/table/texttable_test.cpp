#include "platform/table/texttable.h"

#include <gtest/gtest.h>

#include "platform/base/error.h"
#include "platform/table/tablecopy.h"

namespace {

using base::Date;
using base::Value;
using table::CellKind;
using table::TextTable;

TextTable oneColumn(CellKind kind, const std::vector<Value>& values) {
    TextTable table;
    table.columns = {{"Column", 0, kind}};
    for (const Value& value : values) {
        table.set(table.addRow(), 0, value);
    }
    return table;
}

std::string shown(const TextTable& table, const std::vector<std::size_t>& rows) {
    std::string texts;
    for (const std::size_t row : rows) {
        texts += table.text(row, 0) + "|";
    }
    return texts;
}

std::string sorted(const TextTable& table, bool descending = false) {
    return shown(table, table.sortedBy(0, descending));
}

TEST(TextTable, SortsTimesAndNumbersByWhatTheyAreNotByTheirTexts) {
    const TextTable times =
        oneColumn(CellKind::Time, {Date::timeOfDay(13, 5), Date::timeOfDay(9, 30), Value(),
                                   Date::timeOfDay(0, 15), Date::timeOfDay(12, 0)});
    EXPECT_EQ(sorted(times), "|12:15 AM|09:30 AM|12:00 PM|01:05 PM|");
    EXPECT_EQ(sorted(times, true), "01:05 PM|12:00 PM|09:30 AM|12:15 AM||");

    const TextTable numbers = oneColumn(CellKind::Number, {100, 9.5, -3, Value(), 20});
    EXPECT_EQ(sorted(numbers), "-3|0|9.5|20|100|");

    const TextTable miles =
        oneColumn(CellKind::Decimal, {100, 9.5, 0.44666666, Value(), -0.001, "none"});
    EXPECT_EQ(sorted(miles), "0.00|0.00|0.45|9.50|100.00|none|");

    const TextTable mixed = oneColumn(CellKind::Number, {"High", 7, "low"});
    EXPECT_EQ(sorted(mixed), "7|High|low|");

    const TextTable dates = oneColumn(
        CellKind::DateTime, {Date::of(2026, 1, 31), Value(), Date::of(2025, 12, 1, 8, 0)});
    EXPECT_EQ(sorted(dates), "|12/1/2025 8:00:00 AM|1/31/2026|");
}

TEST(TextTable, SortsTextsWithoutCaseAndKeepsEqualRowsInOrderBothWays) {
    TextTable table;
    table.columns = {{"Key", 0, CellKind::Text}, {"Group", 0, CellKind::Text}};
    for (const auto& [key, group] : {std::pair{"1", "b"}, {"2", "A"}, {"3", "a"}, {"4", "B"}}) {
        const std::size_t row = table.addRow();
        table.setText(row, 0, key);
        table.setText(row, 1, group);
    }
    EXPECT_EQ(shown(table, table.sortedBy(1, false)), "2|3|1|4|");
    EXPECT_EQ(shown(table, table.sortedBy(1, true)), "1|4|2|3|");

    EXPECT_EQ(sorted(oneColumn(CellKind::Text, {"Zoo", Value(), "Émile2", "app", "émile1",
                                                "Straße É9", "straße é8", "ŁÓDŹ", "łódz"})),
              " |app|straße é8|Straße É9|Zoo|émile1|Émile2|łódz|ŁÓDŹ|");
}

TEST(TextTable, KeepsEveryKindOfValueAndShowsNullAsTheColumnAsks) {
    TextTable table;
    table.columns = {{"Text"}, {"Number", 0, CellKind::Number}, {"Time", 0, CellKind::Time}};
    const std::size_t row = table.addRow();
    EXPECT_EQ(table.text(row, 0), " ");
    EXPECT_EQ(table.text(row, 1), "0");
    EXPECT_EQ(table.text(row, 2), "");

    const std::vector<Value> values{Value(),
                                    true,
                                    -7,
                                    61.5,
                                    Date::of(2026, 1, 31, 7, 5),
                                    "Émile",
                                    "",
                                    std::string(100000, 'x')};
    for (const Value& value : values) {
        table.set(row, 0, value);
        EXPECT_EQ(table.value(row, 0), value);
    }
    EXPECT_THROW(table.set(row + 1, 0, Value(1)), std::out_of_range);
}

TEST(TextTable, FindsShownAndHiddenColumnsByNameAndKeepsBothApart) {
    TextTable table;
    table.columns = {{"Run", 0, CellKind::Text, "RUN"}, {"Miles", 0, CellKind::Number, "MILES"}};
    table.hiddenFields = {"ID"};
    for (const int id : {7, 8}) {
        const std::size_t row = table.addRow();
        table.setText(row, 0, "R1");
        table.set(row, table.columnOf("id"), id);
    }
    TextTable more = table;
    more.append(table);
    EXPECT_EQ(more.value(3, "Id"), Value(8));
    EXPECT_EQ(more.text(2, "run") + more.text(2, "miles"), "R10");
    EXPECT_EQ(table::tabSeparated(table::wholeRows(more, {1}), table::Captions::Shown),
              "Run\tMiles\nR1\t0\n");
    EXPECT_THROW((void)table.columnOf("STOPID"), std::out_of_range);
}

TEST(TextTable, ColoursARangeOfCellsRed) {
    TextTable table;
    table.columns.resize(5);
    const std::size_t plain = table.addRow();
    const std::size_t red = table.addRow();
    table.colourRed(red, 0, 2);
    EXPECT_TRUE(table.isRed(red, 0));
    EXPECT_TRUE(table.isRed(red, 2));
    EXPECT_FALSE(table.isRed(red, 3));
    EXPECT_FALSE(table.isRed(plain, 0));
}

TEST(TextTable, TakesAtMostTwentyMegabytesForTwentyThousandRunsOfNineteenColumns) {
    TextTable table;
    table.columns.resize(19);
    for (std::size_t row = 0; row < 20000; ++row) {
        table.addRow();
        for (std::size_t column = 0; column < 19; ++column) {
            table.setText(row, column, "text of a usual size");
        }
    }
    EXPECT_LE(table.bytes(), 20U << 20U);
}

TEST(TableCopy, IsATableForSpreadsheetsWhateverTheCellsHold) {
    TextTable table;
    table.columns = {{"Run"}, {"Name & more"}};
    table.set(table.addRow(), 0, "R1");
    table.set(0, 1, "two\tparts\non <lines>");
    table.set(table.addRow(), 0, "R2");
    table.colourRed(1, 0, 0);
    const std::vector<std::size_t> rows{1, 0};
    EXPECT_EQ(table::tabSeparated(table::wholeRows(table, rows), table::Captions::Shown),
              "Run\tName & more\nR2\t \nR1\ttwo parts on <lines>\n");
    EXPECT_EQ(table::htmlTable(table::wholeRows(table, rows), table::Captions::Shown),
              "<table>\n<tr><th>Run</th><th>Name &amp; more</th></tr>\n"
              "<tr><td bgcolor=\"#ff0000\">R2</td><td> </td></tr>\n"
              "<tr><td>R1</td><td>two\tparts\non &lt;lines&gt;</td></tr>\n</table>\n");
}

}  // namespace
