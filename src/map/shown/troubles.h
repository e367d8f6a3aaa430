#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace map {

struct MappedRun;
struct RunWay;

/// None of the stops.
inline constexpr std::size_t NoStop = static_cast<std::size_t>(-1);

/// Something of a run that its planner should look at.
struct Trouble {
    enum class Kind {
        Unserved,  ///< no bus can serve the stop
        Finding,   ///< of the last validation
        DeadEnd,   ///< the bus turns where it should not
        Crossing   ///< who waits at the stop crosses its street to the bus
    };
    Kind kind = Kind::Finding;
    std::size_t stop = NoStop;  ///< NoStop: of the run as a whole
    std::string brief = {};     ///< for the row of its stop; of a finding, its type
    std::string text = {};      ///< a sentence
    /// Crossing a small street: told in the row, and in full with its stop only.
    bool isRemark = false;
};

/// All that is wrong with a run and its way, the worst first.
[[nodiscard]] std::vector<Trouble> troublesOf(const MappedRun& run, const RunWay& way);

/// The first one of a stop that it is marked for; with remarks, the first one of any. Null where
/// there is none.
[[nodiscard]] const Trouble* troubleAt(const std::vector<Trouble>& troubles, std::size_t stop,
                                       bool remarksToo = false);

}  // namespace map
