#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "data/schema/schema.h"
#include "tools/district/base/newfolder.h"

namespace tools::district {

/// Where a district's files stand: below its folder, or where the folder's settings say.
struct Folders {
    struct Places {
        std::filesystem::path data;
        std::filesystem::path programs;
        std::filesystem::path common;
    };
    std::filesystem::path root;
    std::optional<Places> elsewhere = {};

    [[nodiscard]] std::filesystem::path data() const {
        return elsewhere ? elsewhere->data : root / "data";
    }
    [[nodiscard]] std::filesystem::path programs() const {
        return elsewhere ? elsewhere->programs : root / "prog";
    }
    [[nodiscard]] std::filesystem::path common() const {
        return elsewhere ? elsewhere->common : root / "common";
    }
    /// Where what is kept beside the databases lies: with the programs where these are on a server.
    [[nodiscard]] std::filesystem::path files() const { return isOnServer() ? programs() : data(); }
    [[nodiscard]] std::filesystem::path reports() const { return files() / "RouteRpts"; }
    /// The district's own addresses, as they were last given to its streets.
    [[nodiscard]] std::filesystem::path addresses() const { return files() / "addresses.csv"; }
    /// Where students live, as the district was last told.
    [[nodiscard]] std::filesystem::path homes() const { return files() / "homes.csv"; }
    /// The list of empty travel that was worked out and not entered.
    [[nodiscard]] std::filesystem::path computedTravel() const {
        return files() / "computed-travel.csv";
    }
    /// Whether the databases are on a server.
    [[nodiscard]] bool isOnServer() const;
    [[nodiscard]] std::filesystem::path settings() const { return root / "vireo" / "route.ini"; }
    /// Without regard to the case of a file that is there.
    [[nodiscard]] std::filesystem::path database(data::DatabaseFile file) const;
};

/// The places of the district in a folder: those below it where a routing database stands there,
/// otherwise those that its settings name; or those of all its databases on a server. Raises
/// base::RunTimeError where there is no such folder.
[[nodiscard]] Folders foldersOf(const std::filesystem::path& root);

/// A new folder with the folders of a district in it, for its owner only; see NewFolder.
class FolderInTheMaking {
public:
    /// Raises base::RunTimeError where something else stands there, the folder cannot be made, or
    /// has a name that the settings file cannot hold.
    explicit FolderInTheMaking(const std::filesystem::path& wanted,
                               NewFolder::Place place = NewFolder::Place::Free);

    [[nodiscard]] const Folders& folders() const { return making_; }
    /// Where it will stand.
    [[nodiscard]] const Folders& wanted() const { return wanted_; }

    /// Moves it to its place. Raises base::RunTimeError.
    void finish() { folder_.finish(); }

private:
    Folders wanted_;
    NewFolder folder_;
    Folders making_;
};

/// Writes the settings file of a district that will stand at `wanted`.
void writeSettings(const Folders& making, const Folders& wanted);

/// The text of a settings file with the folders of the district at `wanted` in the place of those
/// that it names; everything else stays.
[[nodiscard]] std::string settingsFor(const Folders& wanted, std::string_view settings);

/// Writes a text file that only its owner reads. Raises base::RunTimeError.
void writePrivateFile(const std::filesystem::path& path, std::string_view text);

}  // namespace tools::district
