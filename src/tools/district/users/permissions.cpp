#include "tools/district/users/permissions.h"

#include <algorithm>
#include <cctype>
#include <string>

#include "platform/base/text.h"

namespace tools::district {

namespace {

std::string lettersOf(std::string_view text) {
    std::string letters = base::lowered(text);
    std::erase_if(letters, [](unsigned char c) { return std::isalnum(c) == 0; });
    return letters;
}

}  // namespace

const Permission* findPermission(std::string_view text) {
    const auto isMeant = [meant = lettersOf(text)](const Permission& one) {
        return meant == lettersOf(one.code) || meant == lettersOf(one.name) ||
               meant == lettersOf(one.word);
    };
    const auto* const found = std::ranges::find_if(Permissions, isMeant);
    return found == Permissions.end() ? nullptr : found;
}

}  // namespace tools::district
