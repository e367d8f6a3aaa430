#include "startup/logon/logonticket.h"

#include <charconv>
#include <cstdlib>
#include <ctime>

#include <fmt/format.h>

#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/error.h"
#include "platform/base/value.h"
#include "platform/ini/ini.h"
#include "platform/password/password.h"
#include "startup/base/session.h"

namespace startup {

namespace {

constexpr const char* Variable = "VIREO_LOGON_TICKET";

/// What is hashed into a ticket: nobody who cannot read the users' table makes one.
std::string secretOf(const std::string& user, const std::string& storedPassword,
                     std::string_view time) {
    return fmt::format("{} {} {}", time, user, storedPassword);
}

std::string storedPasswordOf(const std::string& user) {
    ado::Recordset users(
        fmt::format("SELECT QDSCU.* FROM QDSCU WHERE QDSCU.QDSC1='{}'", ado::escaped(user)),
        *gcnQDSC);
    return users.Eof() ? std::string() : std::string(users["QDSC2"].textView());
}

}  // namespace

bool requiresPassword() {
    const base::Value setting(ini::readString("AppSettings", "RequirePassword", "False", gIniFile));
    try {
        return setting.asBoolean();
    } catch (const base::RunTimeError&) {  // whoever wrote something there did not mean no
        return true;
    }
}

std::string ticketFor(const std::string& user, const std::string& storedPassword,
                      std::int64_t now) {
    const std::string time = std::to_string(now);
    return time + ":" + password::hashed(secretOf(user, storedPassword, time));
}

bool isTicketFor(const std::string& ticket, const std::string& user,
                 const std::string& storedPassword, std::int64_t now) {
    const auto colon = ticket.find(':');
    std::int64_t time = 0;
    if (colon == std::string::npos || password::kindOf(storedPassword) == password::Stored::None ||
        std::from_chars(ticket.data(), ticket.data() + colon, time).ptr != ticket.data() + colon) {
        return false;
    }
    const bool isFresh = time <= now && now - time <= TicketSeconds;
    return isFresh && password::matches(secretOf(user, storedPassword, ticket.substr(0, colon)),
                                        ticket.substr(colon + 1));
}

void leaveTicket(const std::string& user, const std::string& storedPassword) {
    ::setenv(Variable, ticketFor(user, storedPassword, std::time(nullptr)).c_str(), 1);
}

bool tookTicketFor(const std::string& user) {
    const char* found = std::getenv(Variable);
    const std::string ticket = found == nullptr ? "" : found;
    ::unsetenv(Variable);
    return !ticket.empty() && isTicketFor(ticket, user, storedPasswordOf(user), std::time(nullptr));
}

}  // namespace startup
