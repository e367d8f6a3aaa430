#include "platform/dbf/tablefile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <utility>

#include <fmt/format.h>

#include "platform/base/encoding.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/dbf/memoryfile.h"

namespace dbf {

namespace {

using base::Value;

constexpr auto CodePage = "CP1252";
constexpr auto CodePageDriver = "LDID/87";
constexpr std::size_t MaxNameLength = 10;
constexpr int MaxNumberWidth = 20;
constexpr std::size_t FileHeaderLength = 32;
constexpr std::size_t FieldHeaderLength = 32;

using Handle = std::unique_ptr<DBFInfo, decltype(&DBFClose)>;

[[noreturn]] void raiseNoTable(const std::string& why) {
    throw base::RunTimeError(base::errors::PathFileAccess, "This is no table file: " + why);
}

std::string cellText(const Column& column, const Value& value) {
    if (value.isNull()) {
        return {};
    }
    return column.kind == Kind::Text
               ? base::converted(value.asText(), "UTF-8", CodePage).substr(0, MaxTextWidth)
               : fmt::format("{:.{}f}", value.asNumber(), column.decimals);
}

bool isWritable(const Value& number, int width) {
    return number.isNull() || (width <= MaxNumberWidth && std::isfinite(number.asNumber()));
}

/// The cells of a table as the file will hold them, and how wide each column must be.
struct Cells {
    explicit Cells(const Table& table) {
        for (const Column& column : table.columns) {
            widths.push_back(column.decimals + 2);
        }
        for (const auto& row : table.rows) {
            auto& line = lines.emplace_back();
            for (std::size_t i = 0; i < table.columns.size(); ++i) {
                line.push_back(cellText(table.columns[i], row[i]));
                const int width = static_cast<int>(line.back().size());
                if (table.columns[i].kind == Kind::Number && !isWritable(row[i], width)) {
                    throw TooWide(lines.size() - 1, i, row[i].asText());
                }
                widths[i] = std::max(widths[i], width);
            }
        }
    }

    std::vector<std::vector<std::string>> lines;
    std::vector<int> widths;
};

void addColumns(DBFInfo& file, const Table& table, const Cells& cells) {
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const Column& column = table.columns[i];
        const bool isText = column.kind == Kind::Text;
        DBFAddNativeFieldType(&file, column.name.substr(0, MaxNameLength).c_str(),
                              isText ? 'C' : 'N', cells.widths[i], isText ? 0 : column.decimals);
    }
}

void addRows(DBFInfo& file, const Table& table, const Cells& cells) {
    for (std::size_t row = 0; row < cells.lines.size(); ++row) {
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const auto at = static_cast<int>(row);
            const auto field = static_cast<int>(i);
            if (table.rows[row][i].isNull()) {
                DBFWriteNULLAttribute(&file, at, field);
                continue;
            }
            // Numbers go in as text, right-aligned: the library would take them through doubles.
            std::string cell = cells.lines[row][i];
            if (table.columns[i].kind == Kind::Number) {
                cell.insert(0, static_cast<std::size_t>(cells.widths[i]) - cell.size(), ' ');
            }
            DBFWriteAttributeDirectly(&file, at, field, cell.data());
        }
    }
}

/// The day of the last change, which the library would leave at one long ago.
void stampDate(DBFInfo& file) {
    const std::string today = base::Now().iso();  // "2026-01-31 …"
    const auto part = [&](std::size_t at, std::size_t length) {
        return static_cast<int>(base::leadingNumber(today.substr(at, length)));
    };
    DBFSetLastModifiedDate(&file, part(0, 4) - 1900, part(5, 2), part(8, 2));
}

unsigned littleEndian(std::string_view bytes, std::size_t at, int count) {
    unsigned number = 0;
    for (int i = count - 1; i >= 0; --i) {
        number = number << 8 | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    }
    return number;
}

/// The library believes the header, so what it says must fit the bytes that are there.
void checkHeader(std::string_view bytes) {
    if (bytes.size() < FileHeaderLength + 1) {
        raiseNoTable("it is too short.");
    }
    const std::uint64_t rows = littleEndian(bytes, 4, 4);
    const std::uint64_t header = littleEndian(bytes, 8, 2);
    const std::uint64_t rowLength = littleEndian(bytes, 10, 2);
    if (header < FileHeaderLength || header > bytes.size() || rowLength == 0 ||
        rows > (bytes.size() - header) / rowLength) {
        raiseNoTable("its header does not fit its length.");
    }
    std::uint64_t width = 1;  // the mark of a deleted row
    for (std::size_t at = FileHeaderLength; at + FieldHeaderLength <= header && bytes[at] != '\r';
         at += FieldHeaderLength) {
        const bool hasDecimals = bytes[at + 11] == 'N' || bytes[at + 11] == 'F';
        const auto fieldWidth = littleEndian(bytes, at + 16, hasDecimals ? 1 : 2);
        width += fieldWidth;
        if (fieldWidth == 0) {
            raiseNoTable("a column has no width.");
        }
    }
    if (width > rowLength) {
        raiseNoTable("its columns are wider than its rows.");
    }
}

std::vector<Column> columnsOf(DBFInfo& file) {
    std::vector<Column> columns;
    for (int i = 0; i < DBFGetFieldCount(&file); ++i) {
        std::array<char, XBASE_FLDNAME_LEN_READ + 1> name{};
        int decimals = 0;
        DBFGetFieldInfo(&file, i, name.data(), nullptr, &decimals);
        const char type = DBFGetNativeFieldType(&file, i);
        const bool isNumber = type == 'N' || type == 'F';
        columns.push_back(
            {name.data(), isNumber ? Kind::Number : Kind::Text, isNumber ? decimals : 0});
    }
    return columns;
}

Value cellOf(DBFInfo& file, const Column& column, int row, int field) {
    const char* text = DBFReadStringAttribute(&file, row, field);
    if (text == nullptr || DBFIsAttributeNULL(&file, row, field)) {
        return {};
    }
    return column.kind == Kind::Number
               ? Value(base::leadingNumber(text))
               : Value(base::converted(base::trimRight(text), CodePage, "UTF-8"));
}

}  // namespace

TooWide::TooWide(std::size_t inRow, std::size_t inColumn, const std::string& number)
    : base::RunTimeError(base::errors::Overflow, "Overflow: " + number),
      row(inRow),
      column(inColumn),
      figure(number) {}

std::string bytesOf(const Table& table) {
    const Cells cells(table);
    MemoryFile memory;
    {
        const Handle file(DBFCreateLL(MemoryFile::Name, CodePageDriver, memory.hooks()), DBFClose);
        if (file == nullptr) {
            base::raise(base::errors::InternalError);
        }
        stampDate(*file);
        addColumns(*file, table, cells);
        addRows(*file, table, cells);
    }
    return std::move(memory.contents());
}

Table tableIn(std::string_view bytes) {
    checkHeader(bytes);
    MemoryFile memory{std::string(bytes)};
    const Handle file(DBFOpenLL(MemoryFile::Name, "rb", memory.hooks()), DBFClose);
    if (file == nullptr) {
        raiseNoTable("it cannot be opened.");
    }
    Table table{columnsOf(*file), {}};
    for (int row = 0; row < DBFGetRecordCount(file.get()); ++row) {
        if (DBFIsRecordDeleted(file.get(), row)) {
            continue;
        }
        auto& cells = table.rows.emplace_back();
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            cells.push_back(cellOf(*file, table.columns[i], row, static_cast<int>(i)));
        }
    }
    return table;
}

}  // namespace dbf
