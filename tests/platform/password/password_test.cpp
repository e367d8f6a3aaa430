#include "platform/password/password.h"

#include <gtest/gtest.h>

#include "platform/base/error.h"

namespace password {

TEST(Password, MatchesItsOwnHashAlone) {
    const std::string hash = hashed("Überlandbus 7");
    EXPECT_TRUE(hash.starts_with("$y$"));
    EXPECT_EQ(kindOf(hash), Stored::Hash);
    EXPECT_NE(hash, hashed("Überlandbus 7"));
    EXPECT_TRUE(matches("Überlandbus 7", hash));
    EXPECT_TRUE(matches("Überlandbus 7", hash + "  "));
    EXPECT_FALSE(matches("Überlandbus 8", hash));
    EXPECT_FALSE(matches("", hash));
    EXPECT_FALSE(matches(std::string("Überlandbus 7\0x", 16), hash));
}

TEST(Password, NeverTakesAStoredTextForAPassword) {
    for (const char* stored : {"secret", "secretpasswd1", "*", "!", "$9$secret$x"}) {
        EXPECT_EQ(kindOf(stored), Stored::Foreign) << stored;
        EXPECT_FALSE(matches(stored, stored)) << stored;
    }
    EXPECT_EQ(kindOf("  "), Stored::None);
    EXPECT_FALSE(matches("", ""));
    EXPECT_FALSE(matches(" ", " "));
}

TEST(Password, RefusesWhatTheLibraryWouldCutOff) {
    EXPECT_NO_THROW((void)hashed(std::string(Longest, 'x')));
    EXPECT_THROW((void)hashed(std::string(Longest + 1, 'x')), base::RunTimeError);
    EXPECT_THROW((void)hashed(std::string("a\0b", 3)), base::RunTimeError);
    EXPECT_THROW((void)hashed(""), base::RunTimeError);
}

}  // namespace password
