#pragma once

#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

struct archive;

namespace tools::district {

/// Goes once through the files in an archive. Anything but a plain success of the library is a
/// fault, so that half a file counts as none: everything raises base::RunTimeError.
class ArchiveReader {
public:
    enum class Kind {
        Zip,
        ZstdTar  ///< a district's back-up
    };

    ArchiveReader(const std::filesystem::path& file, Kind kind);

    /// The name of the next file; empty behind the last.
    [[nodiscard]] std::string next();
    /// The next bytes of that file, valid until the next call; empty at its end.
    [[nodiscard]] std::string_view block();

private:
    void require(std::ptrdiff_t code) const;

    std::filesystem::path file_;
    Kind kind_;
    std::unique_ptr<archive, void (*)(archive*)> archive_;
    std::array<char, 1 << 18> buffer_{};
};

}  // namespace tools::district
