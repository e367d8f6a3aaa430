#pragma once

#include <string>
#include <string_view>

namespace support {

/// A new folder of its own, removed with everything in it at the end.
class TemporaryFolder {
public:
    enum class Place {
        Disk,    ///< where programs can be run from
        Memory,  ///< quick for databases; on disk where the system has no such place
    };

    explicit TemporaryFolder(Place place = Place::Disk);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// Ends in a separator.
    [[nodiscard]] const std::string& path() const { return path_; }
    /// Writes a file, making the folders on the way; returns its full path.
    std::string write(const std::string& name, std::string_view contents) const;

private:
    std::string path_;
};

/// The whole of a file; empty where there is none.
[[nodiscard]] std::string contentsOf(const std::string& file);

}  // namespace support
