#include "reports/preview/pagetext.h"

#include <gmock/gmock.h>

#include "platform/base/text.h"
#include "reports/page/fonts.h"

namespace reports {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Adds a box with its real width.
const Box& addBox(Page& page, std::string_view text, Box box) {
    box.size = 10;
    box.rightToLeft = startsRightToLeft(text);
    box.at = static_cast<std::uint32_t>(page.text.size());
    box.length = static_cast<std::uint32_t>(text.size());
    box.width = Fonts::instance().width(box.face, text) * box.size;
    page.text += text;
    return page.boxes.emplace_back(box);
}

/// A cell in three faces beside a number; below it a cell of two lines beside one that is read from
/// the right.
std::vector<Page> twoPages() {
    std::vector<Page> pages(2);
    for (Page& page : pages) {
        addBox(page, "Go Street", {.x = 50, .baseline = 20, .role = Role::Artifact});
        float x = 50;
        x += addBox(page, "Follow ", {.x = x, .baseline = 50, .row = 1}).width;
        x += addBox(page, "65th Street", {.x = x, .baseline = 50, .face = Face::Bold, .row = 1})
                 .width;
        addBox(page, ", go west", {.x = x, .baseline = 50, .row = 1});
        addBox(page, "1.6", {.x = 400, .baseline = 50, .row = 1, .column = 1});
        addBox(page, "ÉCOLE Saint", {.x = 50, .baseline = 70, .row = 2});
        addBox(page, "Martin", {.x = 50, .baseline = 82, .row = 2});
        addBox(page, "שלום עולם", {.x = 300, .baseline = 70, .row = 2, .column = 1});
    }
    return pages;
}

std::vector<std::string> found(const std::vector<Page>& pages, std::string_view text) {
    std::vector<std::string> texts;
    for (const TextRange& hit : findText(pages, text)) {
        texts.push_back(std::to_string(hit.from.page) + ":" + textBetween(pages, hit));
    }
    return texts;
}

TEST(PageText, IsFoundWithoutCaseOverFacesOfALineButNotInWhatEachPageRepeats) {
    const auto pages = twoPages();
    EXPECT_THAT(found(pages, "street, GO"), ElementsAre("0:Street, go", "1:Street, go"));
    EXPECT_THAT(found(pages, "go"), ElementsAre("0:go", "1:go"));
    EXPECT_THAT(found(pages, "école s"), ElementsAre("0:ÉCOLE S", "1:ÉCOLE S"));
    EXPECT_THAT(found(pages, "עולם"), ElementsAre("0:עולם", "1:עולם"));
    EXPECT_THAT(found(pages, "westx"), IsEmpty());
    EXPECT_THAT(found(pages, ""), IsEmpty());
}

TEST(PageText, IsFoundInPagesThatCameLaterAsInAllAtOnce) {
    const auto pages = twoPages();
    for (const auto* text : {"e", "O", "1.6", "É", "st"}) {
        auto together = findText({pages.front()}, text);
        const auto later = findText(pages, text, 1);
        together.insert(together.end(), later.begin(), later.end());
        EXPECT_EQ(together, findText(pages, text)) << text;
    }
}

TEST(PageText, IsCopiedWithItsColumnsApartAndItsWrappedLinesTogether) {
    const auto pages = twoPages();
    const std::string page = "Follow 65th Street, go west\t1.6\nÉCOLE Saint Martin\tשלום עולם";
    EXPECT_EQ(textBetween(pages, wholeText(pages)), page + "\n" + page);
    EXPECT_EQ(textBetween(pages, wordAt(pages, {0, 2, 6})), "Street");
}

/// Each half of a letter's area leads to the place before or behind it.
TEST(PageText, StandsWhereAPointFindsIt) {
    const auto pages = twoPages();
    for (std::size_t box = 1; box < pages[0].boxes.size(); ++box) {
        const auto text = pages[0].textOf(pages[0].boxes[box]);
        const bool back = pages[0].boxes[box].rightToLeft;
        for (std::size_t byte = 0, next = 0; byte < text.size(); byte = next) {
            next = byte + base::characterSize(text.substr(byte));
            const auto areas = areasOf(pages, {{0, box, byte}, {0, box, next}}, 0);
            ASSERT_EQ(areas.size(), 1U) << text;
            const auto at = [&](bool second) {
                const float quarters = second != back ? 0.75F : 0.25F;
                return placeAt(pages, 0, areas[0].x + quarters * areas[0].width,
                               areas[0].y + areas[0].height / 2);
            };
            EXPECT_EQ(at(false), (TextPlace{0, box, byte})) << text;
            EXPECT_EQ(at(true), (TextPlace{0, box, next})) << text;
        }
    }
    EXPECT_EQ(placeAt(pages, 1, 55, 700).box, 6U);
    EXPECT_EQ(placeAt({Page{}}, 0, 10, 10), TextPlace{});
}

}  // namespace
}  // namespace reports
