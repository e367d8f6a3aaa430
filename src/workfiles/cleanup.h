#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/base/boundedarray.h"
#include "platform/table/texttable.h"
#include "runedit/map/workfiles.h"

/// Removing what a hand-over to the map program leaves in the program folder.
namespace workfiles {

enum class FileState {
    Missing,  ///< not there, or not any more
    There,
    Deleted,
    Held,  ///< the map program holds it, or it may not be deleted
};

struct RunFile {
    std::string run;
    std::string name;  ///< without its folder
    FileState state = FileState::Missing;

    friend bool operator==(const RunFile&, const RunFile&) = default;
};

/// The work files of the runs that stand in the request list. At most 16 runs: one more raises
/// "Subscript out of range" (9) before anything is deleted.
class CleanUp {
public:
    using LogLine = std::function<void(const std::string&)>;

    /// `log` gets a line for everything that is done; each tells the time.
    CleanUp(runedit::WorkFiles files, LogLine log);

    /// Reads the request list and sees which files are there; deletes nothing.
    void look();
    /// Reads the request list, deletes the files of its runs and logs each.
    void deleteFiles();
    /// Tries again, silently. Where no file is held any more the request list goes, too, unless it
    /// is another hand-over's by now; true when there is nothing left to do. Raises, as
    /// deleteFiles() does, "Path/File access error" (75) where another program's hand-over does not
    /// end.
    bool retry();

    /// The files of the runs read, in the order of the list.
    [[nodiscard]] const std::vector<RunFile>& files() const { return runFiles_; }
    [[nodiscard]] int heldFiles() const;

private:
    static constexpr int LastRun = 15;

    void readRuns(const LogLine& log);
    [[nodiscard]] bool isListStillThere() const;
    void forEachFile(const std::function<void(RunFile&, const std::string& path)>& task);
    void logWithTime(const std::string& text) const;

    runedit::WorkFiles files_;
    LogLine log_;
    base::BoundedArray<std::string, 0, LastRun> runs_;
    int runCount_ = 0;
    std::vector<RunFile> runFiles_;
    std::string list_;  ///< the request list as it was read
};

/// The files as a list with the columns run, file and state.
[[nodiscard]] table::TextTable tableOf(const std::vector<RunFile>& files);

}  // namespace workfiles
