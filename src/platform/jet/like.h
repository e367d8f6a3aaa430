#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace jet {

/// Whether the whole text matches a LIKE pattern: `%` any characters, `_` one, `[a-z]` one of,
/// `[!a-z]` one not of. Letter case is ignored, trailing blanks count. A bracket that is not
/// closed stands for itself; an empty pair matches nothing and takes no character. Linear in the
/// text for each `%` of the pattern.
[[nodiscard]] bool like(std::string_view text, std::string_view pattern);

/// What a pattern consists of, as far as it decides how the store searches for it. The store folds
/// ASCII letters alone, so that a pattern with others counts as one with brackets.
enum class LikeForm : std::uint8_t {
    None,            ///< not the pattern of a LIKE
    Exact,           ///< no wildcard
    Anything,        ///< only `%`
    Prefix,          ///< a fixed beginning, then only `%`
    PrefixMore,      ///< a fixed beginning, then `%` and `_` among other text
    Pattern,         ///< `%` and `_` from the beginning
    PrefixBrackets,  ///< a fixed beginning, then something in brackets
    Brackets,        ///< something in brackets, without a fixed beginning
};

[[nodiscard]] LikeForm likeForm(std::string_view pattern);

/// The part before the first wildcard or letter that the store does not fold.
[[nodiscard]] std::string_view fixedPrefix(std::string_view pattern);

/// A text that sorts behind every text beginning with `prefix`, and before the next prefix of that
/// length.
[[nodiscard]] std::string beyondPrefix(std::string_view prefix);

}  // namespace jet
