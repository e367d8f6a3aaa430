#include "tools/district/base/terminal.h"

#include <csignal>
#include <cstdio>
#include <iostream>

#include <fmt/format.h>
#include <termios.h>
#include <unistd.h>

#include "platform/base/notcopied.h"
#include "platform/base/text.h"
#include "tools/district/base/progress.h"

namespace tools::district {

namespace {

/// What is typed stays hidden, and Ctrl+C ends the reading instead of the program.
class HiddenTyping : private base::NotCopied {
public:
    HiddenTyping() {
        struct sigaction ignore {};
        ignore.sa_handler = [](int) {};  // no restart: the read returns
        sigaction(SIGINT, &ignore, &formerInterrupt_);
        tcgetattr(STDIN_FILENO, &former_);
        termios hidden = former_;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    ~HiddenTyping() {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &former_);
        sigaction(SIGINT, &formerInterrupt_, nullptr);
        std::fputs("\n", stderr);
    }

private:
    termios former_{};
    struct sigaction formerInterrupt_ {};
};

}  // namespace

bool isTyped() { return ::isatty(STDIN_FILENO) == 1; }

std::string askHidden(const std::string& question) {
    fmt::print(stderr, "{}", question);
    const HiddenTyping hidden;
    std::string line;
    for (char c = 0; c != '\n'; line += c) {
        if (::read(STDIN_FILENO, &c, 1) != 1) {
            throw Interrupted{};
        }
    }
    line.pop_back();
    return line;
}

bool agrees(const std::string& question) {
    fmt::print(stderr, "{} (yes, otherwise no) ", question);
    std::string line;
    std::getline(std::cin, line);
    return base::equalsNoCase(base::trim(line), "yes");
}

}  // namespace tools::district
