#include "reports/page/layout.h"

#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "reports/page/characters.h"
#include "reports/page/columns.h"
#include "reports/page/invented.h"

namespace reports {
namespace {

std::string lettersOf(std::string_view text) {
    std::string letters = cleaned(text);
    std::erase(letters, ' ');
    return letters;
}

void expectWhole(const Pages& pages, unsigned seed) {
    for (const Page& page : pages.pages) {
        for (const Box& box : page.boxes) {
            const auto text = page.textOf(box);
            EXPECT_TRUE(isClean(text));
            EXPECT_GE(box.x, 20) << seed << ' ' << text;
            EXPECT_LE(box.x + box.width, pages.size.width - 20) << seed << ' ' << text;
            EXPECT_GE(box.baseline, 20);
            EXPECT_LE(box.baseline, pages.size.height - 15) << seed << ' ' << text;
        }
        for (std::size_t a = 0; a < page.boxes.size(); ++a) {
            for (std::size_t b = a + 1; b < std::min(a + 40, page.boxes.size()); ++b) {
                const Box &one = page.boxes[a], &other = page.boxes[b];
                const bool isBeside = std::abs(one.baseline - other.baseline) > 4 ||
                                      one.x + one.width <= other.x + 0.3F ||
                                      other.x + other.width <= one.x + 0.3F;
                EXPECT_TRUE(isBeside)
                    << seed << ' ' << page.textOf(one) << " over " << page.textOf(other);
            }
        }
    }
}

/// The letters of each row's cells, as the pages have them.
std::map<std::uint32_t, std::string> shownRows(const Pages& pages) {
    std::map<std::uint32_t, std::string> rows;
    for (const Page& page : pages.pages) {
        for (const Box& box : page.boxes) {
            rows[box.role == Role::Cell ? box.row : 0] += lettersOf(page.textOf(box));
        }
    }
    return rows;
}

base::Value valueOf(CellKind kind, Texts& texts) {
    if (texts.upTo(6) == 0) {
        return {};
    }
    switch (kind) {
        case CellKind::Text:
            return texts.text();
        case CellKind::Days:
            return "MT.TF";
        case CellKind::Time:
        case CellKind::Date:
        case CellKind::DateTime:
            return base::Date::of(2026, 11, 1 + texts.upTo(27), texts.upTo(23), 30);
        default:
            return texts.upTo(9) == 0 ? 123456789012.5 : texts.upTo(130) * 1.0;
    }
}

class AnyReport : public testing::TestWithParam<unsigned> {
protected:
    void anyPaper(Invented& content) {
        content.chosen.paper = texts_.upTo(1) == 0 ? Paper::A4 : Paper::Letter;
        content.chosen.landscape = texts_.upTo(1) == 0;
        content.said.confidential = texts_.upTo(1) == 0;
        content.said.selection = texts_.name();
        content.said.foot = texts_.name();
    }
    Row anyRow(const Report& report) {
        Row row;
        for (const Column& column : report.columns) {
            row.cells.push_back(valueOf(column.kind, texts_));
        }
        return row;
    }

    Texts texts_{GetParam()};
};

TEST_P(AnyReport, AsAListLosesNothingAndKeepsItsPlaces) {
    Invented content;
    anyPaper(content);
    for (int count = 1 + texts_.upTo(15); count > 0; --count) {
        Column& column =
            content.addColumn(static_cast<CellKind>(texts_.upTo(8)), 20 + texts_.upTo(90),
                              texts_.upTo(2) == 0 ? "At school" : "Unbreakable");
        column.grows = texts_.upTo(2) == 0;
        column.condensed = texts_.upTo(3) == 0;
        column.strong = texts_.upTo(3) == 0;
    }
    std::map<std::uint32_t, std::string> wanted;
    std::uint32_t row = 0;
    for (int count = texts_.upTo(80); count > 0; --count) {
        if (texts_.upTo(9) == 0) {
            content.items.emplace_back(
                GroupHead{static_cast<std::size_t>(texts_.upTo(1)), texts_.text(), "9 runs"});
        }
        const Row& added = std::get<Row>(content.items.emplace_back(anyRow(content.definition)));
        std::string& letters = wanted[++row];
        for (std::size_t at = 0; at < added.cells.size(); ++at) {
            letters += lettersOf(cellText(content.definition.columns[at].kind, added.cells[at]));
        }
        if (texts_.upTo(5) == 0) {
            letters +=
                lettersOf(std::get<Remark>(content.items.emplace_back(Remark{texts_.text()})).text);
        }
        if (texts_.upTo(9) == 0) {
            content.items.emplace_back(Totals{0, texts_.text(), anyRow(content.definition).cells});
        }
    }
    const Pages pages = layOut(content);
    expectWhole(pages, GetParam());
    auto shown = shownRows(pages);
    for (const auto& [number, letters] : wanted) {
        // A row that goes on on the next page has its cells in halves there.
        std::ranges::sort(shown[number]);
        std::string sorted = letters;
        std::ranges::sort(sorted);
        EXPECT_EQ(shown[number], sorted);
    }
}

TEST_P(AnyReport, AsASheetLosesNothingAndKeepsItsPlaces) {
    Invented content(Form::Sheet);
    anyPaper(content);
    std::string wanted;
    for (int sheet = texts_.upTo(2); sheet >= 0; --sheet) {
        content.items.emplace_back(
            SheetHead{"107-1",
                      texts_.name(),
                      texts_.name(),
                      "Bus 107",
                      texts_.name(),
                      {{"DRIVER", texts_.name()}, {"BELL", "6:40 AM"}, {"AIDE", texts_.name()}}});
        for (int count = 1; count <= texts_.upTo(60); ++count) {
            SheetStop stop;
            stop.kind = static_cast<SheetStop::Kind>(texts_.upTo(9) > 1 ? 0 : texts_.upTo(2));
            stop.number = count;
            stop.time = base::Date::timeOfDay(7, count % 60);
            stop.place = texts_.text();
            stop.corner = texts_.text();
            stop.leftSide = texts_.upTo(3) == 0;
            stop.note = texts_.upTo(5) == 0 ? texts_.text() : "";
            for (int name = texts_.upTo(3) == 0 ? texts_.upTo(90) : 0; name > 0; --name) {
                stop.names.push_back("Garza, Ann");
                wanted += stop.names.back();
            }
            wanted += stop.place + stop.corner + stop.note;
            content.items.emplace_back(stop);
            SheetWay way{static_cast<SheetWay::Sign>(texts_.upTo(5)), {}, 1.5};
            way.pieces = {{"Follow ", false}, {texts_.text(), true}};
            wanted += way.pieces[0].text + way.pieces[1].text;
            content.items.emplace_back(way);
        }
    }
    const Pages pages = layOut(content);
    expectWhole(pages, GetParam());
    std::map<char, long> left;
    for (const auto& [row, letters] : shownRows(pages)) {
        for (const char c : letters) {
            ++left[c];
        }
    }
    for (const char c : lettersOf(wanted)) {
        --left[c];
    }
    EXPECT_THAT(left, testing::Each(testing::Pair(testing::_, testing::Ge(0))));
}

INSTANTIATE_TEST_SUITE_P(Random, AnyReport, testing::Range(0U, 12U));

std::vector<std::string> textsOf(const Page& page, Role role) {
    std::vector<std::string> texts;
    for (const Box& box : page.boxes) {
        if (box.role == role) {
            texts.emplace_back(page.textOf(box));
        }
    }
    return texts;
}

TEST(List, TearsNoCodeApartWhileItsTypeCanGetSmaller) {
    std::vector<Column> columns(14, {.caption = "A", .width = 60, .grows = true});
    columns[0] = {.caption = "A", .width = 10, .grows = true, .unbroken = "101-12345"};
    const Table table = tableOf(columns, 36, 576);
    const auto& code = table.columns[0];
    EXPECT_GE(code.right - code.left + 0.01F,
              widthOf(table.narrow ? Face::Condensed : Face::Regular, 10 * table.scale,
                      columns[0].unbroken));
}

TEST(List, KeepsGroupsTogetherAndSaysWhereTheyGoOn) {
    Invented content;
    content.addColumn(CellKind::Whole, 60, "Run");
    content.definition.columns.back().grows = true;
    for (int group = 0; group < 120; ++group) {
        content.addGroup("School " + std::to_string(group), 1 + group % 37);
    }
    const Pages pages = layOut(content);
    ASSERT_GT(pages.pages.size(), 20U);
    int marks = 0;
    for (const Page& page : pages.pages) {
        EXPECT_THAT(textsOf(page, Role::Artifact), testing::Contains("RUN"));
        std::vector<std::string> kinds;
        for (const Box& box : page.boxes) {
            const bool isRow = box.role == Role::Cell && box.row > 0;
            const bool isTotals =
                box.role == Role::Cell && box.row == 0 && box.face == Face::Italic;
            const bool isAgain = box.role == Role::Artifact && page.textOf(box) == "continued";
            kinds.push_back(isRow                    ? "r"
                            : isTotals               ? "t"
                            : isAgain                ? "c"
                            : box.role == Role::Head ? "h"
                                                     : "");
        }
        std::string order;
        for (const std::string& kind : kinds) {
            order += kind;
        }
        marks += static_cast<int>(page.marks.size());
        // A head is a title and its count. One that does not begin a group says so.
        EXPECT_TRUE(order.starts_with("hh") || order.starts_with("crr")) << order;
        EXPECT_FALSE(order.ends_with("hh") || order.ends_with("hhr") || order.ends_with("hhrr"))
            << order;
        EXPECT_FALSE(order.starts_with("crt")) << order;
    }
    EXPECT_EQ(marks, 120);
    const auto last = textsOf(pages.pages.back(), Role::Artifact).back();
    EXPECT_EQ(last, "Page " + std::to_string(pages.pages.size()) + " of " +
                        std::to_string(pages.pages.size()));
}

TEST(List, CanBeReadWhileItIsLaidOutAndSaysWhenThereIsNothing) {
    Invented content;
    content.addColumn(CellKind::Whole, 60);
    content.addGroup("School", 200);
    content.items.emplace_back(GroupHead{0, "Own page", "", true});
    content.items.emplace_back(Row{{1}});
    Layout layout(content);
    EXPECT_TRUE(layout.layPage());
    EXPECT_EQ(textsOf(layout.pages().pages.front(), Role::Artifact).back(), "Page 1");
    while (layout.layPage()) {
    }
    EXPECT_FALSE(layout.layPage());
    EXPECT_EQ(textsOf(layout.pages().pages.back(), Role::Head).front(), "Own page");
    int asked = 0;
    content.rewind();
    EXPECT_EQ(layOut(content, [&](double) { return ++asked < 2; }).pages.size(), 2U);
    Invented nothing;
    EXPECT_THAT(textsOf(layOut(nothing).pages.at(0), Role::Cell),
                testing::Contains("Nothing found."));
}

TEST(SheetPages, CountTheirPagesEachForItselfAndRepeatTheRun) {
    Invented content(Form::Sheet);
    for (const int stops : {3, 60}) {
        content.items.emplace_back(
            SheetHead{"107-" + std::to_string(stops), "School", "", "Bus 7", "", {}});
        for (int number = 1; number <= stops; ++number) {
            SheetStop stop;
            stop.number = number;
            stop.place = "Stop";
            content.items.emplace_back(stop);
            content.items.emplace_back(SheetWay{SheetWay::Sign::Left, {{"Way", false}}, 1.0});
        }
    }
    const Pages pages = layOut(content);
    ASSERT_GT(pages.pages.size(), 3U);
    EXPECT_EQ(textsOf(pages.pages[0], Role::Artifact).back(), "Page 1 of 1");
    EXPECT_THAT(textsOf(pages.pages[0], Role::Head), testing::ElementsAre("107-3", "School"));
    const auto second = textsOf(pages.pages[2], Role::Artifact);
    EXPECT_EQ(second.back(), "Page 2 of " + std::to_string(pages.pages.size() - 1));
    EXPECT_THAT(second, testing::IsSupersetOf({"107-60", "Bus 7", "ON BUS"}));
    for (const Page& page : pages.pages) {
        const auto cells = textsOf(page, Role::Cell);
        EXPECT_TRUE(std::ranges::find(cells.rbegin(), cells.rend(), "Way") <
                    std::ranges::find(cells.rbegin(), cells.rend(), "Stop"));
        EXPECT_EQ(page.marks.size(),
                  &page == &pages.pages[0] || &page == &pages.pages[1] ? 1U : 0U);
    }
}

/// Those of all pages, whichever they stand on.
std::vector<std::string> cellsOf(const std::vector<Page>& pages) {
    std::vector<std::string> cells;
    for (const Page& page : pages) {
        const auto more = textsOf(page, Role::Cell);
        cells.insert(cells.end(), more.begin(), more.end());
    }
    return cells;
}

struct Square : Drawable {
    [[nodiscard]] Picture drawn(float width, float height) const override {
        return {.width = width, .height = height};
    }
    [[nodiscard]] std::string told() const override { return "A square"; }
    [[nodiscard]] std::string attribution() const override { return "© Somebody"; }
};

TEST(SheetPages, HaveTheirMapBehindTheLastLineWhereThereIsRoomForIt) {
    for (int stops = 0; stops <= 150; stops += 3) {
        Invented content(Form::Sheet);
        content.items.emplace_back(SheetHead{"107", "School", "", "Bus 7", "", {}});
        for (int number = 1; number <= stops; ++number) {
            content.items.emplace_back(SheetStop{.number = number, .place = "Stop"});
        }
        content.items.emplace_back(SheetRemark{{{"The end"}}});
        const auto without = layOut(content).pages;
        content.rewind();
        content.items.emplace_back(SheetMap{[] { return std::make_shared<Square>(); }});
        const auto pages = layOut(content).pages;
        ASSERT_LE(pages.size(), without.size() + 1) << stops;
        EXPECT_EQ(cellsOf(pages), cellsOf(without));
        const Page& last = pages.back();
        ASSERT_EQ(last.pictures.size(), 1U);
        const auto& [x, y, width, height, drawable] = last.pictures.front();
        EXPECT_GE(height, 150);
        float credit = 0;
        for (const Box& box : last.boxes) {
            EXPECT_TRUE(box.role != Role::Cell || box.baseline < y || box.x > x + width);
            credit = last.textOf(box) == "© Somebody" ? box.baseline : credit;
        }
        EXPECT_GT(credit, y + height);
        EXPECT_LT(credit, 792 - 36);
    }
}

}  // namespace
}  // namespace reports
