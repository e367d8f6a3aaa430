#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>

#include "platform/store/base/database.h"

namespace tools::district {

/// Knows which runs planners have changed since an import brought them, by a digest of each run and
/// its stops that every import leaves in the routing file. A run that no import brought is the
/// planners' own. What the map and the dead-head calculation write does not count.
class RunGuard {
public:
    explicit RunGuard(store::Database& routing) : routing_(routing) {}

    /// Reads the runs as they stand.
    void read();
    [[nodiscard]] bool isEdited(const std::string& run) const;

    /// A run that the import has left alone, or has brought to what its source says.
    void leave(const std::string& run) { left_.insert(keyOf(run)); }
    void bring(const std::string& run) { brought_.insert(keyOf(run)); }
    [[nodiscard]] bool isLeft(const std::string& run) const { return left_.contains(keyOf(run)); }

    /// Notes what the runs that were brought look like now; part of the transaction that is open.
    void record();

private:
    using Digests = std::unordered_map<std::string, std::uint64_t>;

    static std::string keyOf(const std::string& run);
    [[nodiscard]] Digests digestsNow() const;
    void readRecorded();

    store::Database& routing_;
    Digests now_;
    Digests recorded_;
    std::set<std::string> left_;
    std::set<std::string> brought_;
};

}  // namespace tools::district
