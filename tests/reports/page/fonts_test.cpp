#include "reports/page/fonts.h"

#include <numeric>

#include <gtest/gtest.h>

#include "reports/page/flow.h"
#include "reports/page/invented.h"
#include "reports/page/wrap.h"

namespace reports {
namespace {

TEST(Fonts, MeasuresAsItShapesAndCoversEveryLetter) {
    Texts texts(1);
    for (int count = 0; count < 100; ++count) {
        const std::string text = texts.text();
        for (const Face face : {Face::Regular, Face::Bold, Face::Italic, Face::Condensed}) {
            const bool turned = startsRightToLeft(text);
            const Shaped shaped = Fonts::instance().shape(face, text, turned);
            EXPECT_NEAR(shaped.width, Fonts::instance().width(face, text), 0.02F) << text;
            float x = 0;
            for (const GlyphRun& run : shaped.runs) {
                for (const Glyph& glyph : run.glyphs) {
                    EXPECT_LT(glyph.cluster, text.size());
                    x += glyph.advance;
                }
            }
            EXPECT_NEAR(x, shaped.width, 0.02F);
        }
    }
}

std::vector<std::uint32_t> clustersOf(std::string_view text, bool rightToLeft) {
    std::vector<std::uint32_t> clusters;
    for (const GlyphRun& run : Fonts::instance().shape(Face::Regular, text, rightToLeft).runs) {
        for (const Glyph& glyph : run.glyphs) {
            clusters.push_back(glyph.cluster);
        }
    }
    return clusters;
}

TEST(Fonts, ShowsWhatRunsFromRightToLeftInItsOrder) {
    EXPECT_THAT(clustersOf("ab", false), testing::ElementsAre(0, 1));
    EXPECT_THAT(clustersOf("שר", true), testing::ElementsAre(2, 0));
    // The number keeps its own order; which half comes first is the line's direction.
    EXPECT_THAT(clustersOf("ש 15", true), testing::ElementsAre(3, 4, 2, 0));
    EXPECT_THAT(clustersOf("ש a", false), testing::ElementsAre(0, 2, 3));
    EXPECT_THAT(clustersOf("ש a", true), testing::ElementsAre(3, 2, 0));
    EXPECT_TRUE(startsRightToLeft("15 مدرسة at 5th"));
    EXPECT_FALSE(startsRightToLeft("at 5th مدرسة"));
}

std::string withoutBlanks(std::string_view text) {
    std::string kept;
    for (const char c : text) {
        kept += c == ' ' || c == '\n' ? "" : std::string(1, c);
    }
    return kept;
}

TEST(Lines, HoldEveryLetterWithinTheirWidth) {
    Texts texts(2);
    for (int count = 0; count < 100; ++count) {
        const std::string text = texts.text();
        const auto width = static_cast<float>(20 + texts.upTo(200));
        std::string joined;
        for (const Line& line : wrapped(Face::Regular, 10, text, width)) {
            joined += line.text;
            EXPECT_LE(line.width, width + 0.1F) << line.text;
        }
        EXPECT_EQ(withoutBlanks(joined), withoutBlanks(text));
    }
    // Letters have other forms where a word is cut.
    const std::string_view joined = "متحدةسيارةمدرسةالنور";
    for (int pixels = 20; pixels < 80; ++pixels) {
        const auto width = static_cast<float>(pixels);
        const auto first = joined.substr(0, fitting(Face::Regular, 10, joined, width));
        EXPECT_LE(widthOf(Face::Regular, 10, first), width);
    }
    EXPECT_EQ(wrapped(Face::Regular, 10, "one-two-three", 48).front().text, "one-two-");
    EXPECT_EQ(fitting(Face::Regular, 10, "e\u0301e\u0301", 1), std::string("e\u0301").size());
}

TEST(Lines, OfASentenceOfSeveralLooksAreBrokenAtItsBlanksOnly) {
    const Style plain, strong{Face::Bold};
    const std::vector<Span> spans = {
        {"Turn onto ", plain}, {"65th Street", strong}, {", go", plain}};
    for (int pixels = 20; pixels < 200; pixels += 7) {
        const auto width = static_cast<float>(pixels);
        std::string joined;
        for (const FlowLine& line : flowed(spans, width)) {
            EXPECT_LE(widthOf(line), width + 0.1F);
            for (const FlowPart& part : line) {
                joined += part.line.text;
            }
            joined += '|';
        }
        EXPECT_EQ(joined.find("|,"), std::string::npos) << joined;
        std::erase(joined, '|');
        EXPECT_EQ(withoutBlanks(joined), "Turnonto65thStreet,go");
    }
    EXPECT_EQ(flowed(spans, 500).size(), 1U);
    EXPECT_FLOAT_EQ(
        widthOf(flowed(spans, 500).front()),
        widthOf(plain, "Turn onto ") + widthOf(strong, "65th Street") + widthOf(plain, ", go"));
}

}  // namespace
}  // namespace reports
