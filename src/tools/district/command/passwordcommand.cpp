#include "tools/district/command/passwordcommand.h"

#include <istream>
#include <ostream>

#include <fmt/format.h>

#include "platform/ado/connection.h"
#include "platform/base/text.h"
#include "platform/password/password.h"
#include "tools/district/base/terminal.h"
#include "tools/district/command/fittingfile.h"
#include "tools/logon/users.h"

namespace tools::district {

namespace {

std::string listed(const std::vector<logon::User>& users) {
    return users.empty() ? "none" : base::joined(users, ", ", &logon::User::id);
}

std::optional<std::string> readLine(std::istream& in, std::ostream& complaints) {
    std::string line;
    if (!std::getline(in, line)) {
        complaints << "Standard input holds no password.\n";
        return std::nullopt;
    }
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    return line;
}

bool canBeStored(const std::string& password, std::ostream& complaints) {
    if (password.size() > password::Longest || password.find('\0') != std::string::npos) {
        complaints << fmt::format(
            "A password has at most {} bytes and no zero byte; nothing was changed.\n",
            password::Longest);
        return false;
    }
    return true;
}

}  // namespace

std::optional<std::string> askPassword(const std::string& user, std::ostream& complaints,
                                       std::string_view hint) {
    std::string password = askHidden(fmt::format("New password of {} ({}): ", user, hint));
    if (askHidden("The same again: ") != password) {
        complaints << "These are two different passwords; nothing was changed.\n";
        return std::nullopt;
    }
    return canBeStored(password, complaints) ? std::optional(password) : std::nullopt;
}

std::optional<std::string> firstPassword(const std::string& user, bool isTyped, std::istream& in,
                                         std::ostream& complaints) {
    auto password =
        isTyped ? askPassword(user, complaints, "it is not shown") : readLine(in, complaints);
    if (!password || !canBeStored(*password, complaints)) {
        return std::nullopt;
    }
    if (password->empty()) {
        complaints << fmt::format("{} needs a password; nothing was changed.\n", user);
        return std::nullopt;
    }
    return password;
}

bool runPassword(const PasswordOptions& options, std::istream& in, std::ostream& out,
                 std::ostream& complaints) {
    ado::Connection connection;
    openFitting(connection, options.folders.database(data::DatabaseFile::QDSC).string());
    const std::vector<logon::User> users = logon::readUsers(connection);
    const logon::User* user = logon::findUser(users, options.user);
    if (user == nullptr) {
        complaints << fmt::format("There is no user {}; the users are {}\n", options.user,
                                  listed(users));
        return false;
    }
    const auto password =
        options.ask ? askPassword(user->id, complaints) : readLine(in, complaints);
    if (!password || !canBeStored(*password, complaints)) {
        return false;
    }
    logon::setPassword(connection, user->id, *password);
    out << fmt::format("The password of {} was {}.\n", user->id,
                       password->empty() ? "taken away" : "set");
    return true;
}

}  // namespace tools::district
