#include "platform/store/postgres/faults.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/text.h"
#include "platform/base/value.h"
#include "platform/store/base/database.h"

namespace store::postgres {

namespace {

std::string fieldOf(const PGresult* answer, int field) {
    const char* text = answer == nullptr ? nullptr : library().resultErrorField(answer, field);
    return text == nullptr ? "" : text;
}

/// The server's sentence as the end of one of ours.
std::string oneLine(std::string_view text) {
    std::string line(text);
    std::ranges::replace(line, '\n', ' ');
    std::ranges::replace(line, '\t', ' ');
    line = base::trim(line);
    while (line.ends_with('.')) {
        line.pop_back();
    }
    return line;
}

/// The columns that stand in `Key (a, b)=(1, 2) already exists.`, each with its table.
std::string keyNames(const std::string& table, std::string_view detail) {
    const auto open = detail.find('(');
    const auto close = detail.find(")=");
    if (open == std::string_view::npos || close == std::string_view::npos) {
        return table;
    }
    std::string names = table + '.';
    for (const char c : detail.substr(open + 1, close - open - 1)) {
        if (c != '"') {
            names += c;
        }
        if (c == ' ') {
            names += table + '.';
        }
    }
    return names;
}

[[noreturn]] void raiseConstraint(const Source& source, const PGresult* answer) {
    const std::string table = fieldOf(answer, PG_DIAG_TABLE_NAME);
    const std::string state = stateOf(answer);
    if (state == "23505") {
        throw StoreError(
            Fault::Constraint,
            fmt::format("A row with the same {} is in \"{}\" already.",
                        keyNames(table, fieldOf(answer, PG_DIAG_MESSAGE_DETAIL)), source.path));
    }
    if (state == "23502") {
        throw StoreError(Fault::Constraint,
                         fmt::format("{}.{} in \"{}\" cannot be left without a value.", table,
                                     fieldOf(answer, PG_DIAG_COLUMN_NAME), source.path));
    }
    throw StoreError(Fault::Constraint,
                     fmt::format("The value cannot be stored in \"{}\": {}.", source.path,
                                 oneLine(fieldOf(answer, PG_DIAG_MESSAGE_PRIMARY))));
}

/// A function of the dialect tells its error's number in the detail.
[[noreturn]] void raiseOwn(const PGresult* answer) {
    const int number = std::atoi(fieldOf(answer, PG_DIAG_MESSAGE_DETAIL).c_str());
    const std::string text = fieldOf(answer, PG_DIAG_MESSAGE_PRIMARY);
    if (text == "-") {
        base::raise(number);
    }
    throw base::RunTimeError(number, text);
}

/// Faults of arithmetic that the dialect has numbers of its own for.
void raiseArithmetic(const std::string& state) {
    constexpr int DivisionByZero = 11;
    if (state == "22012") {
        base::raise(DivisionByZero);
    }
    if (state == "22003" || state == "22008") {
        base::raise(base::errors::Overflow);
    }
    if (state == "22P02" || state == "22007") {
        base::raise(base::errors::TypeMismatch);
    }
    if (state == "21000") {
        throw base::RunTimeError(
            3354, "A SELECT in parentheses gave more than one row where one value must stand.");
    }
}

[[noreturn]] void raiseReadOnly(const Source& source, const std::string& detail) {
    throw StoreError(Fault::ReadOnly,
                     fmt::format("\"{}\" may only be read: {}.", source.path, detail));
}

/// What stands in the words of a connection that failed, which have no number. The first one that
/// fits counts: names of users and databases stand in most of them.
struct Sign {
    std::string_view text;
    std::string_view meaning;
};
constexpr std::array Signs{
    Sign{"password authentication failed", "the password was not right"},
    Sign{"no password supplied", "there is no password for it on this account"},
    Sign{"rejects connection", "it lets this user not in from here"},
    Sign{"does not support SSL", "it does not encrypt, which this desktop insists on"},
    Sign{"certificate", "the server's certificate cannot be trusted"},
    Sign{"too many clients", "it has as many connections as it allows"},
    Sign{"too many connections", "it has as many connections as it allows"},
    Sign{"remaining connection slots", "it has as many connections as it allows"},
    Sign{"shutting down", "it is just being stopped"},
    Sign{"no pg_hba.conf entry", "it lets nobody in from here in that way"},
    Sign{"database system is", "it is just starting"},
    Sign{"session is read-only", "only a copy of it answers, which may only be read"},
    Sign{"not currently accepting connections", "its district is closed for now"},
    Sign{"not permitted to log in", "it lets this user not in"},
    Sign{"permission denied", "it lets this user not in"},
    Sign{"could not translate host name", "no machine of that name is known"},
    Sign{"timeout expired", "it did not answer in time"},
    Sign{"timed out", "it did not answer in time"},
    Sign{"Connection refused", "no server answers there"},
    Sign{"No such file", "no server answers there"},
    Sign{"closed the connection", "it was stopped at that moment"},
    Sign{"No route to host", "its network cannot be reached"},
    Sign{"Network is unreachable", "its network cannot be reached"},
    Sign{"definition of service", "there is no such entry in the service file"},
    Sign{"role", "it does not know this user"},
    Sign{"database", "it has no such database"},
};

}  // namespace

std::string stateOf(const PGresult* answer) { return fieldOf(answer, PG_DIAG_SQLSTATE); }

bool isFault(const PGresult* answer) {
    if (answer == nullptr) {
        return true;
    }
    const auto status = library().resultStatus(answer);
    return status == PGRES_FATAL_ERROR || status == PGRES_BAD_RESPONSE;
}

bool isLost(PGconn* connection, const PGresult* answer) {
    if (answer == nullptr || library().status(connection) == CONNECTION_BAD) {
        return true;
    }
    const std::string state = stateOf(answer);
    return isFault(answer) && (state.empty() || state.starts_with("08") ||
                               state.starts_with("57P0") || state == "25P03");
}

void raiseFault(const Source& source, const PGresult* answer) {
    const std::string state = stateOf(answer);
    const std::string text = oneLine(fieldOf(answer, PG_DIAG_MESSAGE_PRIMARY));
    if (state == "VIREO") {
        raiseOwn(answer);
    }
    raiseArithmetic(state);
    if (state == "55P03" || state == "40P01" || state == "40001") {
        raiseLocked(source);
    }
    if (state == "25006") {
        raiseReadOnly(source, fmt::format("its server is a copy, or closed to changes ({})", text));
    }
    if (state == "42501") {
        raiseReadOnly(source, text);
    }
    if (state.starts_with("53")) {
        throw StoreError(Fault::Full,
                         fmt::format("The server has no room left for \"{}\" ({}). The change was "
                                     "not made.",
                                     source.path, text));
    }
    if (state.starts_with("23") || state == "22001") {
        raiseConstraint(source, answer);
    }
    if (state == "57014") {
        throw StoreError(Fault::GivenUp,
                         fmt::format("The server broke off what it did for \"{}\": {}. Nothing was "
                                     "changed by that.",
                                     source.path, text));
    }
    if (state == "XX001" || state == "XX002") {
        throw StoreError(Fault::Damaged, fmt::format("\"{}\" is damaged: {}.", source.path, text));
    }
    const bool isStatement = state.starts_with("42") || state.starts_with("22");
    throw StoreError(isStatement ? Fault::Statement : Fault::Other,
                     fmt::format("\"{}\": {}.", source.path, text));
}

void raiseLocked(const Source& source) {
    throw StoreError(Fault::Locked,
                     fmt::format("\"{}\" is locked by another program, which did not release it "
                                 "within {} seconds.",
                                 source.path, base::numberText(source.lockTimeoutMs / 1000.0)));
}

void raiseLost(const Source& source, const std::string& what) {
    throw StoreError(Fault::Lost,
                     fmt::format("The connection to the server of \"{}\" was lost. {} The program "
                                 "connects again with the next action.",
                                 source.path, what));
}

void raiseGivenUp(const Source& source, const std::string& what) {
    throw StoreError(
        Fault::GivenUp,
        fmt::format("You did not wait any longer for the server of \"{}\". {}", source.path, what));
}

void raiseUnreachable(const Source& source, PGconn* connection) {
    const std::string text = oneLine(library().errorMessage(connection));
    const auto* sign = std::ranges::find_if(
        Signs, [&](const Sign& one) { return text.find(one.text) != std::string::npos; });
    throw StoreError(
        Fault::Unreachable,
        sign == Signs.end()
            ? fmt::format("The server of \"{}\" cannot be used: {}.", source.path, text)
            : fmt::format("The server of \"{}\" cannot be used: {} ({}).", source.path,
                          sign->meaning, text));
}

}  // namespace store::postgres
