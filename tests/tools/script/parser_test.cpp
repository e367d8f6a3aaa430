#include "tools/script/parser.h"

#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using script::Command;
using script::parse;
using script::ScriptError;
using script::Verb;
using testing::ElementsAre;

TEST(ScriptParser, ReadsCommandsTextsAndComments) {
    const std::vector<Command> commands = parse(
        "# Find the morning runs\n"
        "\n"
        "start PLANNER one  two\r\n"
        "  set frmTarn.RunDesc Lincoln # 2  North  \n"
        "set frmTarn.RunId \" \\\"a\\\\\\t \"\n"
        "set frmTarn.RunId\n"
        "select frmTarn.lstSchool 1 20 3\n"
        "select frmTarn.lstSchool all\n"
        "until Run.Status Run R1 saved. 500\n"
        "cell F.Grid 2 3 a text\n"
        "answer yes CANCEL ok");
    ASSERT_EQ(commands.size(), 10U);
    EXPECT_EQ(commands[0].verb, Verb::Comment);
    EXPECT_EQ(commands[0].text, "Find the morning runs");
    EXPECT_EQ(commands[1].line, 3);
    EXPECT_EQ(commands[1].text, "PLANNER one  two");
    EXPECT_EQ(commands[2].form, "frmTarn");
    EXPECT_EQ(commands[2].control, "RunDesc");
    EXPECT_EQ(commands[2].text, "Lincoln # 2  North");
    EXPECT_EQ(commands[3].text, " \"a\\\t ");
    EXPECT_EQ(commands[4].text, "");
    EXPECT_THAT(commands[5].numbers, ElementsAre(1, 20, 3));
    EXPECT_THAT(commands[6].words, ElementsAre("all"));
    EXPECT_EQ(commands[7].text, "Run R1 saved.");
    EXPECT_THAT(commands[7].numbers, ElementsAre(500));
    EXPECT_THAT(commands[8].numbers, ElementsAre(2, 3));
    EXPECT_EQ(commands[8].text, "a text");
    EXPECT_THAT(commands[9].words, ElementsAre("Yes", "Cancel", "OK"));
}

TEST(ScriptParser, NamesTheLineOfWhatItCannotRead) {
    const std::vector<std::pair<std::string, std::string>> table{
        {"forms\n\nfly frmTarn", "line 3: there is no command \"fly\""},
        {"click", "line 1: usage: click FORM.CONTROL"},
        {"click frmTarn", "line 1: \"frmTarn\" is not FORM.CONTROL; usage: click FORM.CONTROL"},
        {"click F.C now", "line 1: \"now\" is too much; usage: click FORM.CONTROL"},
        {"column F.L two", "line 1: \"two\" is no number; usage: column FORM.LIST COLUMN"},
        {"wait 99999999999", "line 1: \"99999999999\" is no number; usage: wait MILLISECONDS"},
        {"answer Maybe",
         "line 1: there is no button \"Maybe\"; usage: answer OK|Cancel|Yes|No|Retry..."},
        {"set F.C \"open", "line 1: the closing quote is missing"},
        {"set F.C \"a\\x\"", "line 1: a backslash between quotes needs \", \\, t or n behind it"},
        {"shot frmTarn", "line 1: usage: shot FORM FILE.png"},
    };
    for (const auto& [text, message] : table) {
        try {
            (void)parse(text);
            ADD_FAILURE() << "read: " << text;
        } catch (const ScriptError& error) {
            EXPECT_EQ(error.what(), message);
        }
    }
}

}  // namespace
