#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "reports/formats/texts.h"

namespace reports {

TEST(Letters, WidthsAreThoseOfAScreenOfLetters) {
    EXPECT_EQ(columnsOf("François"), 8U);
    EXPECT_EQ(columnsOf("e\u0301"), 1U);
    EXPECT_EQ(columnsOf("学校"), 4U);
    EXPECT_EQ(columnsOf("🚌"), 2U);
    EXPECT_EQ(columnsOf("שָׁלוֹם"), 4U);
}

TEST(Letters, WrappingLosesNothingAndKeepsToItsWidth) {
    const std::vector<std::string> letters = {"a", "b", " ", "é", "e\u0301", "学", "ש", "\n"};
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
        std::string text;
        for (auto left = random() % 60; left > 0; --left) {
            text += letters[random() % letters.size()];
        }
        const std::size_t width = 2 + random() % 12;
        std::string whole;
        for (const std::string& line : wrapped(text, width)) {
            EXPECT_LE(columnsOf(line), width);
            whole += line;
        }
        std::erase(whole, ' ');
        std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
        EXPECT_EQ(whole, text);
    }
    EXPECT_THAT(wrapped("12 Rue de la Gare", 8), testing::ElementsAre("12 Rue", "de la", "Gare"));
}

}  // namespace reports
