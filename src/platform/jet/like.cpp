#include "platform/jet/like.h"

#include <algorithm>

#include "platform/base/fold.h"
#include "platform/base/text.h"

namespace jet {

namespace {

constexpr std::string_view Wildcards = "%_[";
constexpr auto None = std::string_view::npos;

std::string_view firstCharacter(std::string_view text) {
    return text.substr(0, base::characterSize(text));
}

bool notAfter(std::string_view a, std::string_view b) {
    return base::foldedCharacter(a) <= base::foldedCharacter(b);
}

/// The characters of a bracket: "a-z", "!abc".
bool inBracket(std::string_view character, std::string_view set) {
    const bool negated = set.size() > 1 && set.front() == '!';
    if (negated) {
        set.remove_prefix(1);
    }
    bool found = false;
    while (!set.empty() && !found) {
        const auto from = firstCharacter(set);
        set.remove_prefix(from.size());
        if (set.size() > 1 && set.front() == '-') {
            const auto to = firstCharacter(set.substr(1));
            set.remove_prefix(1 + to.size());
            found = notAfter(from, character) && notAfter(character, to);
        } else {
            found = notAfter(from, character) && notAfter(character, from);
        }
    }
    return found != negated;
}

/// One item of a pattern that stands for one character of the text (or for none: "[]").
struct Item {
    std::string_view set;  ///< between the brackets
    bool bracket = false;
    std::size_t size = 1;  ///< of the item in the pattern
};

Item itemAt(std::string_view pattern) {
    if (pattern.front() == '[') {
        const auto close = pattern.find(']', 1);
        if (close != None) {
            return {pattern.substr(1, close - 1), true, close + 1};
        }
    }
    return {{}, false, base::characterSize(pattern)};
}

/// How far one item goes in the text: its bytes, or None where it does not match.
std::size_t matched(std::string_view text, std::string_view pattern, const Item& item) {
    if (item.bracket && item.set.empty()) {
        return 0;
    }
    if (text.empty()) {
        return None;
    }
    const auto character = firstCharacter(text);
    if (item.bracket) {
        return inBracket(character, item.set) ? character.size() : None;
    }
    if (pattern.front() == '_') {
        return character.size();
    }
    const auto wanted = pattern.substr(0, item.size);
    const bool same = notAfter(character, wanted) && notAfter(wanted, character);
    return same ? character.size() : None;
}

bool hasBrackets(std::string_view pattern) {
    const auto open = pattern.find('[');
    return open != None && pattern.find(']', open) != None;
}

bool isWild(std::string_view pattern, std::size_t offset) {
    return pattern[offset] != '[' || pattern.find(']', offset) != None;
}

}  // namespace

bool like(std::string_view text, std::string_view pattern) {
    std::size_t t = 0;
    std::size_t p = 0;
    std::size_t retryPattern = None;  // behind the last % met
    std::size_t retryText = 0;
    while (t < text.size() || p < pattern.size()) {
        if (p < pattern.size() && pattern[p] == '%') {
            retryPattern = ++p;
            retryText = t;
            continue;
        }
        if (p < pattern.size()) {
            const Item item = itemAt(pattern.substr(p));
            const std::size_t bytes = matched(text.substr(t), pattern.substr(p), item);
            if (bytes != None) {
                t += bytes;
                p += item.size;
                continue;
            }
        }
        if (retryPattern == None || retryText >= text.size()) {
            return false;
        }
        retryText += base::characterSize(text.substr(retryText));
        t = retryText;
        p = retryPattern;
    }
    return true;
}

std::string_view fixedPrefix(std::string_view pattern) {
    const auto* plain = std::ranges::find_if(
        pattern, [](char c) { return static_cast<unsigned char>(c) >= 0x80U; });
    pattern = pattern.substr(0, static_cast<std::size_t>(plain - pattern.begin()));
    for (auto at = pattern.find_first_of(Wildcards); at != None;
         at = pattern.find_first_of(Wildcards, at + 1)) {
        if (isWild(pattern, at)) {
            return pattern.substr(0, at);
        }
    }
    return pattern;
}

LikeForm likeForm(std::string_view pattern) {
    const auto prefix = fixedPrefix(pattern);
    if (prefix.size() == pattern.size()) {
        return LikeForm::Exact;
    }
    if (hasBrackets(pattern) || !base::isAscii(pattern)) {
        return prefix.empty() ? LikeForm::Brackets : LikeForm::PrefixBrackets;
    }
    const bool onlyPercent = pattern.find_first_not_of('%', prefix.size()) == None;
    if (prefix.empty()) {
        return onlyPercent ? LikeForm::Anything : LikeForm::Pattern;
    }
    return onlyPercent ? LikeForm::Prefix : LikeForm::PrefixMore;
}

std::string beyondPrefix(std::string_view prefix) {
    // U+10FFFF stands in no text: it is set aside as no character.
    return std::string(prefix) + "\xF4\x8F\xBF\xBF";
}

}  // namespace jet
