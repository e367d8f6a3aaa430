#include "platform/process/process.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/errors.h"
#include "support/temporaryfolder.h"

namespace {

using support::contentsOf;

bool waitUntil(const std::function<bool()>& isReached) {
    for (int tries = 0; tries < 500; ++tries) {
        if (isReached()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

class Process : public testing::Test {
protected:
    // A program of that name in a folder of its own.
    [[nodiscard]] std::string script(const std::string& name, const std::string& body) const {
        std::string file = folder_.write(name, "#!/bin/sh\n" + body + "\n");
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
        return file;
    }

    [[nodiscard]] static int failureOf(const std::string& program) {
        return support::errorOf([&] { process::host().start(program, {}); });
    }

    support::TemporaryFolder folder_;
};

TEST_F(Process, GetsItsArgumentsOneByOneAndASessionOfItsOwn) {
    const std::string out = folder_.path() + "out";
    const std::string program =
        script("Some Program.Exe",
               "sed 's/.*) //' /proc/$$/stat | cut -d' ' -f4 > \"$3\"; "
               "for a; do echo \"<$a>\"; done >> \"$3\"; echo end >> \"$3\"");
    process::host().start(program, {"TARN", "two words", out});
    ASSERT_TRUE(waitUntil([&] { return contentsOf(out).ends_with("end\n"); }));
    const std::string written = contentsOf(out);
    EXPECT_NE(written.find("<TARN>\n<two words>\n<" + out + ">\n"), std::string::npos) << written;
    EXPECT_NE(std::stoi(written), getsid(0));
}

TEST_F(Process, AStartThatFailsIsARunTimeError) {
    EXPECT_EQ(failureOf(folder_.path() + "Logon.Exe"), base::errors::FileNotFound);
    EXPECT_EQ(failureOf(folder_.write("Plain.Exe", "no program")), base::errors::PermissionDenied);
    const std::string empty = folder_.write("Empty.Exe", "no program");
    std::filesystem::permissions(empty, std::filesystem::perms::owner_all);
    EXPECT_EQ(failureOf(empty), base::errors::PathFileAccess);
}

TEST_F(Process, RunsUnderTheFirst15CharactersOfItsWholeName) {
    const std::string stop = folder_.path() + "stop";
    const std::string body = "while [ ! -e '" + stop + "' ]; do sleep 0.02; done";
    EXPECT_FALSE(process::host().isRunning("VireoLongName_Test.exe"));
    process::host().start(script("VireoLongName_Test.exe", body), {});
    EXPECT_TRUE(waitUntil([] { return process::host().isRunning("VireoLongName_Test.exe"); }));
    EXPECT_FALSE(process::host().isRunning("VireoLongName"));
    EXPECT_FALSE(process::host().isRunning("vireolongname_test.exe"));
    folder_.write("stop", "");
    EXPECT_TRUE(waitUntil([] { return !process::host().isRunning("VireoLongName_Test.exe"); }));
}

TEST_F(Process, AnEndedProgramThatNobodyCollectedIsNotRunning) {
    const std::string program = script("VireoZombie.exe", "exit 0");
    const pid_t child = fork();
    if (child == 0) {
        execl(program.c_str(), program.c_str(), nullptr);
        _exit(127);
    }
    siginfo_t info{};
    waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT);
    EXPECT_NE(contentsOf("/proc/" + std::to_string(child) + "/stat").find("(VireoZombie.exe) Z"),
              std::string::npos);
    EXPECT_FALSE(process::host().isRunning("VireoZombie.exe"));
    waitpid(child, nullptr, 0);
}

}  // namespace
