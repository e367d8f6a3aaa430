#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "reports/page/invented.h"
#include "reports/page/layout.h"
#include "reports/paint/pdf.h"
#include "reports/paint/tiff.h"
#include "support/commandoutput.h"
#include "support/errors.h"
#include "support/temporaryfolder.h"

namespace reports {
namespace {

using support::outputOf;
using testing::HasSubstr;

/// Of a page of dots, uncompressed.
constexpr std::size_t PageBytes = std::size_t{(1700 + 7) / 8} * 2200;

/// The bits that are set.
double dark(std::string_view bytes) {
    long count = 0;
    for (const char byte : bytes) {
        count += __builtin_popcount(static_cast<unsigned char>(byte));
    }
    return static_cast<double>(count);
}

int countOf(const std::string& text, const std::string& word) {
    int count = 0;
    for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
        ++count;
    }
    return count;
}

class Painting : public testing::Test {
protected:
    Painting() {
        content_.said.title = "Listę <stops> & \"names\"";
        content_.addColumn(CellKind::Whole, 40);
        content_.addColumn(CellKind::Text, 200).grows = true;
        content_.addColumn(CellKind::Text, 90).condensed = true;
        content_.addColumn(CellKind::Load, 70);
        for (int group = 0; group < 3; ++group) {
            content_.items.emplace_back(GroupHead{0, "בית ספר " + std::to_string(group), "runs"});
            for (int row = 0; row < 40; ++row) {
                content_.items.emplace_back(
                    Row{{row, names[static_cast<std::size_t>(row) % names.size()], "O'Brien",
                         row * 4}});
            }
        }
    }

    std::string path(const std::string& name) { return folder_.path() + name; }

    std::vector<std::string> names = {"שרה כהן",
                                      "مدرسة النور",
                                      "<Annex> & \"Łódź\"",
                                      "François",
                                      "office affluent",
                                      "broken \xFF\xC3 bytes",
                                      "שדרות רוטשילד 15 at 5th Avenue"};
    support::TemporaryFolder folder_;
    Invented content_;
};

TEST_F(Painting, ADocumentIsReadByOtherProgramsAsItWasWritten) {
    const Pages pages = layOut(content_);
    ASSERT_TRUE(paintPdf(pages, path("list.pdf")));
    const std::string text = outputOf("pdftotext -enc UTF-8 " + path("list.pdf") + " -");
    for (const char* written : {"שרה כהן", "مدرسة النور", "<Annex> & \"Łódź\"", "François",
                                "office affluent", "broken", "רוטשילד", "5th Avenue", "O'Brien"}) {
        EXPECT_THAT(text, HasSubstr(written));
    }
    const std::string info = outputOf("pdfinfo -enc UTF-8 " + path("list.pdf"));
    EXPECT_THAT(info, HasSubstr("Title:           Listę <stops> & \"names\""));
    EXPECT_THAT(info, HasSubstr("Pages:           " + std::to_string(pages.pages.size()) + "\n"));
    EXPECT_THAT(info, testing::ContainsRegex("Tagged: +yes"));
    EXPECT_THAT(outputOf("qpdf --check " + path("list.pdf")),
                testing::AllOf(HasSubstr("No syntax"), testing::Not(HasSubstr("WARNING"))));
    const std::string outline = outputOf("qpdf --json --json-key=outlines " + path("list.pdf"));
    EXPECT_EQ(countOf(outline, "בית ספר"), 3);
    EXPECT_THAT(outline, HasSubstr("\"destpageposfrom1\": " + std::to_string(pages.pages.size())));
    const std::string tree = outputOf("pdfinfo -struct-text " + path("list.pdf"));
    EXPECT_TRUE(tree.starts_with("Document\n")) << tree.substr(0, 200);
    EXPECT_EQ(countOf(tree, "  P (block)"), 120);
    EXPECT_EQ(countOf(tree, "  H2 (block)"), 3);
    EXPECT_THAT(tree, HasSubstr("\"4 office affluent O'Brien 16 \""));
    EXPECT_THAT(tree, testing::Not(HasSubstr("Page 1")));
}

TEST_F(Painting, AFaxHasEachPageInDots) {
    const Pages pages = layOut(content_);
    ASSERT_TRUE(paintTiff(pages, path("list.tiff")));
    const std::string info = outputOf("tiffinfo " + path("list.tiff"));
    EXPECT_EQ(countOf(info, "TIFF Directory at"), static_cast<int>(pages.pages.size()));
    EXPECT_THAT(info, HasSubstr("Image Width: 1700 Image Length: 2200"));
    EXPECT_THAT(info, HasSubstr("CCITT Group 4"));
    // The dots are those of the document, drawn by another program at the same size.
    ASSERT_TRUE(paintPdf(pages, path("list.pdf")));
    outputOf("cd " + folder_.path() +
             " && pdftoppm -mono -r 200 -f 1 -l 1 -singlefile list.pdf pdf"
             " && tiffcp -c none list.tiff,0 one.tiff && tiff2bw one.tiff bw.tiff");
    const std::string drawn = support::contentsOf(path("pdf.pbm"));
    const std::string dots = support::contentsOf(path("one.tiff"));
    ASSERT_GT(drawn.size(), PageBytes);
    ASSERT_GT(dots.size(), PageBytes);
    const double wanted = dark(std::string_view(drawn).substr(drawn.size() - PageBytes));
    EXPECT_NEAR(dark(std::string_view(dots).substr(8, PageBytes)), wanted, wanted / 4);
}

struct Drawn : Drawable {
    explicit Drawn(Picture picture) : picture_(std::move(picture)) {}
    [[nodiscard]] Picture drawn(float /*width*/, float /*height*/) const override {
        return picture_;
    }
    [[nodiscard]] std::string told() const override { return ""; }
    [[nodiscard]] std::string attribution() const override { return ""; }

private:
    Picture picture_;
};

TEST_F(Painting, APictureIsSeenInItsColoursAndNotBeyondItsEdges) {
    using Step = Picture::Step;
    const auto square = [](float side) {
        return std::vector<float>{0, 0, side, 0, side, side, 0, side};
    };
    const std::vector steps{Step::Move, Step::Line, Step::Line, Step::Line, Step::Close};
    const auto picture = std::make_shared<Drawn>(Picture{
        .width = 100,
        .height = 100,
        .paths = {
            {{.colour = {31, 111, 209}}, steps, square(500)},
            {{.filled = false, .colour = {255, 255, 255}, .thick = 40}, steps, square(100)}}});
    Pages pages;
    pages.pages.emplace_back().pictures.push_back({100, 100, 100, 100, picture});
    ASSERT_TRUE(paintPdf(pages, path("map.pdf")));
    ASSERT_TRUE(paintTiff(pages, path("map.tiff")));
    outputOf("cd " + folder_.path() +
             " && pdftoppm -r 72 -singlefile map.pdf map && tiffcp -c none map.tiff one.tiff");
    const std::string drawn = support::contentsOf(path("map.ppm"));
    const auto at = [&](std::size_t x, std::size_t y) {
        return drawn.substr(drawn.size() - (792 - y) * 612 * 3 + x * 3, 3);
    };
    EXPECT_EQ(at(150, 150), "\x1f\x6f\xd1");
    for (const auto& [x, y] : {std::pair(110, 150), {190, 150}, {210, 150}, {150, 90}}) {
        EXPECT_EQ(at(static_cast<std::size_t>(x), static_cast<std::size_t>(y)), "\xff\xff\xff");
    }
    // On a fax the blue is black: 60 points of 200 dots to the inch each way.
    const std::string dots = support::contentsOf(path("one.tiff"));
    EXPECT_NEAR(dark(std::string_view(dots).substr(8, PageBytes)), std::pow(60 * 200 / 72.0, 2),
                700);
}

TEST_F(Painting, WhatIsStoppedOrFailsLeavesNoFile) {
    const Pages pages = layOut(content_);
    for (const auto& paint : {&paintPdf, &paintTiff}) {
        EXPECT_FALSE(paint(pages, path("half"), [](double done) { return done < 0.4; }));
        EXPECT_FALSE(std::filesystem::exists(path("half")));
        EXPECT_EQ(support::errorOf([&] { return paint(pages, path("no/such"), {}); }),
                  base::errors::PathFileAccess);
    }
    EXPECT_EQ(support::errorOf([&] { return paintPdf(pages, "/dev/full"); }),
              base::errors::PathFileAccess);
    EXPECT_TRUE(std::filesystem::exists("/dev/full"));
}

}  // namespace
}  // namespace reports
