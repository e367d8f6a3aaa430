#include "tools/district/import/feed/feedfiles.h"

#include <array>
#include <charconv>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/files/files.h"
#include "tools/district/archive/archivereader.h"
#include "tools/district/base/refuse.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

constexpr std::array Names = {"agency.txt",     "stops.txt",    "routes.txt",
                              "trips.txt",      "calendar.txt", "calendar_dates.txt",
                              "stop_times.txt", "shapes.txt",   "frequencies.txt"};
constexpr std::string_view Timetable = "stop_times.txt";
constexpr std::size_t MostBytes = std::size_t{1} << 30;

/// One of the names, for a file at the top of an archive or in its one folder; empty for others.
std::string_view nameIn(std::string_view path) {
    const std::size_t slash = path.find('/');
    if (path.starts_with("__MACOSX") ||
        (slash != std::string_view::npos && path.find('/', slash + 1) != std::string_view::npos)) {
        return {};
    }
    path.remove_prefix(slash == std::string_view::npos ? 0 : slash + 1);
    for (const std::string_view name : Names) {
        if (base::equalsNoCase(path, name)) {
            return name;
        }
    }
    return {};
}

/// The rest of the file that an archive stands at, of at most so many bytes.
std::string readWhole(ArchiveReader& archive, const fs::path& path, std::size_t most) {
    std::string text;
    for (auto block = archive.block(); !block.empty(); block = archive.block()) {
        text += block;
        if (text.size() > most) {
            refuse(fmt::format("{} unpacks to more than a gigabyte.", path.string()));
        }
    }
    return text;
}

bool isTimetableIn(const fs::path& path) {
    ArchiveReader archive(path, ArchiveReader::Kind::Zip);
    for (std::string entry = archive.next(); !entry.empty(); entry = archive.next()) {
        if (nameIn(entry) == Timetable) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool FeedFiles::isFeed(const fs::path& path) {
    if (fs::is_directory(path)) {
        return files::exists((path / Timetable).string());
    }
    return base::equalsNoCase(path.extension().string(), ".zip") && isTimetableIn(path);
}

FeedFiles::FeedFiles(const fs::path& path) {
    if (fs::is_directory(path)) {
        for (const char* name : Names) {
            if (const std::string file = (path / name).string(); files::exists(file)) {
                files_[name] = files::read(file);
            }
        }
    } else {
        ArchiveReader archive(path, ArchiveReader::Kind::Zip);
        std::size_t left = MostBytes;
        for (std::string entry = archive.next(); !entry.empty(); entry = archive.next()) {
            if (const std::string_view name = nameIn(entry); !name.empty()) {
                std::string& text = files_[std::string(name)];
                text = readWhole(archive, path, left);
                left -= text.size();
            }
        }
    }
    for (const std::string_view name : {"stops.txt", "trips.txt", "stop_times.txt"}) {
        if (find(name) == nullptr) {
            refuse(fmt::format("{} is no transit feed: it has no {}.", path.string(), name));
        }
    }
}

const std::string* FeedFiles::find(std::string_view name) const {
    const auto found = files_.find(name);
    return found == files_.end() ? nullptr : &found->second;
}

FeedTable::FeedTable(const FeedFiles& files, std::string name) : name_(std::move(name)) {
    if (const std::string* text = files.find(name_); text != nullptr) {
        text_.str(*text);
        const CsvShape shape = shapeOf(text_, {.separator = ','});
        text_.clear();
        text_.seekg(0);
        reader_ = std::make_unique<CsvReader>(text_, shape);
        readHead();
    }
}

void FeedTable::readHead() {
    if (reader_->next() != CsvReader::Item::Record) {
        refuse(fmt::format("{} has no head.", name_));
    }
    for (const CsvField& field : reader_->record().fields) {
        columns_.emplace(base::trim(field.text), columns_.size());
    }
}

bool FeedTable::next() {
    if (reader_ == nullptr) {
        return false;
    }
    const CsvReader::Item item = reader_->next();
    if (item == CsvReader::Item::Fault) {
        const CsvFault& fault = reader_->fault();
        refuse(fmt::format("{}, line {}: {}.", name_, fault.line, fault.reason));
    }
    return item == CsvReader::Item::Record;
}

std::string_view FeedTable::cell(std::string_view column) const {
    const auto found = columns_.find(column);
    const auto& fields = reader_->record().fields;
    return found == columns_.end() || found->second >= fields.size()
               ? std::string_view()
               : base::trim(fields[found->second].text);
}

std::string FeedTable::needed(std::string_view column) const {
    const std::string_view text = cell(column);
    if (text.empty()) {
        refuseLine(fmt::format("{} is empty", column));
    }
    return std::string(text);
}

double FeedTable::number(std::string_view column) const {
    const std::string_view text = cell(column);
    double value = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (fault != std::errc() || end != text.data() + text.size()) {
        refuseLine(fmt::format("{} is no number: \"{}\"", column, text));
    }
    return value;
}

void FeedTable::refuseLine(std::string_view why) const {
    refuse(fmt::format("{}, line {}: {}.", name_, reader_->record().line, why));
}

}  // namespace tools::district
