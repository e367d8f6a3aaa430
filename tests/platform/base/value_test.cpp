#include "platform/base/value.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "platform/base/boundedarray.h"
#include "platform/base/error.h"
#include "platform/base/fold.h"
#include "platform/base/text.h"
#include "support/errors.h"

namespace base {

using support::errorOf;

TEST(Value, DefaultTexts) {
    EXPECT_EQ(Value(true).asText(), "True");
    EXPECT_EQ(Value(61.5).asText(), "61.5");
    EXPECT_EQ(Value(60.0).asText(), "60");
    EXPECT_EQ(Value(-0.0).asText(), "0");
    EXPECT_EQ(Value(0.1 + 0.2).asText(), "0.3");
    EXPECT_EQ(Value(Date::timeOfDay(8, 0)).asText(), "8:00:00 AM");
}

TEST(Value, ConversionsRaiseTheRunTimesErrors) {
    EXPECT_EQ(errorOf([] { (void)Value().asText(); }), errors::InvalidUseOfNull);
    EXPECT_EQ(errorOf([] { (void)Value().asInteger(); }), errors::InvalidUseOfNull);
    EXPECT_EQ(errorOf([] { (void)Value("12x").asNumber(); }), errors::TypeMismatch);
    EXPECT_EQ(errorOf([] { (void)Value("nan").asNumber(); }), errors::TypeMismatch);
    EXPECT_EQ(errorOf([] { (void)Value("maybe").asBoolean(); }), errors::TypeMismatch);
    EXPECT_EQ(errorOf([] { (void)Value(1e300).asInteger(); }), errors::Overflow);
}

TEST(Value, WholeNumbersRoundHalvesToEven) {
    EXPECT_EQ(Value(0.5).asInteger(), 0);
    EXPECT_EQ(Value(1.5).asInteger(), 2);
    EXPECT_EQ(Value(2.5).asInteger(), 2);
    EXPECT_EQ(Value(-1.5).asInteger(), -2);
    EXPECT_EQ(Value(" 12 ").asInteger(), 12);
}

TEST(Value, BooleanWordsAndNumbers) {
    EXPECT_TRUE(Value("tRue").asBoolean());
    EXPECT_FALSE(Value(" false ").asBoolean());
    EXPECT_TRUE(Value("-1").asBoolean());
    EXPECT_FALSE(Value("0").asBoolean());
    EXPECT_EQ(Value(true).asNumber(), -1);
}

TEST(Text, LeadingNumberStopsAtTheFirstOtherCharacter) {
    EXPECT_EQ(leadingNumber(" 12ab"), 12);
    EXPECT_EQ(leadingNumber("-3.5 miles"), -3.5);
    EXPECT_EQ(leadingNumber("x12"), 0);
    EXPECT_EQ(leadingNumber("infinity"), 0);
    EXPECT_EQ(leadingNumber(""), 0);
}

TEST(Text, ABlankCodeIsOneBlank) {
    for (const auto& [text, code] :
         {std::pair{"R1  ", "R1"}, {" R1", " R1"}, {"   ", " "}, {"", " "}}) {
        EXPECT_EQ(codeOf(text), code) << '<' << text << '>';
    }
}

TEST(Text, LetterCaseIsThatOfEveryAlphabet) {
    EXPECT_EQ(folded("ÉCOLE Łódź ΣΑΣ 😀 \xff"), "école łódź σασ 😀 \xff");
    const std::string edges = "\u07ff\u0800\uffff\U00010000\U0010ffff";  // of one byte more
    EXPECT_EQ(folded(edges), edges);
    EXPECT_EQ(upperCase("école ß") + lowerCase("ŁÓDŹ"), "ÉCOLE ßłódź");
    EXPECT_LT(compareFolded("éA", "Éb"), 0);
    EXPECT_EQ(compareFolded("ДА", "да"), 0);
    EXPECT_GT(compareFolded("Éa", "é"), 0);
}

TEST(Text, CharactersAreNeverCutApart) {
    EXPECT_EQ(firstCharacters("aä€😀x", 4), "aä€😀");
    EXPECT_EQ(firstCharacters("aä", 9), "aä");
    EXPECT_EQ(characterStart("aä€", 5), 3U);
    EXPECT_EQ(characterStart("aä€", 6), 6U);
    EXPECT_EQ(characterSize(std::string(9, '\x80')), 4U) << "no text: at most four bytes";
}

TEST(BoundedArray, BothBoundsAreIncludedAndNothingBeyond) {
    BoundedArray<int, 1, 30> runs;
    runs[1] = 7;
    runs[30] = 9;
    EXPECT_EQ(runs[1] + runs[30], 16);
    EXPECT_EQ(errorOf([&] { runs[0] = 1; }), errors::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { runs[31] = 1; }), errors::SubscriptOutOfRange);
    runs.erase();
    EXPECT_EQ(runs[30], 0);
}

TEST(Value, SinglesKeepTheirShortText) {
    EXPECT_EQ(numberText(singleOf(60.6 / 60)), "1.01");
    EXPECT_EQ(numberText(singleOf(1.0 / 3)), "0.33333334");
    for (const double number : {0.0, -2.0, 0.1, 1.0 / 3, 126.6731, 16777217.0}) {
        EXPECT_EQ(static_cast<float>(singleOf(number)), static_cast<float>(number)) << number;
    }
}

TEST(Value, NumbersAreWrittenWithFifteenDigitsAtMost) {
    const double numbers[] = {0.1,           -0.25,    61.5,   60,     1.0 / 3, 2.0 / 3,
                              1e15,          1e14 + 1, 1e-4,   1e-5,   1234567, 0.1 + 0.2,
                              123456789.125, -1e300,   5e-324, 99.995, 1e16,    4503599627370497.5};
    for (const double number : numbers) {
        EXPECT_EQ(numberText(number), fmt::format("{:.15g}", number));
    }
    for (int i = 1; i < 20000; ++i) {
        const double number = i * 0.37 / (i % 7 + 1);
        ASSERT_EQ(numberText(number), fmt::format("{:.15g}", number));
    }
}

}  // namespace base
