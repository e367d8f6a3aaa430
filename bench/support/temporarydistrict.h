#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "data/schema/schema.h"

namespace bench {

/// A district of its own in a temporary folder, removed at its end: the sample, or an invented one
/// of so many runs.
class TemporaryDistrict {
public:
    explicit TemporaryDistrict(std::optional<std::int64_t> runs);
    ~TemporaryDistrict();
    TemporaryDistrict(const TemporaryDistrict&) = delete;
    TemporaryDistrict& operator=(const TemporaryDistrict&) = delete;

    [[nodiscard]] std::string path(data::DatabaseFile file) const;

private:
    std::filesystem::path folder_;
};

}  // namespace bench
