#include "platform/files/files.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/errors.h"
#include "support/temporaryfolder.h"

namespace {

using support::contentsOf;

class Files : public testing::Test {
protected:
    support::TemporaryFolder folder_;
    [[nodiscard]] std::string in(const std::string& name) const { return folder_.path() + name; }
};

TEST_F(Files, PrefersTheVeryNameThenTheFirstOfAnotherCase) {
    EXPECT_EQ(files::find(in("Runs.txt")), in("Runs.txt"));
    folder_.write("runs.TXT", "");
    EXPECT_EQ(files::find(in("Runs.txt")), in("runs.TXT"));
    folder_.write("RUNS.txt", "");
    EXPECT_EQ(files::find(in("Runs.txt")), in("RUNS.txt"));
    folder_.write("Runs.txt", "");
    EXPECT_EQ(files::find(in("Runs.txt")), in("Runs.txt"));
}

TEST_F(Files, FoldersAndEmptyPathsAreNoFiles) {
    std::filesystem::create_directory(in("Runs.txt"));
    EXPECT_FALSE(files::exists(in("Runs.txt")));
    EXPECT_FALSE(files::exists(""));
    EXPECT_FALSE(files::exists(folder_.path()));
    EXPECT_FALSE(files::exists(in("missing/Runs.txt")));
    folder_.write("runs.txt", "");
    EXPECT_TRUE(files::exists(in("Runs.txt")));
}

TEST_F(Files, AppendsOneLineEachToTheFileOfAnyCase) {
    EXPECT_TRUE(files::appendLine(in("log.txt"), "first"));
    std::filesystem::rename(in("log.txt"), in("LOG.TXT"));
    EXPECT_TRUE(files::appendLine(in("log.txt"), "sec\r\nond"));
    EXPECT_EQ(contentsOf(in("LOG.TXT")), "first\nsec  ond\n");
    EXPECT_FALSE(files::appendLine(in("missing/log.txt"), "lost"));
}

TEST_F(Files, CopiesOverAFileOfAnotherCase) {
    folder_.write("RUNS.TXT", "new");
    folder_.write("runsold.txt", "old");
    files::copy(in("Runs.txt"), in("RunsOld.txt"));
    EXPECT_EQ(contentsOf(in("runsold.txt")), "new");
    EXPECT_FALSE(std::filesystem::exists(in("RunsOld.txt")));
}

TEST_F(Files, CopyingWhatIsNotThereOrCannotBeWrittenRaises) {
    const auto numberOf = [&](const std::string& from, const std::string& to) {
        return support::errorOf([&] { files::copy(in(from), in(to)); });
    };
    EXPECT_EQ(numberOf("Runs.txt", "RunsOld.txt"), base::errors::FileNotFound);
    folder_.write("Runs.txt", "");
    EXPECT_EQ(numberOf("Runs.txt", "missing/RunsOld.txt"), base::errors::PathFileAccess);
}

TEST_F(Files, RemovesOnceAndSaysSo) {
    folder_.write("RUNDONE.TXT", "");
    EXPECT_TRUE(files::remove(in("RunDone.txt")));
    EXPECT_FALSE(std::filesystem::exists(in("RUNDONE.TXT")));
    EXPECT_FALSE(files::remove(in("RunDone.txt")));
}

}  // namespace
