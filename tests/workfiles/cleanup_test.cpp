#include "workfiles/cleanup.h"

#include <filesystem>

#include <gmock/gmock.h>

#include "platform/files/files.h"
#include "support/errors.h"
#include "support/fakes.h"
#include "support/temporaryfolder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using workfiles::FileState;

constexpr auto Time = ".  The time is: 1/31/2026 8:05:09 AM";

class CleanUpTest : public testing::Test {
protected:
    void write(const std::string& name, std::string_view text = "") const {
        folder.write("prog/" + name, text);
    }
    [[nodiscard]] std::vector<std::string> left() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path() + "prog")) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    support::TemporaryFolder folder;
    support::FakeClock clock;
    std::vector<std::string> log;
    workfiles::CleanUp cleanUp{runedit::WorkFiles(folder.path() + "prog/"),
                               [this](const std::string& line) { log.push_back(line); }};
};

TEST_F(CleanUpTest, DeletesTheFilesOfEachRunAndLogsIt) {
    write("Runs.TXT", "R1|Run|Start\r\nR2|AddRun|End\n");
    for (const auto* name : {"r1.DBF", "R1.txt", "R2stops.txt", "R2time.txt", "R3.dbf"}) {
        write(name);
    }
    cleanUp.deleteFiles();
    std::vector<std::string> logged{"about to open runs.txt",
                                    "Just read a line in Runs.txt ging the RunID of:R1",
                                    "Just read a line in Runs.txt ging the RunID of:R2"};
    for (const std::string name : {"R1.dbf", "R1.txt", "R1stops.txt", "R1time.txt", "R2.dbf",
                                   "R2.txt", "R2stops.txt", "R2time.txt"}) {
        logged.push_back("about to delete file: " + name);
        if (name == "R1.dbf" || name == "R1.txt" || name == "R2stops.txt" || name == "R2time.txt") {
            logged.push_back("successfully able to delete file: " + name);
        }
    }
    for (auto& line : logged) {
        line.insert(0, "In DelWrkFiles - ").append(Time);
    }
    EXPECT_EQ(log, logged);
    EXPECT_THAT(left(), ElementsAre("R3.dbf", "Runs.TXT"));
    EXPECT_TRUE(cleanUp.retry());
    EXPECT_THAT(left(), ElementsAre("R3.dbf"));
}

TEST_F(CleanUpTest, AHeldFileKeepsTheListUntilItIsFree) {
    write("Runs.txt", "R1|\nR2|");
    write("R1.dbf");
    write("R2.dbf");
    {
        const files::Hold held(folder.path() + "prog/R1.dbf");
        cleanUp.deleteFiles();
        EXPECT_THAT(log, testing::Contains(std::string("In DelWrkFiles - unable to delete file: ") +
                                           "R1.dbf" + Time));
        EXPECT_EQ(cleanUp.heldFiles(), 1);
        log.clear();
        EXPECT_FALSE(cleanUp.retry());
        EXPECT_THAT(left(), ElementsAre("R1.dbf", "Runs.txt"));
    }
    {
        const files::Hold list(folder.path() + "prog/Runs.txt");
        EXPECT_FALSE(cleanUp.retry());
        EXPECT_EQ(cleanUp.heldFiles(), 0);
    }
    const std::string list = files::read(folder.path() + "prog/Runs.txt");
    write("Runs.txt", "R3|");
    EXPECT_TRUE(cleanUp.retry());
    EXPECT_THAT(left(), ElementsAre("Runs.txt")) << "it is another request by now";
    write("Runs.txt", list);
    EXPECT_TRUE(cleanUp.retry());
    EXPECT_THAT(left(), IsEmpty());
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(CleanUpTest, NoRunNoListAndNoNameThatLeadsOutOfTheFolder) {
    write("R1.dbf");
    write(".dbf");
    cleanUp.deleteFiles();
    EXPECT_THAT(log, ElementsAre(std::string("In DelWrkFiles - about to open runs.txt") + Time));
    EXPECT_TRUE(cleanUp.retry());
    EXPECT_THAT(left(), ElementsAre(".dbf", "R1.dbf"));
    write("Runs.txt", "R1\n../outside|\n");
    const auto outside = folder.write("outside.dbf", "");
    cleanUp.deleteFiles();
    EXPECT_THAT(left(), ElementsAre("R1.dbf", "Runs.txt")) << "a line without a bar is no run's";
    EXPECT_TRUE(files::exists(outside));
}

TEST_F(CleanUpTest, ASeventeenthRunRaisesBeforeAnythingIsDeleted) {
    std::string list;
    for (int i = 1; i <= 16; ++i) {
        list += "R" + std::to_string(i) + "|\n";
    }
    write("Runs.txt", list + "R17|\n");
    write("R1.dbf");
    EXPECT_EQ(support::errorOf([&] { return cleanUp.deleteFiles(), 0; }),
              base::errors::SubscriptOutOfRange);
    EXPECT_THAT(left(), ElementsAre("R1.dbf", "Runs.txt"));
    write("Runs.txt", list);
    cleanUp.look();
    EXPECT_EQ(cleanUp.files().size(), 64U);
    EXPECT_EQ(cleanUp.files()[0].state, FileState::There);
    EXPECT_EQ(cleanUp.files()[1].state, FileState::Missing);
    EXPECT_THAT(left(), ElementsAre("R1.dbf", "Runs.txt"));
}

}  // namespace
