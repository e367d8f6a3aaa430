#include "tools/extract/tags/tags.h"

#include <algorithm>

namespace tools::extract {

std::string_view Tags::operator[](std::string_view key) const {
    const auto found = std::ranges::find(tags_, key, &Tag::first);
    return found == tags_.end() ? std::string_view() : found->second;
}

bool Tags::isAny(std::string_view key, std::initializer_list<std::string_view> values) const {
    const std::string_view value = (*this)[key];
    return std::ranges::find(values, value) != values.end();
}

std::string_view Tags::first(std::initializer_list<std::string_view> keys) const {
    for (const std::string_view key : keys) {
        if (const auto value = (*this)[key]; !value.empty()) {
            return value;
        }
    }
    return {};
}

}  // namespace tools::extract
