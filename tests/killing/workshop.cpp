#include "workshop.h"

#include <csignal>
#include <iostream>
#include <stdexcept>
#include <thread>

#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tools/district/base/folders.h"
#include "tools/district/check/checks.h"

namespace killing {

namespace {

namespace fs = std::filesystem;
using tools::district::Folders;

constexpr unsigned PatienceSeconds = 60;

/// The program's life. One byte tells that it begins.
[[noreturn]] void live(const Operation& operation, const std::string& folder, int begun) {
    int status = 1;
    alarm(PatienceSeconds);
    try {
        District district(folder);
        if (write(begun, "b", 1) == 1) {
            operation.perform(district);
            status = 0;
        }
    } catch (const std::exception& error) {
        std::cerr << operation.name << ": " << error.what() << "\n";
    }
    _exit(status);
}

}  // namespace

std::string Workshop::path(const std::string& district) const {
    return (folder_ / district).string();
}

void Workshop::renew(const std::string& district) const {
    const Folders copy{folder_ / district};
    fs::remove_all(copy.root);
    fs::copy(folder_ / "before", copy.root, fs::copy_options::recursive);
    tools::district::writeSettings(copy, copy);
}

std::string Workshop::faultsOf(const std::string& district) const {
    tools::district::Progress progress;
    const auto report = tools::district::checkDistrict({folder_ / district}, progress);
    return report.findings.empty() ? std::string() : report.text();
}

std::string Workshop::keep(const std::string& district) const {
    for (int number = 1;; ++number) {
        const fs::path kept =
            fs::temp_directory_path() / fmt::format("killing-fault-{}-{}", getpid(), number);
        if (!fs::exists(kept)) {
            fs::copy(folder_ / district, kept, fs::copy_options::recursive);
            return kept.string();
        }
    }
}

Performer::Performer(const Operation& operation, const std::string& folder) {
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("There is no pipe left.");
    }
    std::cout.flush();
    process_ = fork();
    if (process_ == 0) {
        live(operation, folder, ends[1]);
    }
    close(ends[1]);
    char begun = 0;
    // Where nothing comes, the program has ended with a message of its own.
    [[maybe_unused]] const auto got = read(ends[0], &begun, 1);
    close(ends[0]);
}

void Performer::killAfter(std::chrono::microseconds time) const {
    std::this_thread::sleep_for(time);
    kill(process_, SIGKILL);
}

Ending Performer::wait() const {
    int status = 0;
    waitpid(process_, &status, 0);
    if (WIFSIGNALED(status)) {
        return WTERMSIG(status) == SIGKILL ? Ending::Killed : Ending::Failed;
    }
    return WEXITSTATUS(status) == 0 ? Ending::Finished : Ending::Failed;
}

}  // namespace killing
