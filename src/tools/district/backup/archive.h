#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/base/notcopied.h"
#include "tools/district/base/folders.h"

struct archive;

namespace tools::district {

/// The settings in an archive; all other files stand as below a district's folder.
inline constexpr const char* SettingsInArchive = "vireo/route.ini";

/// Where a file of a district stands in an archive: "data/town.streets". Nothing for one that lies
/// outside its folders, or goes with a database.
[[nodiscard]] std::optional<std::filesystem::path> nameInArchive(const Folders& folders,
                                                                 const std::filesystem::path& file);

/// Whether nameInArchive() gives such names.
[[nodiscard]] bool isNameBeside(const std::filesystem::path& name);

/// Told of the bytes that were read since it was last told; may raise to give up.
using BytesRead = std::function<void(std::int64_t bytes)>;

/// An archive that `tar --zstd` takes apart, too: files under relative names, and at its end
/// "B2SUMS", which `b2sum --check` understands. Everything raises base::RunTimeError.
class ArchiveWriter : private base::NotCopied {
public:
    /// Writes to an open file, which stays the caller's.
    explicit ArchiveWriter(int file);
    ~ArchiveWriter();

    void add(const std::string& name, const std::filesystem::path& file, const BytesRead& read);
    void addText(const std::string& name, std::string_view text);
    /// Adds the sums; without it the archive is not complete.
    void finish();

private:
    void beginEntry(const std::string& name, std::int64_t size);
    void append(std::string_view bytes);

    std::unique_ptr<archive, void (*)(archive*)> archive_;
    std::string sums_;
};

/// Takes an archive apart below a folder: files of known names only, every one with the sum that
/// the archive says. `target` tells where a file of that name goes; an empty path leaves it out.
/// Raises base::RunTimeError for anything that is no archive, was cut short or changed.
void unpackArchive(const std::filesystem::path& file,
                   const std::function<std::filesystem::path(const std::string& name)>& target,
                   const BytesRead& read);

}  // namespace tools::district
