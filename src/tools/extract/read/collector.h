#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tools/extract/read/extract.h"

namespace tools::extract {

/// A way after which a node comes: ways cannot be looked at before their nodes are known.
struct Unsorted {};

struct Member {
    std::string_view role;
    std::int64_t id = 0;
    bool isWay = true;
};

/// Takes what files say, thing by thing, and keeps what streets are made of.
class Collector {
public:
    explicit Collector(const std::optional<DegreeBox>& box) : box_(box) {}

    /// A new file.
    void begin();
    /// Raises Unsorted behind a way.
    void node(std::int64_t id, const geo::Degrees& at, const Tags& tags);
    void way(std::int64_t id, std::vector<std::int64_t> nodes, const Tags& tags);
    void relation(std::int64_t id, const std::vector<Member>& members, const Tags& tags);

    [[nodiscard]] Extract finish();

private:
    struct ReadWay {
        ExtractWay way;
        std::vector<std::int64_t> nodes;
    };
    struct WayHouse {
        std::int64_t way = 0;
        HouseTraits traits;
    };

    void sortNodes();
    [[nodiscard]] std::optional<std::uint32_t> indexOf(std::int64_t node) const;
    void turn(const std::vector<Member>& members, const TurnTraits& traits);
    void numberMarks();
    void numberTurns();
    void resolveWays();
    void placeHouses();

    std::optional<DegreeBox> box_;
    Extract extract_;
    bool isSorted_ = true;
    bool hasWays_ = false;
    std::vector<std::pair<std::int64_t, PointTraits>> marks_;
    std::vector<std::int64_t> turnNodes_;  ///< of each turn; 0 for none
    std::vector<ReadWay> ways_;
    std::vector<WayHouse> wayHouses_;
    std::unordered_set<std::int64_t> relations_;
};

}  // namespace tools::extract
