#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "map/shown/comparison.h"
#include "map/shown/runscene.h"
#include "map/shown/troubles.h"

namespace map {

/// A row of the window's panel, ready to be shown and to be read out.
struct PanelRow {
    enum class Mark { Number, School, Garage, Run, Candidate, None };
    Mark mark = Mark::None;
    std::string number = {};  ///< in the disc, or on the plate of a run
    std::string title = {};
    std::string detail = {};                ///< the second line; "" for none
    std::array<std::string, 3> cells = {};  ///< as the columns say
    std::string spoken = {};
    bool isWarned = false;
    bool isStrong = false;     ///< its last cell stands out
    bool canBeHidden = false;  ///< has a check box
    bool isShown = true;       ///< which is checked
    int colour = 0;            ///< of a run
    std::size_t index = 0;     ///< of the stop in its run, of the run among those shown
};

/// The row of the garage that a run comes from or goes to is none of a stop.
inline constexpr std::size_t GarageRow = NoStop - 1;

/// What stands above the rows, and where a narrow panel shows but one figure, which.
struct PanelColumns {
    std::string title = {};
    std::array<std::string, 3> cells = {};
    std::size_t whenNarrow = 1;
};

struct Panel {
    std::string heading = {};
    std::string subject = {};
    std::string totals = {};  ///< "Passengers 52 / 64   Miles 8.26   Min 32.7"
    std::string note = {};    ///< a sentence below the totals; "" for none
    PanelColumns columns = {};
    std::vector<PanelRow> rows = {};
};

/// One run, stop by stop. Turn points are not among the rows; the garage of its route is, as
/// NoStop.
[[nodiscard]] Panel panelOf(const ShownRun& shown);
/// The same before and after.
[[nodiscard]] Panel panelOf(const ShownRun& shown, const Comparison& comparison);
/// The driver's directions along the way, a row each; the row of a stop leads to it.
[[nodiscard]] Panel directionsPanelOf(const ShownRun& shown);
/// Several runs, a row each.
[[nodiscard]] Panel panelOf(std::span<const ShownRun> runs, const std::string& heading);

/// Troubles with what cures them, as far as that is known already, a line each: those of one stop,
/// or the first two of each kind but remarks, and how many more there are.
[[nodiscard]] std::string troubleText(const std::vector<Trouble>& troubles,
                                      const std::vector<std::string>& cures,
                                      std::size_t stop = NoStop);

}  // namespace map
