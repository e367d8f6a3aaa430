#include "workshop.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <thread>
#include <utility>

#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/store/base/location.h"
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

Workshop::Workshop(std::string folder)
    : folder_(std::move(folder)), isOnServer_(store::isServer(folder_)) {}

/// On the server's own database.
std::FILE* Workshop::psql() const {
    const std::string command = fmt::format(
        "psql -qX -v ON_ERROR_STOP=1 -o /dev/null -d '{}/postgres' 2>/dev/null", folder_);
    return popen(command.c_str(), "we");
}

/// False where the server does not do it.
bool Workshop::ask(const std::string& statements) const {
    std::FILE* const input = psql();
    std::fputs(statements.c_str(), input);
    return pclose(input) == 0;
}

std::string Workshop::path(const std::string& district) const {
    return fmt::format("{}/{}{}", folder_, district, isOnServer_ ? "/" : "");
}

void Workshop::renew(const std::string& district) const {
    if (isOnServer_) {
        if (!ask(fmt::format("DROP DATABASE IF EXISTS \"{0}\" WITH (FORCE);\n"
                             "CREATE DATABASE \"{0}\" TEMPLATE before;\n",
                             district))) {
            throw std::runtime_error("The server copies no district.");
        }
        return;
    }
    const Folders copy{path(district)};
    fs::remove_all(copy.root);
    fs::copy(path("before"), copy.root, fs::copy_options::recursive);
    tools::district::writeSettings(copy, copy);
}

void Workshop::settle(const std::string& district) const {
    const std::string wait = fmt::format(
        "DO $$BEGIN WHILE EXISTS (SELECT FROM pg_stat_activity WHERE datname = '{}') LOOP"
        " PERFORM pg_sleep(0.01); PERFORM pg_stat_clear_snapshot(); END LOOP; END$$;\n",
        district);
    while (isOnServer_ && !ask(wait)) {
        std::this_thread::sleep_for(std::chrono::milliseconds{20});
    }
}

void ServerKiller::kill(const std::string& district) const {
    std::fputs(
        fmt::format("SELECT 'kill -9 ' || string_agg(pid::text, ' ') FROM pg_stat_activity WHERE"
                    " datname = '{}'\\g (format=unaligned tuples_only=on) |sh\n\\q\n",
                    district)
            .c_str(),
        psql_);
    pclose(psql_);
}

std::string Workshop::faultsOf(const std::string& district) const {
    tools::district::Progress progress;
    const auto report =
        tools::district::checkDistrict(tools::district::foldersOf(path(district)), progress);
    return report.findings.empty() ? std::string() : report.text();
}

std::string Workshop::keep(const std::string& district) const {
    if (isOnServer_) {
        const std::string dump = fmt::format("{}/killing-fault-{}-{}.dump",
                                             fs::temp_directory_path().string(), getpid(), rand());
        const std::string command =
            fmt::format("pg_dump -Fc -f {} -d '{}/{}'", dump, folder_, district);
        return std::system(command.c_str()) == 0 ? dump : "nothing";
    }
    for (int number = 1;; ++number) {
        const fs::path kept =
            fs::temp_directory_path() / fmt::format("killing-fault-{}-{}", getpid(), number);
        if (!fs::exists(kept)) {
            fs::copy(path(district), kept, fs::copy_options::recursive);
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

void Performer::kill() const { ::kill(process_, SIGKILL); }

Ending Performer::wait() const {
    int status = 0;
    waitpid(process_, &status, 0);
    if (WIFSIGNALED(status)) {
        return WTERMSIG(status) == SIGKILL ? Ending::Killed : Ending::Failed;
    }
    return WEXITSTATUS(status) == 0 ? Ending::Finished : Ending::Failed;
}

}  // namespace killing
