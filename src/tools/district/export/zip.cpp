#include "tools/district/export/zip.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <memory>
#include <set>
#include <string>

#include <archive.h>
#include <archive_entry.h>
#include <fmt/format.h>
#include <unistd.h>

#include "platform/files/files.h"
#include "tools/district/base/refuse.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

using Zip = std::unique_ptr<archive, void (*)(archive*)>;

void require(archive& zip, la_ssize_t code) {
    if (code < ARCHIVE_OK) {
        refuse(fmt::format("The archive cannot be written: {}.", archive_error_string(&zip)));
    }
}

void add(archive& zip, const fs::path& file) {
    constexpr int EverybodyReads = 0644;
    const std::string bytes = files::read(file.string());
    const std::unique_ptr<archive_entry, void (*)(archive_entry*)> entry(archive_entry_new(),
                                                                         archive_entry_free);
    archive_entry_set_pathname(entry.get(), file.filename().c_str());
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), EverybodyReads);
    archive_entry_set_size(entry.get(), static_cast<la_int64_t>(bytes.size()));
    archive_entry_set_mtime(entry.get(), std::time(nullptr), 0);
    require(zip, archive_write_header(&zip, entry.get()));
    require(zip, archive_write_data(&zip, bytes.data(), bytes.size()));
}

void writeZip(const fs::path& folder, int handle) {
    const Zip zip(archive_write_new(), [](archive* one) { archive_write_free(one); });
    require(*zip, archive_write_set_format_zip(zip.get()));
    require(*zip, archive_write_open_fd(zip.get(), handle));
    std::set<fs::path> sorted;
    for (const auto& entry : fs::directory_iterator(folder)) {
        sorted.insert(entry.path());
    }
    for (const fs::path& file : sorted) {
        add(*zip, file);
    }
    require(*zip, archive_write_close(zip.get()));
}

}  // namespace

void zipFolder(const fs::path& folder, const fs::path& file) {
    std::string making = file.string() + ".making-XXXXXX";
    const int handle = ::mkstemp(making.data());
    if (handle < 0) {
        refuse(fmt::format("{} cannot be made: {}.", file.string(), std::strerror(errno)));
    }
    try {
        writeZip(folder, handle);
        if (::fsync(handle) != 0 || ::link(making.c_str(), file.c_str()) != 0) {
            refuse(fmt::format("{} cannot be written: {}.", file.string(), std::strerror(errno)));
        }
    } catch (...) {
        ::close(handle);
        ::unlink(making.c_str());
        throw;
    }
    ::close(handle);
    ::unlink(making.c_str());
}

}  // namespace tools::district
