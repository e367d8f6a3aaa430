#pragma once

#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

namespace tools::extract {

/// What mappers wrote about a thing: keys and values, which the owner keeps.
class Tags {
public:
    using Tag = std::pair<std::string_view, std::string_view>;

    Tags() = default;
    Tags(std::initializer_list<Tag> tags) : tags_(tags) {}

    void clear() { tags_.clear(); }
    void add(std::string_view key, std::string_view value) { tags_.emplace_back(key, value); }

    /// The value, or an empty text.
    [[nodiscard]] std::string_view operator[](std::string_view key) const;
    [[nodiscard]] bool is(std::string_view key, std::string_view value) const {
        return (*this)[key] == value;
    }
    [[nodiscard]] bool isAny(std::string_view key,
                             std::initializer_list<std::string_view> values) const;
    /// The first of these keys that has a value.
    [[nodiscard]] std::string_view first(std::initializer_list<std::string_view> keys) const;
    [[nodiscard]] bool empty() const { return tags_.empty(); }

private:
    std::vector<Tag> tags_;
};

}  // namespace tools::extract
