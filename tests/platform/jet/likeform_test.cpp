#include <random>
#include <string>

#include <gtest/gtest.h>

#include "platform/base/text.h"
#include "platform/jet/like.h"

namespace jet {

namespace {

/// What like() promises, written as slowly and plainly as it can be.
bool naiveLike(std::string_view text, std::string_view pattern) {
    if (pattern.empty()) {
        return text.empty();
    }
    if (pattern.front() == '%') {
        return naiveLike(text, pattern.substr(1)) ||
               (!text.empty() && naiveLike(text.substr(1), pattern));
    }
    const auto close = pattern.find(']', 1);
    if (pattern.front() != '[' || close == pattern.npos) {
        return !text.empty() &&
               (pattern.front() == '_' ||
                base::equalsNoCase(text.substr(0, 1), pattern.substr(0, 1))) &&
               naiveLike(text.substr(1), pattern.substr(1));
    }
    std::string set = base::lowered(pattern.substr(1, close - 1));
    if (set.empty()) {
        return naiveLike(text, pattern.substr(close + 1));
    }
    if (text.empty()) {
        return false;
    }
    const bool negated = set.size() > 1 && set[0] == '!';
    set.erase(0, negated ? 1 : 0);
    const char c = base::lowered(text.substr(0, 1))[0];
    bool found = false;
    for (std::size_t i = 0; i < set.size() && !found; ++i) {
        const bool range = i + 2 < set.size() && set[i + 1] == '-';
        found = range ? set[i] <= c && c <= set[i + 2] : set[i] == c;
        i += range ? 2 : 0;
    }
    return found != negated && naiveLike(text.substr(1), pattern.substr(close + 1));
}

std::string randomText(std::mt19937& random, std::string_view letters, std::size_t longest) {
    std::string text(random() % (longest + 1), ' ');
    for (char& c : text) {
        c = letters[random() % letters.size()];
    }
    return text;
}

}  // namespace

TEST(Like, AgreesWithThePlainDefinition) {
    std::mt19937 random(7);  // NOLINT: the same cases every time
    int matches = 0;
    for (int i = 0; i < 200'000; ++i) {
        const std::string text = randomText(random, "aAbcB-!] ", 7);
        const std::string pattern = randomText(random, "aAbB%%__[[]]!-c ", 9);
        ASSERT_EQ(like(text, pattern), naiveLike(text, pattern))
            << "'" << text << "' like '" << pattern << "'";
        matches += like(text, pattern) ? 1 : 0;
    }
    EXPECT_GT(matches, 2000);
}

TEST(Like, TakesOneCharacterHoweverManyBytes) {
    EXPECT_TRUE(like("Göring", "G_ring") && like("Zoë", "ZO[ÄÖÜË]") && like("é", "[à-ü]"));
    EXPECT_FALSE(like("Zoë", "Zo[!äöüë]"));
}

TEST(Like, ManyPercentSignsStayFast) {
    std::string pattern;
    for (int i = 0; i < 200; ++i) {
        pattern += "%a";
    }
    EXPECT_FALSE(like(std::string(20'000, 'a') + "b", pattern + "c"));
}

TEST(Like, FormsSayHowToSearch) {
    for (const auto& [pattern, form] : {std::pair{"12%", LikeForm::Prefix},
                                        {"12%%", LikeForm::Prefix},
                                        {"12", LikeForm::Exact},
                                        {"", LikeForm::Exact},
                                        {"%", LikeForm::Anything},
                                        {"%x", LikeForm::Pattern},
                                        {"1_%", LikeForm::PrefixMore},
                                        {"1[2]%", LikeForm::PrefixBrackets},
                                        {"[2]%", LikeForm::Brackets},
                                        {"a[b%", LikeForm::Prefix},
                                        {"é", LikeForm::Brackets},
                                        {"1é%", LikeForm::PrefixBrackets}}) {
        EXPECT_EQ(likeForm(pattern), form) << pattern;
    }
    EXPECT_EQ(fixedPrefix("a[b%"), "a[b");
}

TEST(Like, APrefixesRangeHoldsWhatThePrefixMatches) {
    std::mt19937 random(11);  // NOLINT: the same cases every time
    for (int i = 0; i < 50'000; ++i) {
        const std::string prefix = randomText(random, "aAzZ@[{~ é", 3);
        const std::string text = randomText(random, "aAzZ@[{~ é", 5);
        const std::string folded = base::lowered(text);
        const bool inRange =
            folded >= base::lowered(prefix) && folded < base::lowered(beyondPrefix(prefix));
        const bool begins = folded.starts_with(base::lowered(prefix));
        ASSERT_EQ(inRange, begins) << "'" << text << "' in the range of '" << prefix << "'";
    }
}

}  // namespace jet
