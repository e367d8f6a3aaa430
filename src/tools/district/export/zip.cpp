#include "tools/district/export/zip.h"

#include <ctime>
#include <memory>
#include <set>
#include <string>

#include <archive.h>
#include <archive_entry.h>
#include <fmt/format.h>

#include "platform/files/draft.h"
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

void writeZip(const fs::path& folder, const std::string& to) {
    const Zip zip(archive_write_new(), [](archive* one) { archive_write_free(one); });
    require(*zip, archive_write_set_format_zip(zip.get()));
    require(*zip, archive_write_open_filename(zip.get(), to.c_str()));
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
    files::Draft draft(file.string());
    writeZip(folder, draft.path());
    if (!draft.add()) {
        refuse(fmt::format("{} is there already.", file.string()));
    }
}

}  // namespace tools::district
