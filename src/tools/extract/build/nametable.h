#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace tools::extract {

/// Names by their numbers, each once; the empty one has 0.
class NameTable {
public:
    [[nodiscard]] std::uint32_t numberOf(const std::string& name) {
        const auto [at, isNew] =
            numbers_.try_emplace(name, static_cast<std::uint32_t>(names_.size()));
        if (isNew) {
            names_.push_back(name);
        }
        return at->second;
    }
    [[nodiscard]] const std::vector<std::string>& names() const { return names_; }

private:
    std::vector<std::string> names_{std::string()};
    std::unordered_map<std::string, std::uint32_t> numbers_{{std::string(), 0}};
};

}  // namespace tools::extract
