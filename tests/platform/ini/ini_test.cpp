#include "platform/ini/ini.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/temporaryfolder.h"

namespace {

using namespace std::string_literals;

std::string valueOf(const std::string& profile, const std::string& key = "key") {
    return ini::valueIn(profile, "Section", key, "");
}

TEST(Ini, FindsTheFirstSectionAndTheFirstKeyWithoutRegardToCase) {
    const std::string profile =
        "key=outside\n[Other]\nkey=other\n[ sEcTiOn ]\n  KEY  =  first  \nkey=second\n"
        "[Section]\nkey=third\nonly=later\n";
    EXPECT_EQ(valueOf(profile), "first");
    EXPECT_EQ(valueOf(profile, "only"), "");
    EXPECT_EQ(ini::valueIn(profile, "OTHER", "Key", ""), "other");
}

TEST(Ini, ReadsAValueAsItIsWritten) {
    const std::string fallback = " fallback";
    for (const auto& [lines, value] :
         std::vector<std::pair<std::string, std::string>>{{"key=\nkey=later\n", ""},
                                                          {"other=1\n", fallback},
                                                          {"key= \" a b \" ", " a b "},
                                                          {"key='a'", "a"},
                                                          {"key=\"\"a\"\"", "\"a\""},
                                                          {"key=\"a'", "\"a'"},
                                                          {"key=\"", "\""},
                                                          {"key=\"\"", ""},
                                                          {";key=comment\nkey=a=b;c", "a=b;c"},
                                                          {"other=b\r\nkey=a\r\n", "a"},
                                                          {"other=b\rkey=a", "a"},
                                                          {"key=a\0b\n"s, "a"}}) {
        EXPECT_EQ(ini::valueIn("[Section]\n" + lines, "Section", "key", fallback + "  "), value)
            << lines;
    }
    EXPECT_EQ(ini::valueIn("", "Section", "key", fallback), fallback);
    EXPECT_EQ(ini::valueIn("[Section\nkey=1", "Section", "key", fallback), fallback);
}

TEST(Ini, CutsAValueAt255Characters) {
    EXPECT_EQ(valueOf("[Section]\nkey=" + std::string(255, 'x')), std::string(255, 'x'));
    EXPECT_EQ(valueOf("[Section]\nkey=" + std::string(256, 'x')), std::string(255, 'x'));
    EXPECT_EQ(valueOf("[Section]\nkey=\"" + std::string(256, 'x') + "\""), std::string(255, 'x'));
    EXPECT_EQ(valueOf("[Section]\nkey=" + std::string(1'000'000, 'x')).size(), 255U);
}

TEST(Ini, ReadsByteOrderMarks) {
    EXPECT_EQ(valueOf(ini::decoded("\xEF\xBB\xBF[Section]\nkey=ä")), "ä");
    const std::string utf16 = "[\0S\0e\0c\0t\0i\0o\0n\0]\0\n\0k\0e\0y\0=\0\xE4\0\x3D\xD8\x00\xDE"s;
    EXPECT_EQ(valueOf(ini::decoded("\xFF\xFE" + utf16)), "ä\xF0\x9F\x98\x80");
    std::string bigEndian = utf16;
    for (std::size_t i = 0; i + 1 < bigEndian.size(); i += 2) {
        std::swap(bigEndian[i], bigEndian[i + 1]);
    }
    EXPECT_EQ(valueOf(ini::decoded("\xFE\xFF" + bigEndian)), "ä\xF0\x9F\x98\x80");
    EXPECT_EQ(ini::decoded("\xFF\xFE\x00\xDCx\0y"s), "?x?") << "half a pair, and a byte too few";
}

TEST(Ini, ReadsAFileWhateverTheCaseOfItsNameAndSurvivesOneThatIsNone) {
    const support::TemporaryFolder folder;
    folder.write("Route.INI", "[AppPaths]\ndatapath=/srv/data/");
    EXPECT_EQ(ini::readString("apppaths", "DataPath", "", folder.path() + "route.ini"),
              "/srv/data/");
    EXPECT_EQ(ini::readString("AppPaths", "datapath", "none", folder.path() + "other.ini"), "none");
    std::filesystem::create_directory(folder.path() + "folder.ini");
    EXPECT_EQ(ini::readString("AppPaths", "datapath", "none", folder.path() + "folder.ini"),
              "none");
}

}  // namespace
