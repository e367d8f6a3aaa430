#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tools/district/base/folders.h"
#include "tools/district/import/apply/importer.h"

namespace tools::district {

/// How sources that are no CSV files are read.
struct SourceChoice {
    std::vector<std::string> trips = {};  ///< signs of a feed's school trips
    bool sharedStops = false;
    std::string charset = "CP1252";  ///< of the texts of Access 97
    bool keepsCentre = false;        ///< a district without a centre gets the feed's
};

/// An import's sources as CSV files: the tables of Access files and the school trips of transit
/// feeds are written as such into private folders, which last as long as this.
class ImportSources {
public:
    /// Raises base::RunTimeError for a source that cannot be read.
    ImportSources(const std::vector<std::filesystem::path>& sources, const SourceChoice& choice,
                  const Folders& district);

    [[nodiscard]] const std::vector<std::filesystem::path>& files() const { return files_; }
    /// What was left out or guessed on the way, a line each.
    [[nodiscard]] const std::string& remarks() const { return remarks_; }
    /// What must be chosen first; empty where nothing must.
    [[nodiscard]] const std::string& question() const { return question_; }

private:
    const std::filesystem::path& newFolder();
    void takeFeed(const std::filesystem::path& feed, const SourceChoice& choice,
                  const Folders& district);
    void takeAccess(const std::filesystem::path& file, const SourceChoice& choice);

    std::vector<std::filesystem::path> files_;
    std::vector<std::unique_ptr<PrivateFolder>> folders_;
    std::string remarks_;
    std::string question_;
};

}  // namespace tools::district
