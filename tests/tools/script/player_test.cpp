#include "tools/script/player.h"

#include <QImage>
#include <QTemporaryDir>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "demoform.h"
#include "tools/script/parser.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

class PlayerTest : public testing::Test {
protected:
    ~PlayerTest() override { forms::Application::instance().startAfresh(); }

    /// Plays behind a "start"; returns the transcript.
    std::string play(const std::string& commands) {
        forms::Application::instance().startAfresh();
        std::ostringstream transcript;
        const auto start = [this](const std::string& commandLine) {
            commandLine_ = commandLine;
            forms::FormRegistry::instance().load<DemoForm>().showForm();
        };
        script::Player player(transcript, {start, runStatement});
        player.play(script::parse("start PLANNER\n" + commands));
        return transcript.str();
    }
    /// The message of the fault; the line of the first command is 2.
    std::string fault(const std::string& commands) {
        try {
            play(commands);
        } catch (const script::ScriptError& error) {
            return error.what();
        }
        return "no fault";
    }

    static std::vector<std::string> runStatement(const std::string& database,
                                                 const std::string& statement) {
        if (database != "routing") {
            throw std::runtime_error("there is no database \"" + database + "\"");
        }
        return {"RUN\tMILES", statement, "R2\t7"};
    }

    std::string commandLine_;
};

TEST_F(PlayerTest, AsksTheDatabases) {
    EXPECT_THAT(play("sql routing SELECT 1\nexpect-sql \"SELECT 1\\nR2\\t7\"\n"),
                HasSubstr("    RUN\tMILES\n    SELECT 1\n    R2\t7\n"));
    EXPECT_EQ(fault("sql routing X\nexpect-sql X"),
              "line 3: the statement found \"X\nR2\t7\", expected \"X\"");
    EXPECT_EQ(fault("sql routing X\nuntil-sql \"X\\nR2\\t7\" 1\nuntil-sql Y 1\n"),
              "line 4: the statement found \"X\nR2\t7\", expected \"Y\"");
    EXPECT_EQ(fault("sql fleet SELECT 1"), "line 2: there is no database \"fleet\"");
}

TEST_F(PlayerTest, TypesAndLeavesAsAUserWould) {
    const std::string transcript = play(
        "# Fill the form\n"
        "set frmDemo.RunName Lincoln  \"North\"\n"
        "set frmDemo.RunName Émile's run\n"
        "expect frmDemo.RunName Émile's run\n"
        "set frmDemo.Start 7:5 am\n"
        "expect frmDemo.Start 07:05 AM\n"
        "set frmDemo.School r3\n"
        "print frmDemo.School\n"
        "set frmDemo.School nowhere\n"
        "print frmDemo.School\n"
        "set frmDemo.RunName\n"
        "expect frmDemo.RunName \"\"\n"
        "set frmDemo.Check 1\n"
        "expect frmDemo.Status on\n"
        "state frmDemo.Check\n"
        "expect frmDemo.Tabs More\n"
        "set frmDemo.Tabs Criteria\n"
        "expect frmDemo.Tabs Criteria\n"
        "set frmDemo.Comment \"two\\nlines\"\n"
        "expect frmDemo.Comment \"two\\nlines\"\n");
    EXPECT_EQ(commandLine_, "PLANNER");
    EXPECT_THAT(transcript, HasSubstr("\n# Fill the form\n> set frmDemo.RunName Lincoln"));
    EXPECT_THAT(transcript, HasSubstr("    R3\t100\n"));
    EXPECT_THAT(transcript, HasSubstr("    nowhere\t\n"));
    EXPECT_THAT(transcript, HasSubstr("    enabled, visible, checked\n"));
}

TEST_F(PlayerTest, WorksOnLists) {
    const std::string transcript = play(
        "expect frmDemo.List 3\n"
        "column frmDemo.List 2\n"
        "print frmDemo.List\n"
        "expect-row frmDemo.List 1 \"!R2\\t9\"\n"
        "select frmDemo.List 3\n"
        "expect frmDemo.Status row 2\n"
        "doubleclick frmDemo.List 2\n"
        "expect frmDemo.Status opened R1\n");
    EXPECT_THAT(transcript, HasSubstr("    Run\tMiles\n    !R2\t9\n    R1\t10\n    R3\t100\n"));
    const auto selected = [this](const std::string& command) {
        play(command);
        const auto* form = forms::FormRegistry::instance().find("frmDemo");
        return form->findChild<controls::MultiColumnList*>("List")->selectedRows();
    };
    EXPECT_EQ(selected("select frmDemo.List 3 1\n"), (std::vector{0, 2}));
    EXPECT_EQ(selected("select frmDemo.List all\n"), (std::vector{0, 1, 2}));
    EXPECT_EQ(selected("select frmDemo.List all\nselect frmDemo.List none\n"),
              (std::vector<int>{}));
}

/// The dialog that the entry waits for is closed by the next line, or by the end of the script.
TEST_F(PlayerTest, ChoosesFromMenus) {
    play("menu frmDemo Help > Ab\nclose dialog\nexpect frmDemo.Status about\n");
    play(
        "menu frmDemo.List Sort By > Miles\nexpect-row frmDemo.List 1 R2\n"
        "menu frmDemo Help\nclose menu\nmenu frmDemo Help > About\n");
    EXPECT_EQ(fault("menu frmDemo Help > About\nclose Nobody\n"),
              "line 3: no form Nobody is loaded");
    EXPECT_EQ(fault("menu frmDemo Help > Off\n"),
              "line 2: frmDemo has an entry \"Off\", which is disabled");
    EXPECT_EQ(fault("menu frmDemo.List Sort\nclose menu\nmenu frmDemo.cmdOff\n"),
              "line 4: frmDemo.cmdOff is disabled");
}

TEST_F(PlayerTest, TypesIntoGrids) {
    EXPECT_THAT(play("cell frmDemo.Grid 2 2 8:15 am\nprint frmDemo.Grid\n"),
                HasSubstr("    Bell\tNew Bell\n    8:00\t \n    9:00\t8:15 am\n"));
}

TEST_F(PlayerTest, AnswersListsAndExpectsMessageBoxes) {
    play("answer No\nclick frmDemo.cmdDelete\nexpect frmDemo.Status kept\n");
    play("click frmDemo.cmdDelete\nexpect-box Please Confirm\nexpect frmDemo.Status deleted\n");
    EXPECT_THAT(play("answer Yes\nclick frmDemo.cmdDelete\nboxes\nboxes\n"),
                EndsWith("    [Question] \"Please Confirm\" (Yes, No) -> Yes\n"
                         "    Are you sure?\n> boxes\n    none\n"));
}

TEST_F(PlayerTest, ChoosesFilesAndStartsNoLogonProgram) {
    EXPECT_THAT(play("file /maps/ice.avl\nclick frmDemo.cmdBrowse\n"
                     "expect frmDemo.Status file /maps/ice.avl\nfile\nclick frmDemo.cmdBrowse\n"
                     "expect frmDemo.Status \"file \"\n"),
                HasSubstr("    The user is not known; the logon program is not started"));
    EXPECT_THAT(fault("click frmDemo.cmdBrowse\nclick frmDemo.cmdLater\n"),
                HasSubstr("line 3: before this line came an unexpected box: [Question] \"Open\""));
    EXPECT_EQ(fault("file a"),
              "line 3: the script ends with the file \"a\", which nobody asked for");
}

TEST_F(PlayerTest, StopsAtBoxesThatItWasNotToldOf) {
    EXPECT_THAT(fault("click frmDemo.cmdDelete\nprint frmDemo.List\nset frmDemo.RunName x\n"),
                HasSubstr("line 4: before this line came an unexpected box: [Question] \"Please"));
    EXPECT_THAT(fault("click frmDemo.cmdDelete\n"), HasSubstr("line 3: before this line came"));
    EXPECT_THAT(fault("answer Retry\nclick frmDemo.cmdDelete\nforms\n"),
                HasSubstr("(Yes, No) -> Yes (default)"));
    EXPECT_EQ(fault("close frmDemo No\n"), "no fault") << "nothing was asked";
    EXPECT_EQ(fault("answer Yes\n"), "line 3: the script ends with 1 answers that no box asked");
    EXPECT_EQ(fault("expect-box Gone\n"), "line 2: no box \"Gone\" was shown");
}

TEST_F(PlayerTest, SaysWhatIsWrongWithAControl) {
    const std::vector<std::pair<std::string, std::string>> table{
        {"click frmDemo.Nothing", "line 2: frmDemo has no control Nothing"},
        {"click frmDemo.cmdOff", "line 2: frmDemo.cmdOff is disabled"},
        {"set frmDemo.RunName \"a\\nb\"",
         "line 2: frmDemo.RunName is a text box, none that takes a line end"},
        {"set frmDemo.Hidden x", "line 2: frmDemo.Hidden is hidden"},
        {"select frmDemo.List 4",
         "line 2: frmDemo.List is a list, none that has a row 4, it has 3"},
        {"cell frmDemo.Grid 1 1 x",
         "line 2: frmDemo.Grid is a grid, none that has a column 1 to type into"},
        {"expect-row frmDemo.List 1 R2",
         "line 2: row 1 of frmDemo.List is \"R1\t10\", expected \"R2\" in it"},
        {"shot frmDemo /proc/nowhere/x.png", "line 2: cannot write /proc/nowhere/x.png"},
        {"until frmDemo.Status never 5",
         "line 2: frmDemo.Status shows \"\" after 5 ms, expected \"never\""},
    };
    for (const auto& [command, message] : table) {
        EXPECT_EQ(fault(command), message);
    }
}

TEST_F(PlayerTest, WaitsSetsTheClockAndTakesPictures) {
    const QTemporaryDir folder;
    const QString picture = folder.filePath("deep/demo.png");
    std::ostringstream transcript;
    const auto start = [](const std::string&) {
        forms::FormRegistry::instance().load<DemoForm>().showForm();
    };
    script::Player player(transcript, {start, {}});
    player.play(
        script::parse("start\nclick frmDemo.cmdLater\nuntil frmDemo.Status later 5000\n"
                      "clock 1/31/2026 8:00 am\nshot frmDemo " +
                      picture.toStdString()));
    EXPECT_EQ(base::Now().dateValue(), base::Date::of(2026, 1, 31));
    EXPECT_GT(QImage(picture).width(), 100);
}

TEST_F(PlayerTest, AProgramThatEndsIsOverUntilItIsStartedAgain) {
    EXPECT_THAT(play("click frmDemo.cmdExit\nforms\n"), EndsWith("> forms\n    none\n"));
    EXPECT_EQ(fault("click frmDemo.cmdExit\nclick frmDemo.cmdExit"),
              "line 3: frmDemo is not there: the program has ended");
    EXPECT_EQ(fault("close frmDemo\nstart AGAIN\nexpect frmDemo.RunName \"\""), "no fault");
    EXPECT_EQ(commandLine_, "AGAIN");
}

TEST_F(PlayerTest, AnErrorThatNobodyTrappedIsAnUnexpectedBox) {
    EXPECT_THAT(fault("click frmDemo.cmdFault\n"),
                HasSubstr("unexpected box: [Critical] \"Test Program\" (OK) -> OK (default)\n"
                          "Run-time error 13:\n\nType mismatch"));
}

}  // namespace
