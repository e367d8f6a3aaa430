#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

#include "tools/district/import/source/csv.h"

namespace tools::district {

/// The files of a transit feed (GTFS), from a folder or a zip archive, read into memory.
class FeedFiles {
public:
    /// Whether a path is a folder or an archive with a timetable in it.
    [[nodiscard]] static bool isFeed(const std::filesystem::path& path);

    /// Raises base::RunTimeError for what is no feed, damaged, or unpacks to more than a gigabyte.
    explicit FeedFiles(const std::filesystem::path& path);

    /// What stands in "stops.txt"; null where the feed has no such file.
    [[nodiscard]] const std::string* find(std::string_view name) const;

private:
    std::map<std::string, std::string, std::less<>> files_;
};

/// One file of a feed, record by record.
class FeedTable {
public:
    /// A file that the feed lacks has no records. Raises base::RunTimeError for one without a head.
    FeedTable(const FeedFiles& files, std::string name);

    /// Raises base::RunTimeError for a line that cannot be read.
    bool next();
    [[nodiscard]] bool has(std::string_view column) const { return columns_.contains(column); }
    /// Without blanks around; empty where the file has no such column or the record is too short.
    [[nodiscard]] std::string_view cell(std::string_view column) const;
    /// As `cell`, but raises base::RunTimeError where it is empty.
    [[nodiscard]] std::string needed(std::string_view column) const;
    /// A number; raises base::RunTimeError where it is none.
    [[nodiscard]] double number(std::string_view column) const;

    /// Raises base::RunTimeError with file and line.
    [[noreturn]] void refuseLine(std::string_view why) const;

private:
    void readHead();

    std::string name_;
    std::istringstream text_;
    std::map<std::string, std::size_t, std::less<>> columns_;
    std::unique_ptr<CsvReader> reader_;
};

}  // namespace tools::district
