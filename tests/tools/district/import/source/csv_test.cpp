#include "tools/district/import/source/csv.h"

#include <sstream>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "platform/base/error.h"
#include "platform/table/csv.h"
#include "tools/district/make/random.h"

namespace tools::district {

namespace {

/// Every record as "line:cell|cell", quoted cells in angle brackets, every fault as
/// "!line,column reason".
std::vector<std::string> read(const std::string& bytes, const CsvHints& hints = {}) {
    std::istringstream file(bytes);
    CsvReader reader(file, shapeOf(file, hints));
    std::vector<std::string> all;
    for (auto item = reader.next(); item != CsvReader::Item::End; item = reader.next()) {
        std::string text;
        if (item == CsvReader::Item::Fault) {
            const CsvFault& fault = reader.fault();
            text = fmt::format("!{},{} {}", fault.line, fault.column, fault.reason);
        } else {
            for (const CsvField& field : reader.record().fields) {
                text += text.empty() ? fmt::format("{}:", reader.record().line) : "|";
                text += field.quoted ? fmt::format("<{}>", field.text) : std::string(field.text);
            }
        }
        all.push_back(text);
    }
    return all;
}

using testing::ElementsAre;
using testing::IsEmpty;

}  // namespace

TEST(Csv, ReadsWhatSpreadsheetsAndStudentSystemsWrite) {
    EXPECT_THAT(read(""), IsEmpty());
    EXPECT_THAT(read("\r\n\n\r"), IsEmpty());
    EXPECT_THAT(read("a,b\n1,"), ElementsAre("1:a|b", "2:1|"));
    EXPECT_THAT(read("\xEF\xBB\xBF\"a\",b\r\n 1 ,\"\"\r\n"), ElementsAre("1:<a>|b", "2: 1 |<>"));
    EXPECT_THAT(read("a;b,c;d\n\"1;2\";3;\n"), ElementsAre("1:a|b,c|d", "2:<1;2>|3|"));
    EXPECT_THAT(read("a\tb|c\rx\ty\r"), ElementsAre("1:a|b|c", "2:x|y"))
        << "the bar inside a cell is no separator where a tab is one";
    EXPECT_THAT(read("a,b\n\"x\r\ny\",\"say \"\"hi\"\"\"\n\nlast,5\" pipe\n"),
                ElementsAre("1:a|b", "2:<x\r\ny>|<say \"hi\">", "5:last|5\" pipe"));
    EXPECT_THAT(read("a,b\nJos\xE9,\x80 \"\"5\n"), ElementsAre("1:a|b", "2:José|€ \"\"5"));
    EXPECT_THAT(read("a\n\"J\xF6rg \"\"x\"\"\"\n"), ElementsAre("1:a", "2:<Jörg \"x\">"));
    EXPECT_THAT(read("José;x,y,z\n", {.separator = ','}), ElementsAre("1:José;x|y|z"));
}

TEST(Csv, SaysWhereItCannotReadAndGoesOn) {
    EXPECT_THAT(read("a,b\né,\"x\"y,z\n3,4\n"),
                ElementsAre("1:a|b", "!2,6 text follows the closing quote", "3:3|4"));
    EXPECT_THAT(read("a\n1,\"never\n2\n3\n"),
                ElementsAre("1:a", "!2,3 this quote is never closed", "3:2", "4:3"));
    EXPECT_THAT(read("a,\x81\nb,c\n"),
                ElementsAre("!1,3 the byte 0x81 is no character of Windows-1252", "2:b|c"));
    EXPECT_THAT(read("a,b\n\"x\ny\xFFz\",2\nb,c\n", {.charset = Charset::Utf8}),
                ElementsAre("1:a|b", "!3,2 the byte 0xff is no character of UTF-8", "4:b|c"))
        << "a record with a line end inside is given up whole";
    EXPECT_THAT(read(std::string("a,\0\nb,c\n", 8)),
                ElementsAre("!1,3 this is a zero byte; the file is no text", "2:b|c"));
    EXPECT_THAT(read(std::string(2 * CsvReader::LongestField, 'x') + "\ny\n"),
                ElementsAre("!1,1 the field is too long", "2:y"));
    EXPECT_THAT(read(std::string(CsvReader::MostFields, ',') + "\ny\n"),
                ElementsAre("!1,1000 there are more than 1000 fields", "2:y"));
    EXPECT_THROW(read("\xFF\xFEn"), base::RunTimeError);
    std::string broken;
    for (int i = 0; i <= CsvReader::MostFaults; ++i) {
        broken += "\"x\"y\n";
    }
    EXPECT_THROW(read(broken), base::RunTimeError);
}

// Records of all sizes, so that blocks of the file end at every kind of place.
TEST(Csv, ReadsBackWhatItWrites) {
    Random random(7);
    constexpr std::array<std::string_view, 8> Parts = {"a", "é", ",", "\"", "\r\n", " ", "𝄞", "\n"};
    std::stringstream file;
    table::CsvWriter csv(file);
    std::vector<std::vector<std::string>> records(4000);
    for (auto& record : records) {
        for (std::size_t fields = 1 + random.below(6); fields > 0; --fields) {
            std::string cell;
            for (std::size_t size = random.below(60); size > 0; --size) {
                cell += random.pick(Parts);
            }
            csv.text(cell);
            record.push_back(std::move(cell));
        }
        csv.endRow();
    }
    CsvReader reader(file, {});
    for (const auto& record : records) {
        ASSERT_EQ(reader.next(), CsvReader::Item::Record);
        std::vector<std::string> cells;
        for (const CsvField& field : reader.record().fields) {
            cells.emplace_back(field.text);
        }
        ASSERT_EQ(cells, record);
    }
    EXPECT_EQ(reader.next(), CsvReader::Item::End);
}

}  // namespace tools::district
