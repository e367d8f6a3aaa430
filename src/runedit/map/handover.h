#pragma once

#include <string>
#include <vector>

#include "platform/base/error.h"
#include "platform/dde/transport.h"
#include "runedit/map/maphandoff.h"
#include "runedit/map/maprun.h"
#include "runedit/map/workfiles.h"

namespace runedit {

/// The conversation with the map program.
inline constexpr auto MapService = "ArcView";
inline constexpr auto MapTopic = "System";

/// Raised where the map program has not finished with the run.
class StillProcessing : public base::RunTimeError {
public:
    StillProcessing();
};

/// One run on its way to the map program.
struct HandOver {
    ado::Connection& routing;
    WorkFiles files;
    dde::Transport& transport;
    MapScreen screen = MapScreen::Run;
    MapRun run = {};
    double seats = 0;                ///< overfill included
    std::string closedStreets = {};  ///< the district's file; blank for none
};

/// The word that names a screen in the request list.
[[nodiscard]] std::string_view screenWord(MapScreen screen);

/// Hands the run over: its work files, the hand-off record and the requests, so that the map
/// program finds in them what it is asked for: of all programs on one program folder one hands over
/// at a time. The stop export is the mark by which only one of them gets to hand over the same run.
/// Where anything fails, work files, answer and record are again what they were before.
///
/// Raises StillProcessing, dde::errors, "Overflow" (6) for a figure that no map takes, "Path/File
/// access error" (75) also where another program's hand-over does not end, store::StoreError.
void handOver(const HandOver& handOver);

/// Writes a request list for several runs at once; the one before it becomes the old one.
void writeRequestList(const WorkFiles& files, const std::vector<std::string>& lines);

}  // namespace runedit
