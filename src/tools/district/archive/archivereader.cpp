#include "tools/district/archive/archivereader.h"

#include <archive.h>
#include <archive_entry.h>
#include <fmt/format.h>

#include "tools/district/base/refuse.h"

namespace tools::district {

ArchiveReader::ArchiveReader(const std::filesystem::path& file, Kind kind)
    : file_(file),
      kind_(kind),
      archive_(archive_read_new(), [](archive* one) { archive_read_free(one); }) {
    if (kind == Kind::Zip) {
        archive_read_support_format_zip(archive_.get());
    } else {
        archive_read_support_filter_zstd(archive_.get());
        archive_read_support_format_tar(archive_.get());
    }
    require(archive_read_open_filename(archive_.get(), file.c_str(), buffer_.size()));
}

std::string ArchiveReader::next() {
    archive_entry* entry = nullptr;
    const int code = archive_read_next_header(archive_.get(), &entry);
    if (code == ARCHIVE_EOF) {
        return {};
    }
    require(code);
    const char* name = archive_entry_pathname(entry);
    return name == nullptr ? "?" : name;
}

std::string_view ArchiveReader::block() {
    const la_ssize_t got = archive_read_data(archive_.get(), buffer_.data(), buffer_.size());
    require(got);
    return {buffer_.data(), static_cast<std::size_t>(got)};
}

void ArchiveReader::require(std::ptrdiff_t code) const {
    if (code < ARCHIVE_OK) {
        const char* reason = archive_error_string(archive_.get());
        refuse(fmt::format("{} is no {}, or a damaged one: {}.", file_.string(),
                           kind_ == Kind::Zip ? "zip archive" : "back-up",
                           reason == nullptr ? "it cannot be read" : reason));
    }
}

}  // namespace tools::district
