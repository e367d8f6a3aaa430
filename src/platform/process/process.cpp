#include "platform/process/process.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/base/error.h"
#include "platform/base/notcopied.h"

namespace process {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t KernelNameLength = 15;

[[noreturn]] void raiseStartFailure(int error, const std::string& program) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
            throw base::RunTimeError(base::errors::FileNotFound, "File not found: " + program);
        case EACCES:
        case EPERM:
            throw base::RunTimeError(base::errors::PermissionDenied,
                                     "Permission denied: " + program);
        default:
            throw base::RunTimeError(base::errors::PathFileAccess,
                                     "Path/File access error: " + program + ": " +
                                         std::generic_category().message(error));
    }
}

// A session of its own, with the signals as a fresh program expects them.
class SpawnAttributes : private base::NotCopied {
public:
    SpawnAttributes() {
        sigset_t all;
        sigset_t none;
        sigfillset(&all);
        sigemptyset(&none);
        posix_spawnattr_init(&attributes_);
        posix_spawnattr_setsigdefault(&attributes_, &all);
        posix_spawnattr_setsigmask(&attributes_, &none);
        posix_spawnattr_setflags(
            &attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
    [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

// The name and the state letter from a line "123 (name) S ...", where the name may hold brackets.
bool isLiveOfName(std::string_view stat, std::string_view name) {
    const auto open = stat.find('(');
    const auto close = stat.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open ||
        close + 2 >= stat.size()) {
        return false;
    }
    const char state = stat[close + 2];
    return stat.substr(open + 1, close - open - 1) == name && state != 'Z' && state != 'X';
}

bool isProcessFolder(const fs::path& path) {
    const std::string name = path.filename().string();
    return name.find_first_not_of("0123456789") == std::string::npos;
}

class SystemHost : public ProcessHost {
public:
    void start(const std::string& program, const std::vector<std::string>& arguments) override {
        collectEnded();
        std::vector<std::string> words{program};
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<char*> argv;
        argv.reserve(words.size() + 1);
        for (std::string& word : words) {
            argv.push_back(word.data());
        }
        argv.push_back(nullptr);
        const SpawnAttributes attributes;
        pid_t child = 0;
        if (const int error = posix_spawn(&child, program.c_str(), nullptr, attributes.get(),
                                          argv.data(), environ)) {
            raiseStartFailure(error, program);
        }
        children_.push_back(child);
    }

    [[nodiscard]] bool isRunning(const std::string& name) override {
        collectEnded();
        const std::string_view kernelName = std::string_view(name).substr(0, KernelNameLength);
        std::error_code error;
        fs::directory_iterator entry("/proc", error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
            if (!isProcessFolder(entry->path())) {
                continue;
            }
            std::ifstream file(entry->path() / "stat");
            std::string stat;
            std::getline(file, stat, '\0');  // a process may end while it is read
            if (isLiveOfName(stat, kernelName)) {
                return true;
            }
        }
        return false;
    }

private:
    void collectEnded() {
        std::erase_if(children_, [](pid_t child) { return waitpid(child, nullptr, WNOHANG) != 0; });
    }

    std::vector<pid_t> children_;
};

ProcessHost*& current() {
    static SystemHost system;
    static ProcessHost* inForce = &system;
    if (inForce == nullptr) {
        inForce = &system;
    }
    return inForce;
}

}  // namespace

ProcessHost& host() { return *current(); }

void setHost(ProcessHost* host) { current() = host; }

}  // namespace process
