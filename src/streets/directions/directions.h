#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/date.h"
#include "streets/network/network.h"

namespace streets {

/// A line of a run's driving directions; detailed, brief and very brief ones are taken from the
/// same lines by their types and texts.
struct DirectionLine {
    std::size_t stop = 0;   ///< the stop that the line leads to or stands at, from 0
    std::string_view type;  ///< "Start", "Direction", "Turn Back", "Landmark", "Stop", "Total"
    std::string text1;
    std::string text2;  ///< distance, time, or "SKIP" where there is nothing to say
    std::string shortText;
    std::string shortDistance;
};

/// A stop of a run whose way is known.
struct DirectedStop {
    std::string_view stopId;
    std::string_view address;
    bool passed = false;  ///< a turn point: nobody halts there
    int students = 0;
    std::optional<base::Date> time = {};
    const Leg* way = nullptr;  ///< leads here; null where nothing does
};

struct DirectedRun {
    bool pickup = true;  ///< students board, otherwise they leave
    double miles = 0;
    double minutes = 0;
    std::span<const DirectedStop> stops;
};

/// How turns are told.
enum class Wording {
    Blocks,  ///< of a grid: each street of each leg by itself, "Follow 1st Street, go east"
    Streets  ///< pieces of a street as one, "At the light turn left onto Weber Road, go east"
};

/// Start, way, stops and total. Empty for a run without stops.
[[nodiscard]] std::vector<DirectionLine> directionsOf(const DirectedRun& run, Wording wording);

}  // namespace streets
