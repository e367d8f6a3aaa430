#include "startup/base/mdlFileUtilities.h"

#include <array>

#include <fmt/format.h>
#include <pwd.h>
#include <unistd.h>

#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/files/files.h"
#include "startup/base/session.h"

namespace startup {

namespace {

constexpr std::uintmax_t LogBytes = 1'000'000;

std::string account() {
    const passwd* entry = getpwuid(geteuid());
    return entry == nullptr ? std::to_string(geteuid()) : entry->pw_name;
}

}  // namespace

std::string userAndComputer() {
    std::array<char, 256> host{};
    gethostname(host.data(), host.size() - 1);
    const auto user = base::trim(gCommandLine);
    return fmt::format("{} on {}", user.empty() ? account() : std::string(user), host.data());
}

void logLine(const std::string& text) {
    const std::string log = gProgPath + "log.txt";
    files::setAside(log, gProgPath + "logOld.txt", LogBytes);
    files::appendLine(log, fmt::format("{}\t{}\t{}", text, base::Now().text(), userAndComputer()));
}

}  // namespace startup
