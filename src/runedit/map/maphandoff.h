#pragma once

#include <exception>
#include <string>
#include <vector>

#include "platform/base/error.h"

/// Handing runs to the map program and what is left of it in the program folder. These are for
/// forms: they use the session's folders, connections and map setting.
namespace runedit {

/// The screen that hands a run over. The run editor shows the run on the map, the others have it
/// solved again.
enum class MapScreen { Run, AddRun, GroupRunSolve };

/// Where the run editor finds the run's files still there: a question with Yes and No.
inline constexpr auto MapBusyTitle = "Can't Go to Map - Still Processing Last Map Session";
inline constexpr auto MapBusyQuestion =
    "Sorry, Vireo has not finished processing and removing the work files created when you last "
    "worked with this run on the map.  If you just finished working on this run on the map and you "
    "wish to return then click the No button and simply wait a few minutes and try again.  \n"
    "If it has been some time since you last worked on this run then click the Yes button and "
    "Vireo will try to remove these files now - then you can try again to work with the map.";

/// The same told by the stop sequence form and by group run solve, which go on without the map.
inline constexpr auto MapStillProcessingTitle =
    "Can't Work with MAP - Still Processing Last MAP Session.";
inline constexpr auto MapStillProcessingText =
    "Sorry, Vireo has not finished processing and removing the work files created when you last "
    "worked with this run on the map.  Please wait for a minute or two and try again.";

/// What the status label says where there is no exchange.
inline constexpr auto MapExchangeOffText =
    "The exchange with the mapping software is turned off (MAPSoftware in route.ini).";
/// What it says until the map program has taken the request.
inline constexpr auto MapHandingOverText = "Handing the run to the mapping software...";
/// What it says once the files of a run were deleted, and where some are still held.
inline constexpr auto MapFilesDeletedText =
    "The work files were removed. You can work with the map again.";
inline constexpr auto MapFilesHeldText =
    "Some work files are still in use by the mapping software. Please try again later.";

/// Whether the configured map software has an exchange with this program.
[[nodiscard]] bool mapExchangeOn();

/// Whether the map program has not finished with the run: its stop export is still there.
[[nodiscard]] bool mapFilesLeft(const std::string& run);

/// Deletes a run's work files; those that the map program holds stay. True when none is left.
bool deleteMapFiles(const std::string& run);

/// Hands a saved run to the map program, waiting until it took the request; forms repaint
/// meanwhile. Does nothing without an exchange. Where anything fails everything is as before but
/// that the run is marked to be resolved, and the error handler logs it without a message: the form
/// tells the user and goes on. Raises StillProcessing (handover.h; not logged), dde::errors (nobody
/// there, no answer in time, ...), and what else handOver() raises.
void sendRunToMap(const std::string& run, MapScreen screen);

/// What the planner is told of such a failure: why, and how the run gets to the map all the same.
[[nodiscard]] std::string handOverFailedText(const std::exception& fault);

/// Marks a run that could not go to the map, so that the search for runs to be resolved finds it.
/// Does nothing without an exchange; a run or a file that cannot be written now is passed over.
void markToBeResolved(const std::string& run);

/// Raises one of dde::errors where no map program can be reached now.
void requireMapProgram();

/// A run that could not be put into the request list.
struct UnlistedRun {
    std::string run;
    base::RunTimeError fault;
};

/// Makes the request list of several runs, which the clean-up program reads, and answers with the
/// runs that had to be left out: no longer there, or with an id that cannot name a file. Does
/// nothing without an exchange. Raises "Path/File access error" (75).
std::vector<UnlistedRun> listRunsForMap(const std::vector<std::string>& runs, MapScreen screen);

}  // namespace runedit
