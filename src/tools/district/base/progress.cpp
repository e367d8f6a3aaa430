#include "tools/district/base/progress.h"

#include <csignal>
#include <cstdio>
#include <utility>

#include <fmt/format.h>
#include <unistd.h>

namespace tools::district {

namespace {

constexpr std::int64_t StepsBetweenLooks = 1000;

volatile std::sig_atomic_t interrupted = 0;

void onInterrupt(int /*signal*/) { interrupted = 1; }

void throwIfInterrupted() {
    if (interrupted != 0) {
        interrupted = 0;
        throw Interrupted{};
    }
}

}  // namespace

Progress::Progress() : terminal_(::isatty(STDERR_FILENO) == 1) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        std::signal(signal, onInterrupt);
    }
}

Progress::~Progress() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        std::signal(signal, SIG_DFL);
    }
    clear();
}

void Progress::clear() const {
    if (terminal_) {
        std::fputs("\r\x1b[K", stderr);
    }
}

void Progress::begin(std::string what, std::int64_t steps) {
    what_ = std::move(what);
    steps_ = steps;
    done_ = 0;
    show();
    throwIfInterrupted();
}

void Progress::step() {
    if (++done_ % StepsBetweenLooks == 0) {
        show();
        throwIfInterrupted();
    }
}

void Progress::reach(std::int64_t done, std::int64_t steps) {
    done_ = done;
    steps_ = steps;
    show();
    throwIfInterrupted();
}

void Progress::show() {
    if (terminal_) {
        const auto percent = steps_ > 0 ? done_ * 100 / steps_ : 0;
        std::fputs(fmt::format("\r\x1b[K{} … {} %", what_, percent).c_str(), stderr);
    }
}

}  // namespace tools::district
