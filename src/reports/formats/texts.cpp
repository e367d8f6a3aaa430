#include "reports/formats/texts.h"

#include <algorithm>
#include <cwchar>

#include <fmt/format.h>
#include <locale.h>

#include "platform/base/encoding.h"
#include "platform/base/fold.h"
#include "platform/base/notcopied.h"
#include "platform/base/text.h"

namespace reports {

namespace {

/// The system's knowledge of letters holds for the locale of a thread.
class LettersLocale : private base::NotCopied {
public:
    LettersLocale() : before_(::uselocale(letters())) {}
    ~LettersLocale() { ::uselocale(before_); }

private:
    static locale_t letters() {
        static const locale_t known = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return known == nullptr ? LC_GLOBAL_LOCALE : known;
    }

    locale_t before_;
};

/// Of one character.
std::size_t columnsOfLetter(std::string_view bytes) {
    std::mbstate_t state{};
    wchar_t letter = 0;
    const std::size_t read = std::mbrtowc(&letter, bytes.data(), bytes.size(), &state);
    const int columns = read > bytes.size() ? 1 : ::wcwidth(letter);
    return columns < 0 ? 1 : static_cast<std::size_t>(columns);
}

std::size_t sizeOfLetter(std::string_view text) {
    return std::min(base::characterSize(text), text.size());
}

/// The longest beginning of at most so many columns, one letter at least.
std::size_t fitting(std::string_view text, std::size_t columns) {
    const LettersLocale locale;
    std::size_t end = 0;
    for (std::size_t taken = 0; end < text.size();) {
        const std::size_t size = sizeOfLetter(text.substr(end));
        taken += columnsOfLetter(text.substr(end, size));
        if (taken > columns && end > 0) {
            break;
        }
        end += size;
    }
    return end;
}

void wrapLine(std::string_view line, std::size_t columns, std::vector<std::string>& lines) {
    while (columnsOf(line) > columns) {
        std::size_t end = fitting(line, columns);
        const auto blank = line.substr(0, end + 1).rfind(' ');
        if (blank != std::string_view::npos && !base::trim(line.substr(0, blank)).empty()) {
            end = blank;
        }
        lines.emplace_back(base::trimRight(line.substr(0, end)));
        line = base::trimLeft(line.substr(end));
    }
    lines.emplace_back(line);
}

bool isControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }

}  // namespace

std::string plain(std::string_view text) {
    std::string result =
        base::isAscii(text) ? std::string(text) : base::converted(text, "UTF-8", "UTF-8");
    if (std::ranges::none_of(result, isControl)) {
        return result;
    }
    for (auto at = result.find("\r\n"); at != std::string::npos; at = result.find("\r\n", at)) {
        result.erase(at, 1);
    }
    std::ranges::replace(result, '\r', '\n');
    std::ranges::replace_if(
        result, [](char c) { return isControl(c) && c != '\n'; }, ' ');
    return result;
}

std::string plainCell(CellKind kind, const base::Value& value) {
    return plain(cellText(kind, value));
}

std::size_t columnsOf(std::string_view text) {
    if (base::isAscii(text)) {
        return text.size();
    }
    const LettersLocale locale;
    std::size_t columns = 0;
    while (!text.empty()) {
        const std::size_t size = sizeOfLetter(text);
        columns += columnsOfLetter(text.substr(0, size));
        text.remove_prefix(size);
    }
    return columns;
}

std::vector<std::string> wrapped(std::string_view text, std::size_t columns) {
    std::vector<std::string> lines;
    for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        wrapLine(text.substr(0, end), columns, lines);
        text.remove_prefix(end + 1);
    }
    wrapLine(text, columns, lines);
    return lines;
}

std::string joined(const std::vector<std::string>& texts, std::string_view between) {
    std::string result;
    for (const std::string& text : texts) {
        if (!text.empty()) {
            result += result.empty() ? text : std::string(between) + text;
        }
    }
    return result;
}

bool isNumber(CellKind kind) { return kind != CellKind::Text && kind != CellKind::Days; }

std::string signedNumber(std::optional<int> number) {
    if (!number) {
        return {};
    }
    return *number < 0 ? fmt::format("\u2212{}", -*number) : fmt::format("+{}", *number);
}

std::string printedLine(const Heading& heading) {
    return joined({heading.printed.empty() ? "" : "Printed " + heading.printed,
                   heading.user.empty() ? "" : "by " + heading.user},
                  " ");
}

}  // namespace reports
