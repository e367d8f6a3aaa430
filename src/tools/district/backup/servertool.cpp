#include "tools/district/backup/servertool.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/base/text.h"
#include "platform/process/programs.h"
#include "tools/district/base/refuse.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

constexpr const char* DebiansPlace = "/usr/lib/postgresql";

std::string inVersion(const std::string& version, std::string_view name) {
    const std::string path = fmt::format("{}/{}/bin/{}", DebiansPlace, version, name);
    return ::access(path.c_str(), X_OK) == 0 ? path : std::string();
}

int newestVersion(std::string_view name) {
    int newest = 0;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(DebiansPlace, error)) {
        const std::string folder = entry.path().filename().string();
        int version = 0;
        std::from_chars(folder.data(), folder.data() + folder.size(), version);
        if (!inVersion(folder, name).empty()) {
            newest = std::max(newest, version);
        }
    }
    return newest;
}

/// The ends of a connection: ours, and the one that the other program gets.
struct Ends {
    int own = -1;
    int other = -1;
};

Ends connected(const std::string& program) {
    std::array<int, 2> both{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, both.data()) != 0) {
        refuse(fmt::format("{} cannot be started: {}.", program, std::strerror(errno)));
    }
    return {both[0], both[1]};
}

/// The program with these as its standard input, output and error.
pid_t started(const std::string& program, std::vector<std::string> words, std::array<int, 3> ends) {
    words.insert(words.begin(), program);
    std::vector<char*> texts;
    texts.reserve(words.size() + 1);
    std::ranges::transform(words, std::back_inserter(texts),
                           [](std::string& word) { return word.data(); });
    texts.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (std::size_t i = 0; i < ends.size(); ++i) {
        posix_spawn_file_actions_adddup2(&actions, ends[i], static_cast<int>(i));
    }
    pid_t process = -1;
    const int error =
        ::posix_spawn(&process, program.c_str(), &actions, nullptr, texts.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        refuse(fmt::format("{} cannot be started: {}.", program, std::strerror(error)));
    }
    return process;
}

void closeOnce(int& handle) {
    if (handle >= 0) {
        ::close(std::exchange(handle, -1));
    }
}

}  // namespace

std::string serverProgram(std::string_view name, int serverVersion) {
    const auto onPath = [&] { return process::findProgram(name, process::foldersOfPath()); };
    for (const auto& found : {inVersion(std::to_string(serverVersion), name), onPath(),
                              inVersion(std::to_string(newestVersion(name)), name)}) {
        if (!found.empty()) {
            return found;
        }
    }
    refuse(
        fmt::format("The server's program {} is not on this computer. Debian's package is called "
                    "postgresql-client-{}.",
                    name, serverVersion));
}

ServerTool::ServerTool(std::string program, std::vector<std::string> arguments, Waiting waiting)
    : program_(std::move(program)), waiting_(std::move(waiting)) {
    const Ends input = connected(program_);
    const Ends output = connected(program_);
    input_ = input.own;
    output_ = output.own;
    complaints_ = ::memfd_create("complaints", MFD_CLOEXEC);
    process_ = started(program_, std::move(arguments), {input.other, output.other, complaints_});
    ::close(input.other);
    ::close(output.other);
}

ServerTool::~ServerTool() {
    closeOnce(input_);
    closeOnce(output_);
    if (process_ > 0) {
        ::kill(process_, SIGTERM);
        ::waitpid(process_, nullptr, 0);
    }
    closeOnce(complaints_);
}

/// A look now and then is enough to end with Ctrl+C while the server keeps still.
void ServerTool::wait(int handle, short event) const {
    constexpr int Glance = 200;
    pollfd one{handle, event, 0};
    while (::poll(&one, 1, Glance) <= 0) {
        waiting_();
    }
}

std::string_view ServerTool::read() {
    wait(output_, POLLIN);
    const ssize_t count = ::read(output_, buffer_.data(), buffer_.size());
    return {buffer_.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
}

void ServerTool::write(std::string_view bytes) {
    while (!bytes.empty()) {
        wait(input_, POLLOUT);
        const ssize_t count =
            ::send(input_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && errno != EAGAIN && errno != EINTR) {
            finish();  // it ended, and says why
            refuse(fmt::format("{} ended too early.", program_));
        }
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

void ServerTool::finish() {
    closeOnce(input_);
    while (!read().empty()) {
    }
    int status = 0;
    ::waitpid(std::exchange(process_, -1), &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        refuse(complaint());
    }
}

/// In one line; the first ones say what happened.
std::string ServerTool::complaint() const {
    constexpr std::size_t Most = 600;
    std::string text(Most, '\0');
    const ssize_t count = ::pread(complaints_, text.data(), text.size(), 0);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    std::ranges::replace(text, '\n', ' ');
    const std::string_view told = base::trim(text);
    return fmt::format("{} ended with a fault: {}{}", program_,
                       told.empty() ? "it does not say which" : told,
                       told.ends_with('.') ? "" : ".");
}

}  // namespace tools::district
