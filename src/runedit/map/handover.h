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

/// Hands the run over: its work files, the hand-off record and the requests. The stop export is the
/// mark by which only one of several programs gets to hand over the same run. Where anything fails,
/// the work files are again what they were before.
///
/// Raises StillProcessing, dde::errors, "Path/File access error" (75), store::StoreError.
void handOver(const HandOver& handOver);

/// Writes a request list for several runs at once; the one before it becomes the old one.
void writeRequestList(const WorkFiles& files, const std::vector<std::string>& lines);

}  // namespace runedit
