#include "tools/district/command/commandline.h"

#include <charconv>
#include <exception>
#include <iostream>
#include <istream>
#include <map>
#include <optional>
#include <ostream>

#include <fmt/format.h>

#include "platform/files/files.h"
#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"
#include "tools/district/base/terminal.h"
#include "tools/district/check/checks.h"
#include "tools/district/command/passwordcommand.h"
#include "tools/district/command/sqlcommand.h"
#include "tools/district/make/companions.h"
#include "tools/district/make/create.h"
#include "tools/district/make/generator.h"

namespace tools::district {

namespace {

constexpr std::string_view Usage = R"(Usage:
  vireo-district create FOLDER                        a sample district from a published plan
  vireo-district create FOLDER --runs N [--seed S]    an invented district of N runs
  vireo-district check FOLDER                         look for faults in a district's files
  vireo-district sql FILE [STATEMENT]                 run statements on one database file
  vireo-district sql --check FILE [STATEMENT]         only say whether they are understood
  vireo-district password FOLDER USER                 set or take away a user's password
  vireo-district programs FOLDER                      link the companion programs again
  vireo-district --help                               this text

create  makes FOLDER with its six database files and settings; XDG_CONFIG_HOME=FOLDER tarn USER
        works on it. Its users are PLANNER (may do everything), CLERK (may only print) and R.T.E.
        The same N and S (default 1) give the same district.
check   says what it found and ends with 1 where that is anything.
sql     takes statements from standard input, one a line, where none is given; lines that are
        empty or begin with -- are skipped. Rows come as a table with a header, cells parted by
        tabs, Null as nothing; a change tells how many rows it changed. It stops at the first
        statement that fails. routing.mdb also sees the tables of trip.mdb.

password  asks on the terminal, twice and unseen; elsewhere it reads one line of standard input.
        An empty password takes it away.
programs  links Logon.Exe and the other programs that the suite starts from the program folder,
        as create does; for a district that was made without them, or after they have moved.

It ends with 0 when all went well, 1 for a failure or a finding, 2 for a wrong command line.
)";

/// Thrown for a command line that is not understood.
struct Misuse {
    std::string what;
};

/// The words of a command: its options, then what is left.
class Words {
public:
    /// `known` says for each option whether a value follows it.
    Words(const std::vector<std::string>& words, const std::map<std::string, bool>& known) {
        bool optionsEnded = false;
        for (std::size_t i = 1; i < words.size(); ++i) {
            const std::string& word = words[i];
            if (optionsEnded || !word.starts_with("--")) {
                plain_.push_back(word);
            } else if (word == "--") {
                optionsEnded = true;
            } else if (const auto option = known.find(word); option == known.end()) {
                throw Misuse{fmt::format("Unknown option {}.", word)};
            } else if (!option->second) {
                options_[word] = "";
            } else if (++i < words.size()) {
                options_[word] = words[i];
            } else {
                throw Misuse{fmt::format("A value must follow {}.", word)};
            }
        }
    }

    [[nodiscard]] bool has(const std::string& option) const { return options_.contains(option); }

    [[nodiscard]] std::optional<std::uint64_t> number(const std::string& option,
                                                      std::uint64_t least,
                                                      std::uint64_t most) const {
        const auto found = options_.find(option);
        if (found == options_.end()) {
            return std::nullopt;
        }
        const std::string& text = found->second;
        std::uint64_t value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc{} || end != text.data() + text.size() || value < least ||
            value > most) {
            throw Misuse{fmt::format("{} takes a whole number from {} to {}, not \"{}\".", option,
                                     least, most, text)};
        }
        return value;
    }

    [[nodiscard]] const std::vector<std::string>& plain(std::size_t least, std::size_t most,
                                                        std::string_view what) const {
        if (plain_.size() < least) {
            throw Misuse{fmt::format("{} is missing.", what)};
        }
        if (plain_.size() > most) {
            throw Misuse{fmt::format("\"{}\" is one word too many.", plain_[most])};
        }
        for (const std::string& word : plain_) {
            if (word.empty()) {
                throw Misuse{fmt::format("{} is empty.", what)};
            }
        }
        return plain_;
    }

private:
    std::map<std::string, std::string> options_;
    std::vector<std::string> plain_;
};

ExitStatus create(const std::vector<std::string>& given, std::ostream& out) {
    const Words words(given, {{"--runs", true}, {"--seed", true}});
    CreateOptions options;
    options.folder = words.plain(1, 1, "The folder").front();
    if (const auto runs = words.number("--runs", 1, MostRuns)) {
        options.runs = static_cast<std::int64_t>(*runs);
    }
    if (const auto seed = words.number("--seed", 0, UINT64_MAX)) {
        if (!options.runs) {
            throw Misuse{"--seed says how to invent a district; it needs --runs."};
        }
        options.seed = *seed;
    }
    Progress progress;
    createDistrict(options, progress);
    out << fmt::format("Made a district in {}.\n", options.folder.string());
    return ExitStatus::Done;
}

ExitStatus check(const std::vector<std::string>& given, std::ostream& out) {
    const Words words(given, {});
    Progress progress;
    const CheckReport report = checkDistrict({words.plain(1, 1, "The folder").front()}, progress);
    out << report.text();
    return report.findings.empty() ? ExitStatus::Done : ExitStatus::Failed;
}

ExitStatus sql(const std::vector<std::string>& given, std::istream& in, std::ostream& out,
               std::ostream& complaints) {
    const Words words(given, {{"--check", false}});
    const auto& plain = words.plain(1, 2, "The database file");
    const SqlOptions options{.file = plain.front(),
                             .statement = plain.size() > 1 ? std::optional(plain[1]) : std::nullopt,
                             .onlyCheck = words.has("--check")};
    return runSql(options, in, out, complaints) ? ExitStatus::Done : ExitStatus::Failed;
}

ExitStatus password(const std::vector<std::string>& given, std::istream& in, std::ostream& out,
                    std::ostream& complaints) {
    const Words words(given, {});
    const auto& plain = words.plain(2, 2, "The folder or the user");
    const PasswordOptions options{
        .folder = plain[0], .user = plain[1], .ask = &in == &std::cin && isTyped()};
    return runPassword(options, in, out, complaints) ? ExitStatus::Done : ExitStatus::Failed;
}

ExitStatus programs(const std::vector<std::string>& given, std::ostream& out) {
    const Words words(given, {});
    const Folders folders{words.plain(1, 1, "The folder").front()};
    for (const std::string& name : linkCompanions(files::programFolder(), folders.programs())) {
        out << fmt::format("Linked {}.\n", name);
    }
    return ExitStatus::Done;
}

ExitStatus dispatch(const std::vector<std::string>& words, std::istream& in, std::ostream& out,
                    std::ostream& complaints) {
    if (words.empty()) {
        throw Misuse{"A command is missing."};
    }
    for (const std::string& word : words) {
        if (word == "--help" || word == "-h") {
            out << Usage;
            return ExitStatus::Done;
        }
        if (word == "--") {
            break;
        }
    }
    const std::string& command = words.front();
    if (command == "create") {
        return create(words, out);
    }
    if (command == "check") {
        return check(words, out);
    }
    if (command == "sql") {
        return sql(words, in, out, complaints);
    }
    if (command == "password") {
        return password(words, in, out, complaints);
    }
    if (command == "programs") {
        return programs(words, out);
    }
    throw Misuse{fmt::format("Unknown command \"{}\".", command)};
}

}  // namespace

ExitStatus runCommand(const std::vector<std::string>& words, std::istream& in, std::ostream& out,
                      std::ostream& complaints) noexcept {
    try {
        return dispatch(words, in, out, complaints);
    } catch (const Misuse& misuse) {
        complaints << misuse.what << "\nvireo-district --help says how to call it.\n";
        return ExitStatus::Misused;
    } catch (const Interrupted&) {
        complaints << "Stopped.\n";
    } catch (const std::exception& error) {
        complaints << error.what() << '\n';
    }
    return ExitStatus::Failed;
}

}  // namespace tools::district
