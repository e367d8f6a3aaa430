#include "platform/files/files.h"

#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/base/error.h"
#include "support/errors.h"
#include "support/temporaryfolder.h"

namespace {

using support::contentsOf;

class Files : public testing::Test {
protected:
    support::TemporaryFolder folder_;
    [[nodiscard]] std::string in(const std::string& name) const { return folder_.path() + name; }
};

TEST_F(Files, PrefersTheVeryNameThenTheFirstOfAnotherCaseAndNoFolder) {
    std::filesystem::create_directory(in("RUNS.TXT"));
    EXPECT_FALSE(files::exists(in("Runs.txt")) || files::exists("") || files::exists(in("")));
    EXPECT_EQ(files::find(in("Runs.txt")), in("Runs.txt"));
    folder_.write("runs.TXT", "");
    EXPECT_EQ(files::find(in("Runs.txt")), in("runs.TXT"));
    folder_.write("RUNS.txt", "");
    EXPECT_EQ(files::find(in("Runs.txt")), in("RUNS.txt"));
    folder_.write("Runs.txt", "");
    EXPECT_EQ(files::find(in("Runs.txt")), in("Runs.txt"));
}

TEST_F(Files, AppendsOneLineEachToTheFileOfAnyCaseAndKeepsItShort) {
    EXPECT_TRUE(files::appendLine(in("log.txt"), "first"));
    std::filesystem::rename(in("log.txt"), in("LOG.TXT"));
    EXPECT_TRUE(files::appendLine(in("log.txt"), "sec\r\nond"));
    EXPECT_EQ(contentsOf(in("LOG.TXT")), "first\nsec  ond\n");
    EXPECT_FALSE(files::appendLine(in("missing/log.txt"), "lost"));
    files::setAside(in("log.txt"), in("logOld.txt"), 16);
    EXPECT_TRUE(files::exists(in("log.txt")));
    files::setAside(in("log.txt"), in("logOld.txt"), 15);
    EXPECT_EQ(contentsOf(in("logOld.txt")), "first\nsec  ond\n");
}

TEST_F(Files, CopiesOverAFileOfAnotherCase) {
    folder_.write("RUNS.TXT", "new");
    folder_.write("runsold.txt", "old");
    files::copy(in("Runs.txt"), in("RunsOld.txt"));
    EXPECT_EQ(contentsOf(in("runsold.txt")), "new");
    EXPECT_FALSE(std::filesystem::exists(in("RunsOld.txt")));
    const auto numberOf = [&](const std::string& from, const std::string& to) {
        return support::errorOf([&] { return files::copy(in(from), in(to)), 0; });
    };
    EXPECT_EQ(numberOf("none.txt", "RunsOld.txt"), base::errors::FileNotFound);
    EXPECT_EQ(numberOf("Runs.txt", "missing/RunsOld.txt"), base::errors::PathFileAccess);
}

TEST_F(Files, IsWrittenBesideForWhomTheFolderLetsIn) {
    const auto modeOf = [](const std::string& file) {
        return static_cast<unsigned>(std::filesystem::status(file).permissions());
    };
    const auto before = ::umask(0077);
    for (const auto& [folder, file] : {std::pair{02770U, 0660U}, {0700U, 0600U}, {0755U, 0644U}}) {
        std::filesystem::permissions(folder_.path(), std::filesystem::perms(folder));
        folder_.write("Runs.txt", "old");
        std::ifstream reader(in("Runs.txt"));
        files::write(in("Runs.txt"), "new");
        EXPECT_TRUE(files::writeNew(in("R1.dbf"), "") && !files::writeNew(in("r1.DBF"), ""));
        EXPECT_TRUE(files::appendLine(in("log.txt"), ""));
        for (const auto* name : {"Runs.txt", "R1.dbf", "log.txt"}) {
            EXPECT_EQ(modeOf(in(name)), file) << name;
        }
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old");
        EXPECT_EQ(contentsOf(in("Runs.txt")), "new");
        EXPECT_TRUE(files::remove(in("r1.DBF")) && files::remove(in("log.txt")));
        EXPECT_FALSE(files::remove(in("R1.dbf")));
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 1);
    }
    ::umask(before);
}

TEST_F(Files, IsWholeOrNotThereWhileAnotherProgramMakesAndRemovesIt) {
    const std::string path = in("RunDone.txt");
    std::atomic<bool> isOver = false;
    std::thread other([&] {
        while (!isOver) {
            files::write(path, "R1");
            files::remove(path);
        }
    });
    for (int i = 0; i < 20'000; ++i) {
        try {
            EXPECT_EQ(files::read(path), "R1");
        } catch (const base::RunTimeError& error) {
            EXPECT_EQ(error.number(), base::errors::FileNotFound) << error.what();
        }
    }
    isOver = true;
    other.join();
}

TEST_F(Files, AFolderIsLockedForOneProgramUntilThatEndsHoweverItEnds) {
    const auto lock = [&] { return files::FolderLock(folder_.path(), std::chrono::seconds(0)), 0; };
    const pid_t other = fork();
    if (other == 0) {
        const files::FolderLock alone(folder_.path(), std::chrono::seconds(10));
        pause();
    }
    for (int tries = 0; tries < 1'000'000 && support::errorOf(lock) == 0; ++tries) {
    }
    EXPECT_EQ(support::errorOf(lock), base::errors::PathFileAccess);
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
    EXPECT_EQ(support::errorOf(lock), 0);
}

}  // namespace
