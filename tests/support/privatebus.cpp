#include "support/privatebus.h"

#include <array>
#include <csignal>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

PrivateBus::PrivateBus() {
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::array<std::string, 4> words{"dbus-daemon", "--session", "--nofork", "--print-address"};
    std::array<char*, 5> argv{words[0].data(), words[1].data(), words[2].data(), words[3].data(),
                              nullptr};
    const int failed =
        posix_spawnp(&daemon_, "dbus-daemon", &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipe[1]);
    char byte = 0;
    while (failed == 0 && ::read(pipe[0], &byte, 1) == 1 && byte != '\n') {
        address_ += byte;
    }
    ::close(pipe[0]);
    if (address_.empty()) {
        throw std::runtime_error("dbus-daemon does not start");
    }
}

PrivateBus::~PrivateBus() { end(); }

void PrivateBus::end() {
    if (daemon_ > 0) {
        ::kill(daemon_, SIGTERM);
        ::waitpid(daemon_, nullptr, 0);
        daemon_ = 0;
    }
}

}  // namespace support
