#include "reports/formats/wholeworkbook.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

#include <archive.h>
#include <archive_entry.h>

namespace reports {

namespace {

constexpr std::string_view SheetFolder = "xl/worksheets/sheet";
constexpr std::string_view SheetEnd = "</worksheet>";
constexpr std::size_t Block = 1U << 16U;

/// Whether an entry can be read, and ends so.
bool endsWith(archive* file, std::string_view end) {
    std::array<char, Block> block{};
    std::string tail;
    la_ssize_t count = 0;
    while ((count = ::archive_read_data(file, block.data(), block.size())) > 0) {
        tail.append(block.data(), static_cast<std::size_t>(count));
        tail.erase(0, tail.size() - std::min(tail.size(), end.size()));
    }
    return count == 0 && tail == end;
}

}  // namespace

bool isWholeWorkbook(const std::string& path) {
    const std::unique_ptr<archive, decltype(&::archive_read_free)> file(::archive_read_new(),
                                                                        &::archive_read_free);
    ::archive_read_support_format_zip_seekable(file.get());
    if (::archive_read_open_filename(file.get(), path.c_str(), Block) != ARCHIVE_OK) {
        return false;
    }
    bool hasSheet = false;
    archive_entry* entry = nullptr;
    int state = ARCHIVE_OK;
    while ((state = ::archive_read_next_header(file.get(), &entry)) == ARCHIVE_OK) {
        if (std::string_view(::archive_entry_pathname(entry)).starts_with(SheetFolder)) {
            hasSheet = true;
            if (!endsWith(file.get(), SheetEnd)) {
                return false;
            }
        }
    }
    return state == ARCHIVE_EOF && hasSheet;
}

}  // namespace reports
