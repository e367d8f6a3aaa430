#pragma once

#include <cstdint>
#include <string>

/// Where route.ini says "RequirePassword=True" nobody works without having typed a password: the
/// logon program gives the one that it starts a ticket, and a user's identifier on a command line
/// without such a ticket counts as none.
namespace startup {

/// Whether route.ini asks for it; not where it says nothing.
[[nodiscard]] bool requiresPassword();

/// How long a ticket holds, in seconds: as long as a slow start may take.
inline constexpr std::int64_t TicketSeconds = 60;

/// A ticket for a user, made of what is stored as the user's password, good from `now` on, in
/// seconds of the system's clock.
[[nodiscard]] std::string ticketFor(const std::string& user, const std::string& storedPassword,
                                    std::int64_t now);

/// Whether it is one for that user and good at `now`.
[[nodiscard]] bool isTicketFor(const std::string& ticket, const std::string& user,
                               const std::string& storedPassword, std::int64_t now);

/// Lays a ticket where the program that is started next finds it.
void leaveTicket(const std::string& user, const std::string& storedPassword);

/// Whether this program was started with a ticket for the user, who is in gcnQDSC. Takes the ticket
/// away, so that no program started from here has it.
[[nodiscard]] bool tookTicketFor(const std::string& user);

}  // namespace startup
