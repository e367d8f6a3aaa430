#include "tools/script/parser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include <fmt/format.h>

#include "platform/base/text.h"

namespace script {

namespace {

constexpr std::string_view Blanks = " \t\r";

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(Blanks);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

/// Reads the parts of one line from left to right into a command.
class LineReader {
public:
    LineReader(int line, std::string_view source) : rest_(source) {
        command_.line = line;
        command_.source = source;
    }

    Command read() {
        if (rest_.front() == '#') {
            command_.text = trimmed(rest_.substr(1));
            return command_;
        }
        const std::string name = word();
        syntax_ = findVerb(name);
        if (syntax_ == nullptr) {
            fail(fmt::format("there is no command \"{}\"", name));
        }
        command_.verb = syntax_->verb;
        takeLastNumber();
        for (const char part : syntax_->parts.substr(0, parts_)) {
            readPart(part);
        }
        if (!rest_.empty()) {
            fail(fmt::format("\"{}\" is too much; usage: {}", rest_, syntax_->usage));
        }
        return command_;
    }

private:
    [[noreturn]] void fail(const std::string& reason) const {
        throw ScriptError(command_.line, reason);
    }
    [[noreturn]] void failUsage() const { fail(fmt::format("usage: {}", syntax_->usage)); }

    std::string word() {
        const std::size_t end = std::min(rest_.find_first_of(Blanks), rest_.size());
        std::string taken(rest_.substr(0, end));
        rest_ = trimmed(rest_.substr(end));
        return taken;
    }

    std::string neededWord() {
        if (rest_.empty()) {
            failUsage();
        }
        return word();
    }

    int number(const std::string& digits) const {
        int value = 0;
        const char* end = digits.data() + digits.size();
        const auto [stop, error] = std::from_chars(digits.data(), end, value);
        if (error != std::errc{} || stop != end || value < 0) {
            fail(fmt::format("\"{}\" is no number; usage: {}", digits, syntax_->usage));
        }
        return value;
    }

    /// A number behind a text ends the line: it is taken off before the text is read.
    void takeLastNumber() {
        parts_ = syntax_->parts.size();
        if (!syntax_->parts.ends_with("TN")) {
            return;
        }
        const std::size_t blank = rest_.find_last_of(Blanks);
        if (blank == std::string_view::npos) {
            failUsage();
        }
        command_.numbers.push_back(number(std::string(rest_.substr(blank + 1))));
        rest_ = trimmed(rest_.substr(0, blank));
        --parts_;
    }

    void readPart(char part) {
        switch (part) {
            case 'C':
                readControl();
                break;
            case 'F':
                command_.form = neededWord();
                break;
            case 'M':
                readMenuOwner();
                break;
            case 'N':
                command_.numbers.push_back(number(neededWord()));
                break;
            case 'R':
                readRows();
                break;
            case 'b':
                if (!rest_.empty()) {
                    readButtons();
                }
                break;
            case 'B':
                readButtons();
                break;
            case 'W':
                command_.words.push_back(neededWord());
                break;
            case 'P':
                readPath();
                break;
            default:
                command_.text = text();
        }
    }

    void readControl() {
        const std::string name = neededWord();
        const std::size_t point = name.find('.');
        if (point == 0 || point == std::string::npos || point + 1 == name.size()) {
            fail(fmt::format("\"{}\" is not FORM.CONTROL; usage: {}", name, syntax_->usage));
        }
        command_.form = name.substr(0, point);
        command_.control = name.substr(point + 1);
    }

    void readMenuOwner() {
        if (rest_.substr(0, rest_.find_first_of(Blanks)).find('.') == std::string_view::npos) {
            command_.form = neededWord();
        } else {
            readControl();
        }
    }

    void readPath() {
        if (rest_.empty()) {
            failUsage();
        }
        command_.text = text();
    }

    void readRows() {
        if (rest_ == "all" || rest_ == "none") {
            command_.words.push_back(word());
            return;
        }
        do {
            command_.numbers.push_back(number(neededWord()));
        } while (!rest_.empty());
    }

    void readButtons() {
        constexpr std::array<std::string_view, 5> Known{"OK", "Cancel", "Yes", "No", "Retry"};
        do {
            const std::string name = neededWord();
            const auto* known = std::find_if(Known.begin(), Known.end(), [&](auto one) {
                return base::equalsNoCase(one, name);
            });
            if (known == Known.end()) {
                fail(fmt::format("there is no button \"{}\"; usage: {}", name, syntax_->usage));
            }
            command_.words.emplace_back(*known);
        } while (!rest_.empty());
    }

    std::string text() {
        const std::string_view all = std::exchange(rest_, {});
        if (all.empty() || all.front() != '"') {
            return std::string(all);
        }
        if (all.size() < 2 || all.back() != '"') {
            fail("the closing quote is missing");
        }
        return unquoted(all.substr(1, all.size() - 2));
    }

    std::string unquoted(std::string_view inner) const {
        std::string plain;
        for (std::size_t i = 0; i < inner.size(); ++i) {
            if (inner[i] != '\\') {
                plain += inner[i];
                continue;
            }
            constexpr std::string_view Escapes = "\"\\tn";
            constexpr std::string_view Meanings = "\"\\\t\n";
            const std::size_t which =
                i + 1 < inner.size() ? Escapes.find(inner[++i]) : std::string_view::npos;
            if (which == std::string_view::npos) {
                fail("a backslash between quotes needs \", \\, t or n behind it");
            }
            plain += Meanings[which];
        }
        return plain;
    }

    Command command_;
    std::string_view rest_;
    const VerbSyntax* syntax_ = nullptr;
    std::size_t parts_ = 0;
};

}  // namespace

std::vector<Command> parse(std::string_view script) {
    std::vector<Command> commands;
    int line = 0;
    while (!script.empty()) {
        const std::size_t end = std::min(script.find('\n'), script.size());
        const std::string_view source = trimmed(script.substr(0, end));
        script.remove_prefix(std::min(end + 1, script.size()));
        ++line;
        if (!source.empty()) {
            commands.push_back(LineReader(line, source).read());
        }
    }
    return commands;
}

}  // namespace script
