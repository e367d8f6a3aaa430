#include "reports/formats/export.h"

#include <csignal>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "platform/base/encoding.h"
#include "reports/formats/invented.h"
#include "reports/formats/texts.h"
#include "support/errors.h"

namespace reports {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr Format FromRows[] = {Format::Rtf, Format::Html, Format::Excel, Format::Text, Format::Csv};

class Export : public testing::Test {
protected:
    std::string exported(Content& content, Format format) {
        std::string path = folder_.path() + "report" + std::string(extensionOf(format));
        EXPECT_TRUE(exportReport(content, format, path, {}));
        return path;
    }
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder_.path())) {
            names.push_back(entry.path().filename());
        }
        return names;
    }

    support::TemporaryFolder folder_;
};

class ExportInto : public Export, public testing::WithParamInterface<Format> {};

std::string without(std::string text, std::string_view letters) {
    std::erase_if(text, [&](char c) { return letters.find(c) != std::string_view::npos; });
    return text;
}

/// The texts of an RTF file: \uN as the letter, \line as a line end, marks left out.
std::string rtfText(const std::string& rtf) {
    std::u16string units;
    for (std::size_t at = 0; at < rtf.size(); ++at) {
        if (rtf[at] != '\\') {
            units +=
                without(std::string(1, rtf[at]), "{}\n").empty() ? u"" : std::u16string(1, rtf[at]);
            continue;
        }
        const char next = rtf[++at];
        if (std::isalpha(static_cast<unsigned char>(next)) == 0) {
            units += static_cast<char16_t>(next);
            continue;
        }
        const auto end = rtf.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-", at);
        const std::string mark = rtf.substr(at, end - at);
        if (mark[0] == 'u' && mark.find_first_of("0123456789-") == 1) {
            EXPECT_EQ(rtf.substr(end, 4), "\\'3f");
            units += static_cast<char16_t>(std::stoi(mark.substr(1)));
            at = end + 3;
        } else {
            units += mark == "line" ? u"\n" : u"";
            at = rtf[end] == ' ' ? end : end - 1;
        }
    }
    std::string bytes;
    for (const char16_t unit : units) {
        bytes += {static_cast<char>(unit & 0xFFU), static_cast<char>(unit >> 8U)};
    }
    return base::converted(bytes, "UTF-16LE", "UTF-8");
}

}  // namespace

TEST_F(Export, EveryLetterComesBackFromAnotherProgram) {
    for (const Format format : {Format::Csv, Format::Excel, Format::Html}) {
        Invented list = nastyList();
        const Rows rows = readBack(exported(list, format));
        const std::size_t own = format == Format::Html ? 0 : 1;
        const std::size_t first = format == Format::Csv ? 1 : format == Format::Html ? 2 : 4;
        for (std::size_t i = 0; i < nastyTexts().size(); ++i) {
            std::string text = plain(nastyTexts()[i]);
            if (format == Format::Csv && std::string("=+-@").find(text[0]) != std::string::npos) {
                text.insert(0, 1, '\'');
            }
            ASSERT_GT(rows.size(), first + i) << testing::PrintToString(rows);
            EXPECT_EQ(rows[first + i].at(own), text) << nameOf(format);
        }
    }
}

TEST_F(Export, ATableIsRowsThatStandAlone) {
    Invented list = nastyList();
    const Rows rows = readBack(exported(list, Format::Csv));
    EXPECT_THAT(rows.front(),
                ElementsAre("School", "R & RUN", "S & START", "D & DAY", "S & STOPS", "M & MILES",
                            "C & COST", "L & LOAD", "Remarks", "Report"));
    const std::string origin =
        "Confidential; Run list & more; Active <runs>; Łódź Unified; Printed Nov 21, 2026 9:41 AM "
        "by O'HARA";
    EXPECT_THAT(rows[2], ElementsAre("École <1>", "François, Łódź", "12:00 AM", "1/5/2026", "1234",
                                     "13.14", "1204.50", "117", "", origin));
    EXPECT_THAT(rows.back(), ElementsAre("Zweite", "last", "05:31 PM", "", "", "", "", "",
                                         "Too <many>\nriders", origin));
    EXPECT_EQ(rows.size(), nastyTexts().size() + 2);
}

TEST_F(Export, AWorkbookHasNumbersTimesAndTotalsAsSuch) {
    Invented list = nastyList();
    const std::string file = exported(list, Format::Excel);
    const Rows rows = readBack(file);
    EXPECT_THAT(rows[4], ElementsAre("École <1>", plain(nastyTexts()[0]), "00:00",
                                     "2026-01-05 00:00", "1234", "13.14", "1204.5", "117", ""));
    const std::size_t last = nastyTexts().size() + 4;
    EXPECT_THAT(rows[last + 1],
                ElementsAre("All", "", "", "", "formula:=SUBTOTAL(109,E4:E21)",
                            "formula:=SUBTOTAL(104,F4:F21)", "",
                            "formula:=IF(SUBTOTAL(109,F4:F21)=0,0,100*SUBTOTAL(109,E4:E21)/"
                            "SUBTOTAL(109,F4:F21))",
                            ""));
    EXPECT_THAT(rows[last + 2], ElementsAre("sheet", "Totals"));
    EXPECT_EQ(rows.back().front(), "Zweite, total");
    const Rows facts = readBack(file, "facts");
    const Rows expected = {{"freeze", "A4"},
                           {"filter", "A3:I21"},
                           {"titles", "$3:$3"},
                           {"area", "['$A$1:$I$22']"},
                           {"paper", "9 landscape"},
                           {"about", "Run list & more, Confidential"},
                           {"header", "&BConfidential"},
                           {"totals", "All", "", "", "", "20978", "13.14", "", "117", ""},
                           {"formats", "General", "General", "hh:mm AM/PM", "m/d/yyyy", "#,##0",
                            "#,##0.00", "#,##0.00", "#,##0", "General"}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(facts.at(i), expected[i]);
    }
}

TEST_F(Export, APageIsWellFormed) {
    Invented list = nastyList();
    const std::string file = exported(list, Format::Html);
    EXPECT_EQ(outputOf("xmllint --noout " + file), "");
    EXPECT_EQ(outputOf("tidy -q -e -utf8 " + file), "");
    EXPECT_THAT(support::contentsOf(file), HasSubstr("<td dir=\"auto\">גן"));
}

TEST_F(Export, ADocumentKeepsEveryLetterForEachReader) {
    Invented list = nastyList();
    const std::string file = exported(list, Format::Rtf);
    const std::string text = rtfText(support::contentsOf(file));
    for (const std::string& nasty : nastyTexts()) {
        EXPECT_THAT(text, HasSubstr(plain(nasty)));
    }
    const std::string read = outputOf("unrtf --html " + file);
    EXPECT_THAT(read, HasSubstr("O'Brien &amp; Sons &lt;b&gt;&quot;x&quot;&lt;/b&gt;; a,b"));
    EXPECT_THAT(read, HasSubstr("Fran&ccedil;ois"));
    EXPECT_THAT(read, HasSubstr("back\\slash {brace} \\u8"));
}

TEST_F(Export, TextStandsInColumns) {
    Invented list = nastyList();
    std::istringstream lines(support::contentsOf(exported(list, Format::Text)));
    std::size_t rows = 0;
    for (std::string line; std::getline(lines, line);) {
        const auto at = line.find("12:00 AM");
        if (at != std::string::npos) {
            EXPECT_EQ(columnsOf(line.substr(0, at)), 43U) << line;
            ++rows;
        }
    }
    EXPECT_EQ(rows, nastyTexts().size());
}

TEST_F(Export, EachFileSaysThatItIsConfidentialAndWhoseItIs) {
    for (const Format format : FromRows) {
        Invented list = nastyList();
        std::string file = exported(list, format);
        const std::string text = format == Format::Excel ? testing::PrintToString(readBack(file))
                                 : format == Format::Rtf ? rtfText(support::contentsOf(file))
                                                         : support::contentsOf(file);
        for (const char* part : {"onfidential", "Łódź Unified", "Nov 21, 2026", "O'HARA"}) {
            EXPECT_THAT(text, HasSubstr(part)) << nameOf(format);
        }
    }
}

TEST_F(Export, ADriversSheetIsARowAStopOrAPageOfItsOwn) {
    Report report;
    report.form = Form::Sheet;
    SheetStop garage;
    garage.kind = SheetStop::Kind::Empty;
    garage.place = "Leave the garage";
    garage.miles = 18.06;
    SheetStop stop;
    stop.number = 1;
    stop.time = base::Date::timeOfDay(5, 23);
    stop.place = "2380 <65th> Street";
    stop.corner = "at 23rd";
    stop.leftSide = true;
    stop.students = -4;
    stop.onBus = 0;
    stop.id = "100170";
    stop.names = {"Garza, Ann", "Łuc, J"};
    stop.note = "Gate";
    const SheetHead head{"107-1",   "West & Ridge", "Morning",
                         "Bus 107", "Route 107",    {{"DRIVER", "Grace Garza"}}};
    Invented sheets(
        report,
        {head, garage, stop, SheetWay{SheetWay::Sign::Left, {{"Turn onto "}, {"17th", true}}, 0.6},
         SheetWay{SheetWay::Sign::Caution, {{"Stop"}}, {}},
         SheetRemark{{{"Next: "}, {"107-2", true}}}, SheetHead{"107-2", "", "", "", "", {}}});
    const Rows rows = readBack(exported(sheets, Format::Csv));
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_THAT(rows[1], testing::Contains(
                             "West & Ridge; Morning; Bus 107; Route 107; Driver: Grace Garza"));
    EXPECT_THAT(rows[1], testing::Contains("18.06"));
    EXPECT_THAT(std::vector(rows[2].begin(), rows[2].end() - 1),
                ElementsAre("107-1", "05:23 AM", "1", "2380 <65th> Street", "at 23rd", "Left", "-4",
                            "0", "", "100170", "Turn onto 17th (0.6); Stop", "Garza, Ann; Łuc, J",
                            "Gate\nNext: 107-2"));
    EXPECT_EQ(rows[3][0], "107-2");
    sheets.rewind();
    const std::string page = exported(sheets, Format::Html);
    EXPECT_EQ(outputOf("xmllint --noout " + page) + outputOf("tidy -q -e -utf8 " + page), "");
    EXPECT_EQ(outputOf("xmllint --xpath 'count(//article)' " + page), "2\n");
    sheets.rewind();
    const std::string text = outputOf("unrtf --text " + exported(sheets, Format::Rtf));
    EXPECT_THAT(text, HasSubstr("2380 <65th> Street at 23rd LEFT SIDE"));
}

TEST_P(ExportInto, IsReadableAsItsFolderIsAndStopsWithoutATrace) {
    ::chmod(folder_.path().c_str(), 0750);
    Invented list = nastyList();
    const std::string file = exported(list, GetParam());
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
    const std::string before = support::contentsOf(file);

    std::vector<Item> many(1000, Row{{"x", {}, {}, 1, {}, {}, {}}});
    Invented longer(list.report(), many);
    EXPECT_FALSE(exportReport(longer, GetParam(), file, [](double) { return false; }));
    EXPECT_THAT(files(), ElementsAre(file.substr(folder_.path().size())));
    EXPECT_EQ(support::contentsOf(file), before);
}

TEST_P(ExportInto, LeavesNothingBehindWhereItCannotBeWritten) {
    Invented list = nastyList();
    const auto attempt = [&](const std::string& path) {
        list.rewind();
        return support::errorOf([&] { return exportReport(list, GetParam(), path, {}); });
    };
    fs::create_directory(folder_.path() + "folder.csv");
    EXPECT_EQ(attempt(folder_.path() + "folder.csv"), 75);
    EXPECT_EQ(attempt(folder_.path() + "none/report"), 75);
    EXPECT_EQ(attempt("/dev/full"), 75);
    EXPECT_THAT(files(), ElementsAre("folder.csv"));

    // A disk that is full after some bytes.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    ASSERT_EQ(attempt(folder_.path() + "whole"), 0);
    const auto size = fs::file_size(folder_.path() + "whole");
    for (const rlim_t room : {rlim_t{0}, size / 2, size - 500, size - 1}) {
        const rlimit little{room, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &little);
        const int error = attempt(folder_.path() + "report");
        ::setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(error, 75) << room;
        EXPECT_THAT(files(), testing::UnorderedElementsAre("folder.csv", "whole"));
    }
}

INSTANTIATE_TEST_SUITE_P(AFormat, ExportInto, testing::ValuesIn(AllFormats),
                         [](const auto& known) { return std::string(nameOf(known.param)); });

}  // namespace reports
