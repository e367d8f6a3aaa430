#include "platform/jet/report.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/jet/error.h"

namespace jet {

namespace {

constexpr std::size_t Reach = 25;

bool isWord(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           static_cast<unsigned char>(c) >= 0x80U;
}

/// Whether a text before the offset ended in the middle of a word, as 'O'Brien' does.
bool endsInsideWord(std::string_view sql, std::size_t offset) {
    bool inside = false;
    for (std::size_t i = 0; i + 1 < sql.size() && i < offset; ++i) {
        if (sql[i] != '\'') {
            continue;
        }
        if (inside && sql[i + 1] == '\'') {
            ++i;
            continue;
        }
        inside = !inside;
        if (!inside && isWord(sql[i + 1])) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::string around(std::string_view sql, std::size_t offset) {
    offset = std::min(offset, sql.size());
    const auto from = base::characterStart(sql, offset > Reach ? offset - Reach : 0);
    const auto to = base::characterStart(sql, std::min(offset + Reach, sql.size()));
    std::string excerpt(sql.substr(from, to - from));
    std::replace_if(
        excerpt.begin(), excerpt.end(), [](char c) { return c >= 0 && c < ' '; }, ' ');
    return fmt::format("{}{}{}", from > 0 ? "…" : "", excerpt, to < sql.size() ? "…" : "");
}

void fail(int number, std::string_view what, std::string_view sql, std::size_t offset) {
    const std::string_view before = sql.substr(0, std::min(offset, sql.size()));
    const auto characters =
        std::ranges::count_if(before, [](char c) { return !base::continuesCharacter(c); });
    const std::size_t position = static_cast<std::size_t>(characters) + 1;
    throw SqlError(number,
                   fmt::format("{} at position {}: {}", what, position, around(sql, offset)),
                   position);
}

void failSyntax(std::string_view what, std::string_view sql, std::size_t offset) {
    if (endsInsideWord(sql, offset)) {
        fail(errors::Syntax,
             fmt::format("An apostrophe ends a text: write it twice, or _ for it in a pattern. {}",
                         what),
             sql, offset);
    }
    fail(errors::Syntax, what, sql, offset);
}

}  // namespace jet
