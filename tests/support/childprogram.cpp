#include "support/childprogram.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> environmentWith(const ChildProgram::Variables& variables) {
    std::vector<std::string> all;
    for (const auto& [name, value] : variables) {
        all.emplace_back(name).append("=").append(value);
    }
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const bool replaced = std::ranges::any_of(variables, [&](const auto& variable) {
            return text.starts_with(variable.first + "=");
        });
        if (!replaced) {
            all.push_back(text);
        }
    }
    return all;
}

}  // namespace

std::string programOfBuild(const std::string& name) {
    return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / name).string();
}

ChildProgram::ChildProgram(const std::string& program, const std::vector<std::string>& arguments,
                           const Variables& variables) {
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    auto environment = environmentWith(variables);
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const int failed = posix_spawnp(&child_, words[0].c_str(), &actions, nullptr,
                                    pointersTo(words).data(), pointersTo(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipe[1]);
    output_ = pipe[0];
    if (failed != 0) {
        child_ = 0;
        ::close(output_);
        throw std::runtime_error(words[0] + " does not start");
    }
}

ChildProgram::~ChildProgram() {
    kill();
    ::close(output_);
}

std::string ChildProgram::readLine() {
    std::string line;
    for (char byte = 0; ::read(output_, &byte, 1) == 1;) {
        if (byte == '\n') {
            return line;
        }
        line += byte;
    }
    return line;
}

bool ChildProgram::waitForLine(const std::string& beginning) {
    for (std::string line = readLine(); !line.empty(); line = readLine()) {
        if (line.starts_with(beginning)) {
            return true;
        }
    }
    return false;
}

void ChildProgram::kill() {
    if (child_ > 0) {
        ::kill(child_, SIGKILL);
        ::waitpid(child_, nullptr, 0);
        child_ = 0;
    }
}

}  // namespace support
