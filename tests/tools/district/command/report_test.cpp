#include <algorithm>
#include <filesystem>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "reports/catalog/preparation.h"
#include "reports/formats/export.h"
#include "reports/formats/invented.h"
#include "tools/district/command/commandline.h"
#include "tools/district/make/madedistrict.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;
using reports::Format;
using reports::outputOf;
using reports::readBack;
using reports::Rows;
using testing::HasSubstr;

/// The sample district's reports of its runs of buses 103 to 107.
class ReportCommand : public testing::Test {
protected:
    struct Outcome {
        ExitStatus status;
        std::string out;
        std::string complaints;
    };

    Outcome run(std::vector<std::string> words) {
        words.insert(words.begin(), {"report", district().folder()});
        std::istringstream in;
        std::ostringstream out;
        std::ostringstream complaints;
        const ExitStatus status = runCommand(words, in, out, complaints);
        return {status, out.str(), complaints.str()};
    }
    std::string made(const std::string& report, Format format) {
        std::string file = folder_.path() + report + std::string(reports::extensionOf(format));
        std::vector<std::string> words = {report, "--output", file, "--runs",
                                          "RUN.RUN LIKE '10[3-7]-%'"};
        if (reports::reportNamed(report)->mayName) {
            words.emplace_back("--names");
        }
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.status, ExitStatus::Done) << report << outcome.complaints;
        return file;
    }
    static const MadeDistrict& district() {
        static const MadeDistrict made;
        return made;
    }

    support::TemporaryFolder folder_;
};

class EveryReport : public ReportCommand, public testing::WithParamInterface<std::string> {};

std::size_t pagesOf(const std::string& pdf) {
    return std::stoul(outputOf("pdfinfo '" + pdf + "' | sed -n 's/^Pages: *//p'"));
}

std::string withoutBlanks(std::string text) {
    std::erase_if(text, [](unsigned char c) { return std::isspace(c) != 0; });
    return text;
}

}  // namespace

TEST_P(EveryReport, CanBeReadInEveryFormat) {
    const std::string report = GetParam();
    const Rows rows = readBack(made(report, Format::Csv));
    ASSERT_GT(rows.size(), 1U);
    for (const auto& row : rows) {
        EXPECT_EQ(row.size(), rows.front().size());
    }
    const Rows book = readBack(made(report, Format::Excel));
    ASSERT_GT(book.size(), rows.size() + 2);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(book[i + 3].front(), rows[i].front());
    }
    const std::string page = made(report, Format::Html);
    EXPECT_EQ(outputOf("xmllint --noout " + page) + outputOf("tidy -q -e -utf8 " + page), "");
    const std::string pdf = made(report, Format::Pdf);
    EXPECT_EQ(outputOf("qpdf --check " + pdf + " >/dev/null"), "");
    EXPECT_EQ(std::stoul(outputOf("tiffinfo " + made(report, Format::Tiff) +
                                  " | grep -c 'Compression Scheme: CCITT Group 4'")),
              pagesOf(pdf));
    const std::string document = outputOf("unrtf --text " + made(report, Format::Rtf));
    const std::string text = support::contentsOf(made(report, Format::Text));
    for (const std::string& words : {reports::reportNamed(report)->title, rows[1].front()}) {
        for (const std::string& all :
             {outputOf("pdftotext -layout " + pdf + " -"), document, text}) {
            EXPECT_THAT(withoutBlanks(all), HasSubstr(withoutBlanks(words)));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(OfTheSample, EveryReport, testing::ValuesIn([] {
                             std::vector<std::string> ids;
                             for (const auto& report : reports::reportsOf("RUNSEARCH")) {
                                 ids.push_back(report.id);
                             }
                             return ids;
                         }()),
                         [](const auto& known) {
                             std::string name = known.param;
                             std::ranges::replace(name, '-', '_');
                             return name;
                         });

TEST_F(ReportCommand, ARunListHasTheDistrictsFigures) {
    const Rows rows = readBack(made("run-list", Format::Csv));
    EXPECT_EQ(rows.size() - 1,
              district().number("SELECT COUNT(*) FROM RUN WHERE RUN GLOB '10[3-7]-*'"));
    const auto column = [&](const std::string& caption) {
        return static_cast<std::size_t>(std::ranges::find(rows.front(), caption) -
                                        rows.front().begin());
    };
    long stops = 0;
    for (std::size_t i = 1; i < rows.size(); ++i) {
        stops += std::stol(rows[i].at(column("Stops")));
    }
    EXPECT_EQ(stops, district().number("SELECT COUNT(*) FROM STOP_TRIPTYPE JOIN STOP USING "
                                       "(INT_STOPID) WHERE RUN GLOB '10[3-7]-*' AND "
                                       "STOP.STOPTYPE <> 'DIRECTIONAL'"));
}

TEST_F(ReportCommand, TakesWhatItIsAsked) {
    const std::string file = folder_.path() + "sheet.txt";
    const Outcome outcome = run({"driver-instructions", "--runs", "107-1, 105-1", "--output", file,
                                 "--user", "ANN", "--names", "--selection", "Two runs"});
    EXPECT_EQ(outcome.out, "Wrote 2 runs to " + file + ".\n");
    const std::string text = support::contentsOf(file);
    EXPECT_THAT(text, testing::StartsWith("*** Confidential ***\n"));
    EXPECT_THAT(text, HasSubstr("Driver instructions: Two runs\n"));
    EXPECT_THAT(text, HasSubstr("by ANN\n"));
    EXPECT_LT(text.find("\n105-1 "), text.find("\n107-1 "));

    // The sample district says that its streets are a grid.
    const std::string page = folder_.path() + "sheet.html";
    for (const auto& [option, maps] : {std::pair("--names", true), {"--without-maps", false}}) {
        run({"driver-instructions", "--runs", "107-1", "--output", page, option});
        EXPECT_EQ(support::contentsOf(page).find("Map of Run 107-1") != std::string::npos, maps);
    }

    const std::string list = folder_.path() + "list";
    run({"run-list-short", "--runs", "RUN.RUN LIKE '10[3-7]-1'", "--output", list, "--format",
         "csv", "--sort", "STARTTIME DESC"});
    const Rows rows = readBack((fs::rename(list, list + ".csv"), list + ".csv"));
    EXPECT_EQ(rows.at(1).front(), "106-1");
    EXPECT_EQ(rows.back().front(), "105-1");

    EXPECT_EQ(run({"run-list"}).status, ExitStatus::Done);
    EXPECT_TRUE(fs::exists(district().folders().reports() / "VIREOReport.pdf"));
    EXPECT_THAT(run({"--list"}).out, HasSubstr("\nrun-stops "));
}

TEST_F(ReportCommand, RefusesWhatItDoesNotUnderstandAndLeavesNothing) {
    const std::string file = folder_.path() + "report.pdf";
    const std::vector<std::pair<std::vector<std::string>, std::string>> misuses = {
        {{}, "name is missing"},
        {{"run-list", "--list"}, "--list takes no report"},
        {{"runlist"}, "There is no report \"runlist\""},
        {{"run-list", "--names"}, "has no names to show"},
        {{"run-list", "--format", "doc"}, "not \"doc\""},
        {{"run-list", "--output", "/tmp/x.doc"}, "not \".doc\""},
        {{"run-list", "--paper", "A3"}, "Letter or A4"},
        {{"run-list", "--break", "run"}, "school for this report"},
        {{"run-list", "--changed-since", "soon"}, "a date"},
        {{"run-list", "--sort", "COLOUR"}, "not \"COLOUR\""},
        {{"run-list", "--landscape", "--portrait"}, "exclude"}};
    for (auto [words, complaint] : misuses) {
        if (!words.empty() && std::ranges::find(words, "--output") == words.end()) {
            words.insert(words.end(), {"--output", file});
        }
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.status, ExitStatus::Misused);
        EXPECT_THAT(outcome.complaints, HasSubstr(complaint));
    }
    const Outcome none = run({"run-list", "--runs", "107-1,NONE,x'y", "--output", file});
    EXPECT_EQ(none.status, ExitStatus::Failed);
    EXPECT_EQ(none.complaints, "There is no run NONE, x'y.\n");
    EXPECT_EQ(run({"run-list", "--runs", "COLOUR='RED'", "--output", file}).status,
              ExitStatus::Failed);
    const Outcome nowhere = run({"run-list", "--output", folder_.path() + "none/report.pdf"});
    EXPECT_EQ(nowhere.status, ExitStatus::Failed);
    EXPECT_THAT(nowhere.complaints, HasSubstr("none/report.pdf: No such file or directory"));
    EXPECT_TRUE(fs::is_empty(folder_.path()));
}

}  // namespace tools::district
