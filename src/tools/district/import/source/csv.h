#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/district/import/source/charset.h"

namespace tools::district {

/// What a file with separated values turns out to be.
struct CsvShape {
    Charset charset = Charset::Utf8;
    char separator = ',';
    std::int64_t lines = 0;
};

/// What is known of a file before it is looked at.
struct CsvHints {
    std::optional<Charset> charset = {};
    std::optional<char> separator = {};
};

/// Reads through a file once: one with a byte order mark or valid throughout is UTF-8, any other
/// Windows-1252; the separator is the one of comma, semicolon, tab and bar that stands most often
/// in the first line outside quotes. Raises base::RunTimeError for UTF-16.
[[nodiscard]] CsvShape shapeOf(std::istream& file, const CsvHints& hints = {});

/// One cell; in UTF-8.
struct CsvField {
    std::string_view text;
    bool quoted = false;
};

struct CsvRecord {
    std::int64_t line = 0;  ///< its first, from 1
    std::vector<CsvField> fields;
};

/// Why a record cannot be read, and where.
struct CsvFault {
    std::int64_t line = 0;
    std::int64_t column = 0;  ///< in characters of the line, from 1
    std::string reason;
    std::string text;  ///< the line, or its beginning
};

/// Reads separated values record by record: fields may stand in quotes, with doubled quotes,
/// separators and line ends in them; lines end with LF, CR LF or CR; blanks are kept; empty lines
/// are passed over. After a fault it goes on with the next line.
class CsvReader {
public:
    static constexpr std::size_t LongestField = 256UL * 1024;
    static constexpr std::size_t MostFields = 1000;
    static constexpr std::int64_t MostFaults = 1000;

    enum class Item { Record, Fault, End };

    /// `file` stands at its beginning and outlives the reader.
    CsvReader(std::istream& file, const CsvShape& shape);

    /// Raises base::RunTimeError after more than MostFaults.
    Item next();
    /// Holds until the next call of next().
    [[nodiscard]] const CsvRecord& record() const { return record_; }
    [[nodiscard]] const CsvFault& fault() const { return fault_; }

private:
    /// A field within the record as it stands in the file.
    struct Span {
        std::size_t begin = 0;
        std::size_t end = 0;
        bool quoted = false;
        bool doubled = false;
    };

    [[nodiscard]] int at(std::size_t offset);
    bool fill();
    void skipEmptyLines();
    [[nodiscard]] bool isLineEnd(int c) const { return c == '\n' || c == '\r' || c < 0; }
    bool readFields();
    bool readBare(Span& span);
    bool readQuoted(Span& span);
    bool refuse(std::size_t offset, std::string_view reason);
    std::size_t note(std::size_t offset, std::string_view reason);
    void leave(std::size_t size);
    [[nodiscard]] bool isReadable();
    void takeFields();
    [[nodiscard]] std::string_view decoded(const Span& span);

    std::istream& file_;
    CsvShape shape_;
    std::string buffer_;
    std::size_t start_ = 0;  ///< of the record, in the buffer
    std::size_t size_ = 0;   ///< of the record without its line end
    std::int64_t line_ = 1;  ///< of start_
    std::int64_t faults_ = 0;
    std::vector<Span> spans_;
    std::string decoded_;
    CsvRecord record_;
    CsvFault fault_;
};

}  // namespace tools::district
