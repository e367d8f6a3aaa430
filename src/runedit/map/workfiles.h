#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files/files.h"

/// The files in the program folder by which this program, the map program and the clean-up program
/// tell each other what is under way.
namespace runedit {

namespace workfile {
inline constexpr auto Runs = "Runs.txt";        ///< the request list: one line a run
inline constexpr auto RunsOld = "RunsOld.txt";  ///< the list before it
inline constexpr auto RunsOrg = "RunsOrg.txt";  ///< the list as it was sent
inline constexpr auto RunDone = "RunDone.txt";  ///< the map program's results are in the database
inline constexpr auto RunStops = "runstop.avl";
inline constexpr auto RunRoute = "arun.avl";
inline constexpr auto ClosedStreets = "closedstreets.avl";
}  // namespace workfile

/// What follows a run's id in the names of its files, the stop export first: while that is there,
/// the map program has not finished with the run.
inline constexpr std::array RunFileEndings{".dbf", ".txt", "stops.txt", "time.txt"};

/// The work files of one program folder, which ends in a separator; blanks around it are dropped.
class WorkFiles {
public:
    explicit WorkFiles(std::string_view programFolder);

    [[nodiscard]] std::string path(std::string_view name) const {
        return folder_ + std::string(name);
    }
    /// One program at a time hands a run over or removes work files. Raises "Path/File
    /// access error" (75) where another one does not come to its end within ten seconds.
    [[nodiscard]] files::FolderLock lock() const;
    /// Nothing where there is no such file. Raises "Path/File access error" (75).
    [[nodiscard]] std::optional<std::string> contentsOf(std::string_view name) const;
    /// One of a run's files by its ending. Raises "Path/File access error" (75) for a run whose id
    /// would lead out of the folder.
    [[nodiscard]] std::string ofRun(std::string_view run, std::string_view ending) const;
    [[nodiscard]] std::string stopExport(std::string_view run) const;

    /// Whether the map program has not finished with the run.
    [[nodiscard]] bool isRunAtWork(std::string_view run) const;
    /// Deletes the files of a run; those that a program holds stay. True when none is left.
    bool deleteRun(std::string_view run) const;

    /// The request list becomes the old one; does nothing where there is none. Raises "Path/File
    /// access error" (75).
    void rotateRequests() const;
    /// Deletes a file that may be there. Raises "Path/File access error" (75) where it stays.
    void clear(std::string_view name) const;

private:
    std::string folder_;
};

/// Whether a run's files can be named after it: no separator, no control character, not "|".
[[nodiscard]] bool canNameFiles(std::string_view run);

}  // namespace runedit
