#include "tools/district/command/userscommand.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>
#include <set>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "platform/base/text.h"
#include "platform/store/open/open.h"
#include "tools/district/command/fittingfile.h"
#include "tools/district/command/misuse.h"
#include "tools/district/command/passwordcommand.h"
#include "tools/district/users/accounts.h"
#include "tools/district/users/roles.h"
#include "tools/logon/users.h"

namespace tools::district {

namespace {

using TextRow = std::vector<std::string>;

std::size_t charactersOf(std::string_view text) {
    return text.size() -
           static_cast<std::size_t>(std::ranges::count_if(text, base::continuesCharacter));
}

/// Columns as wide as their widest cell.
std::string inColumns(const std::vector<TextRow>& rows) {
    std::vector<std::size_t> widths(rows.front().size());
    for (const TextRow& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], charactersOf(row[i]));
        }
    }
    std::string lines;
    for (const TextRow& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i] + std::string(widths[i] - charactersOf(row[i]) + 2, ' ');
        }
        lines += std::string(base::trimRight(line)) + '\n';
    }
    return lines;
}

std::string_view wordOf(password::Stored stored) {
    switch (stored) {
        case password::Stored::None:
            return "none";
        case password::Stored::Hash:
            return "set";
        case password::Stored::Foreign:
            break;
    }
    return "unusable";
}

/// The roles of the server's planners; nothing for a district in files.
using Roles = std::optional<std::set<std::string>>;

std::string tableOf(const std::vector<Account>& accounts, const Roles& roles) {
    std::vector<TextRow> rows{{"User", "Password"}, {"", ""}};
    for (const Permission& permission : Permissions) {
        rows[0].emplace_back(permission.name);
        rows[1].emplace_back(permission.code);
    }
    if (roles) {
        rows[0].emplace_back("Role");
        rows[1].emplace_back("");
    }
    for (const Account& account : accounts) {
        TextRow& row =
            rows.emplace_back(TextRow{account.id, std::string(wordOf(account.password))});
        for (const Permission& permission : Permissions) {
            row.emplace_back(account.may(permission) ? "yes" : "-");
        }
        if (roles) {
            row.emplace_back(roles->contains(roleOf(account.id)) ? roleOf(account.id) : "-");
        }
    }
    return inColumns(rows);
}

QJsonObject jsonOfAccount(const Account& account, const Roles& roles) {
    QJsonObject permissions;
    for (const Permission& permission : Permissions) {
        permissions.insert(toJson(permission.code), account.may(permission));
    }
    QJsonObject json{{"user", toJson(account.id)},
                     {"password", toJson(wordOf(account.password))},
                     {"permissions", permissions}};
    if (roles) {
        const std::string role = roleOf(account.id);
        json["role"] = roles->contains(role) ? QJsonValue(toJson(role)) : QJsonValue();
    }
    return json;
}

std::vector<Permission> permissionsOf(const std::vector<std::string>& words) {
    std::vector<Permission> permissions;
    for (const std::string& word : words) {
        if (base::equalsNoCase(word, "all")) {
            return {Permissions.begin(), Permissions.end()};
        }
        const Permission* found = findPermission(word);
        if (found == nullptr) {
            std::vector<std::string_view> known;
            std::ranges::transform(Permissions, std::back_inserter(known), &Permission::word);
            throw Misuse{fmt::format("There is no permission \"{}\"; they are {}, and all.", word,
                                     fmt::join(known, ", "))};
        }
        permissions.push_back(*found);
    }
    return permissions;
}

std::string namesOf(const std::vector<Permission>& permissions) {
    std::vector<std::string> names;
    names.reserve(permissions.size());
    for (const Permission& permission : permissions) {
        names.push_back(fmt::format("{} ({})", permission.name, permission.code));
    }
    return fmt::format("{}", fmt::join(names, ", "));
}

/// One call of the command.
class UsersCommand {
public:
    UsersCommand(const UsersOptions& options, std::istream& in, std::ostream& out,
                 std::ostream& complaints)
        : options_(options), in_(in), out_(out), complaints_(complaints) {
        openFitting(users_, options.folders.database(data::DatabaseFile::QDSC).string());
    }

    bool list() {
        const auto accounts = readAccounts(users_);
        const Roles known = roles();
        if (options_.result != nullptr) {
            options_.result->insert("users", arrayOf(accounts, [&](const Account& account) {
                                        return jsonOfAccount(account, known);
                                    }));
        } else {
            out_ << tableOf(accounts, known);
        }
        return true;
    }

    bool role() {
        const auto id = knownUser();
        if (!id) {
            return false;
        }
        if (!options_.folders.isOnServer()) {
            complaints_ << "The district is in files; roles are a server's.\n";
            return false;
        }
        makePlanner(*server(), roleOf(*id));
        out_ << fmt::format(
            "The server's role {0} is a planner of this district now. Give it a password with "
            "psql's \\password, or let it in by a certificate.\n",
            roleOf(*id));
        return true;
    }

    bool add() {
        const std::string id(base::trim(word()));
        if (const std::string why = whyNoIdentifier(id); !why.empty()) {
            complaints_ << why << '\n';
            return false;
        }
        const auto permissions = permissionsOf(furtherWords());
        if (logon::findUser(logon::readUsers(users_), id) != nullptr) {
            complaints_ << fmt::format("There is a user {} already.\n", id);
            return false;
        }
        const auto password = options_.ask ? askPassword(id, complaints_) : std::string();
        if (!password) {
            return false;
        }
        addAccount(users_, id, permissions);
        if (!password->empty()) {
            logon::setPassword(users_, id, *password);
        }
        out_ << fmt::format("Added {} {} a password; may {}.\n", id,
                            password->empty() ? "without" : "with",
                            permissions.empty() ? "do nothing that needs a permission"
                                                : "use " + namesOf(permissions));
        if (const Roles known = roles(); known && !known->contains(roleOf(id))) {
            out_ << fmt::format("The server has no role {} among its planners yet.\n", roleOf(id));
        }
        return true;
    }

    bool remove() {
        const auto id = knownUser();
        if (!id) {
            return false;
        }
        const auto rights = removeAccount(users_, *id);
        out_ << fmt::format("Removed {} with {} {} of all programs of the suite.\n", *id, rights,
                            rights == 1 ? "permission" : "permissions");
        if (const Roles known = roles(); known && known->contains(roleOf(*id))) {
            out_ << fmt::format("The server's role {} stays: DROP ROLE removes it.\n", roleOf(*id));
        }
        return true;
    }

    bool grantAll() { return change("may now use", &grant); }
    bool revokeAll() { return change("may no longer use", &revoke); }

    bool password() {
        return runPassword({.folders = options_.folders, .user = word(), .ask = options_.ask}, in_,
                           out_, complaints_);
    }

private:
    [[nodiscard]] const std::string& word() const { return options_.words[1]; }
    [[nodiscard]] std::vector<std::string> furtherWords() const {
        return {options_.words.begin() + 2, options_.words.end()};
    }

    /// The user as the suite spells it; complains where there is none.
    std::optional<std::string> knownUser() {
        const auto all = logon::readUsers(users_);
        const logon::User* user = logon::findUser(all, word());
        if (user == nullptr) {
            complaints_ << fmt::format("There is no user {}.\n", word());
            return std::nullopt;
        }
        return user->id;
    }

    [[nodiscard]] std::unique_ptr<store::Database> server() const {
        return store::open(options_.folders.database(data::DatabaseFile::QDSC).string());
    }
    [[nodiscard]] Roles roles() const {
        return options_.folders.isOnServer() ? Roles(plannersIn(*server())) : std::nullopt;
    }

    bool change(std::string_view deed, decltype(&grant) make) {
        const auto permissions = permissionsOf(furtherWords());
        const auto id = knownUser();
        if (!id) {
            return false;
        }
        make(users_, *id, permissions);
        out_ << fmt::format("{} {} {}. It counts from the next start of the program.\n", *id, deed,
                            namesOf(permissions));
        if (*id == BuiltInAccount) {
            out_ << fmt::format("As long as {} has no password it may do everything.\n", *id);
        }
        return true;
    }

    const UsersOptions& options_;
    std::istream& in_;
    std::ostream& out_;
    std::ostream& complaints_;
    ado::Connection users_;
};

struct Action {
    std::string_view name;
    std::pair<std::size_t, std::size_t> words;  ///< least and most, the name included
    bool (UsersCommand::*run)();
};

constexpr std::size_t AnyNumber = 1000;
constexpr Action Actions[] = {
    {"list", {1, 1}, &UsersCommand::list},
    {"add", {2, AnyNumber}, &UsersCommand::add},
    {"remove", {2, 2}, &UsersCommand::remove},
    {"grant", {3, AnyNumber}, &UsersCommand::grantAll},
    {"revoke", {3, AnyNumber}, &UsersCommand::revokeAll},
    {"password", {2, 2}, &UsersCommand::password},
    {"role", {2, 2}, &UsersCommand::role},
};

const Action& actionOf(const std::vector<std::string>& words) {
    const auto* const found = std::ranges::find(Actions, words[0], &Action::name);
    if (found == std::end(Actions)) {
        throw Misuse{fmt::format("Nothing is called \"{}\" here.", words[0])};
    }
    if (words.size() < found->words.first) {
        throw Misuse{"Something is missing."};
    }
    if (words.size() > found->words.second) {
        throw Misuse{fmt::format("\"{}\" is one word too many.", words[found->words.second])};
    }
    return *found;
}

}  // namespace

bool runUsers(const UsersOptions& given, std::istream& in, std::ostream& out,
              std::ostream& complaints) {
    UsersOptions options = given;
    if (options.words.empty()) {
        options.words = {"list"};
    }
    const Action& action = actionOf(options.words);
    return (UsersCommand(options, in, out, complaints).*action.run)();
}

}  // namespace tools::district
