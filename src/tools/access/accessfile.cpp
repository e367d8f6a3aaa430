#include "tools/access/accessfile.h"

// The library's header includes this one as if it were written in C.
#include <glib.h>
//
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <span>
#include <string_view>

#include <fmt/format.h>
#include <mdbtools.h>

#include "platform/base/notcopied.h"
#include "platform/base/text.h"
#include "tools/access/cells.h"

namespace tools::access {

namespace {

constexpr std::size_t LongestMemo = 16UL * 1024 * 1024;
constexpr int LinkedTable = 6;
constexpr const char* NoFile =
    "It is damaged, encrypted or no Access file. Open it in Access, take its password off or "
    "compact it, and try again.";

template <class T>
std::span<T*> itemsOf(GPtrArray* array) {
    return {reinterpret_cast<T**>(array->pdata), array->len};
}

struct CloseTable {
    void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};
using TableHandle = std::unique_ptr<MdbTableDef, CloseTable>;

// ---- What a column may be.

struct Type {
    int number;
    std::string_view name;
    int size;  ///< in bytes; 0 where it varies
};

constexpr Type Types[] = {
    {MDB_BOOL, "yes/no", 0},    {MDB_BYTE, "number", 1},   {MDB_INT, "number", 2},
    {MDB_LONGINT, "number", 4}, {MDB_MONEY, "money", 8},   {MDB_FLOAT, "number", 4},
    {MDB_DOUBLE, "number", 8},  {MDB_DATETIME, "date", 8}, {MDB_TEXT, "text", 0},
    {MDB_MEMO, "memo", 0},      {MDB_REPID, "id", 16},     {MDB_NUMERIC, "decimal", 17},
    {MDB_BINARY, "bytes", 0},   {MDB_OLE, "object", 0},    {MDB_COMPLEX, "several values", 0},
};

/// A calculated column says the size of its hidden record instead of its own.
bool isCalculated(const MdbHandle& file, const MdbColumn& column, const Type& type) {
    if (file.f->jet_version < MDB_VER_ACCDB_2010) {
        return false;
    }
    const bool isOddText =
        column.col_type == MDB_TEXT && (column.col_size == 0 || column.col_size % 2 != 0);
    return isOddText || (type.size != 0 && column.col_size != type.size);
}

Column describe(const MdbHandle& file, const MdbColumn& column) {
    const auto* type = std::ranges::find(Types, column.col_type, &Type::number);
    if (type == std::end(Types)) {
        return {column.name, "unknown",
                fmt::format("it is of a kind ({}) that is not known here", column.col_type)};
    }
    Column described{column.name, std::string(type->name), {}};
    if (isCalculated(file, column, *type)) {
        described.refused = "it is calculated; make a table of its values with a query first";
    } else if (column.col_type == MDB_COMPLEX) {
        described.refused = "it holds several values or attachments";
    } else if (column.col_type == MDB_OLE || column.col_type == MDB_BINARY) {
        described.refused = "it holds bytes, not text";
    }
    return described;
}

// ---- A row's cells, from the bytes of its page.

class RowReader {
public:
    RowReader(MdbHandle& file, const std::string& codePage) : file_(file), codePage_(codePage) {}

    [[nodiscard]] Cell cell(const MdbColumn& column);

private:
    [[nodiscard]] std::string text(std::string_view bytes) const {
        return file_.f->jet_version == MDB_VER_JET3 ? narrowText(bytes, codePage_.c_str())
                                                    : wideText(bytes);
    }
    [[nodiscard]] std::string memo(std::string_view bytes);
    [[nodiscard]] std::string pages(std::uint32_t at, std::size_t length, bool isChain);
    [[nodiscard]] std::string decimal(const MdbColumn& column);
    [[nodiscard]] Cell number(const MdbColumn& column, std::string_view bytes);

    template <class T>
    static T as(std::string_view bytes) {
        T value{};
        std::memcpy(&value, bytes.data(), std::min(sizeof value, bytes.size()));
        return value;
    }

    MdbHandle& file_;
    const std::string& codePage_;
};

/// The bytes of a memo that does not stand in its row: of one place, or of several of which each
/// names the next.
std::string RowReader::pages(std::uint32_t at, std::size_t length, bool isChain) {
    std::string bytes;
    while (at != 0 && bytes.size() < length) {
        void* page = nullptr;
        int begin = 0;
        std::size_t size = 0;
        if (mdb_find_pg_row(&file_, static_cast<int>(at), &page, &begin, &size) != 0 || begin < 0 ||
            static_cast<std::size_t>(begin) + size > MDB_PGSIZE) {
            throw Unreadable("A memo's page is damaged.");
        }
        std::string_view piece(static_cast<const char*>(page) + begin, size);
        at = 0;
        if (isChain) {
            at = as<std::uint32_t>(piece);
            piece.remove_prefix(std::min<std::size_t>(4, piece.size()));
        }
        if (piece.empty() && isChain) {
            break;
        }
        bytes += piece;
    }
    bytes.resize(std::min(bytes.size(), length));
    return bytes;
}

std::string RowReader::memo(std::string_view bytes) {
    constexpr std::uint32_t Inline = 0x80000000U;
    constexpr std::uint32_t OnePage = 0x40000000U;
    if (bytes.size() < MDB_MEMO_OVERHEAD) {
        return {};
    }
    const auto head = as<std::uint32_t>(bytes);
    const std::size_t length = head & ~(Inline | OnePage);
    if (length > LongestMemo) {
        throw Unreadable("A memo is longer than 16 MB, or damaged.");
    }
    if ((head & Inline) != 0) {
        return text(bytes.substr(MDB_MEMO_OVERHEAD));
    }
    return text(pages(as<std::uint32_t>(bytes.substr(4)), length, (head & OnePage) == 0));
}

/// The library's own, whose fields for precision and scale go by each other's name.
std::string RowReader::decimal(const MdbColumn& column) {
    char* made =
        mdb_numeric_to_string(&file_, column.cur_value_start, column.col_scale, column.col_prec);
    std::string text(made);
    g_free(made);
    return text;
}

Cell RowReader::number(const MdbColumn& column, std::string_view bytes) {
    switch (column.col_type) {
        case MDB_BYTE:
            return std::to_string(as<std::uint8_t>(bytes));
        case MDB_INT:
            return std::to_string(as<std::int16_t>(bytes));
        case MDB_LONGINT:
            return std::to_string(as<std::int32_t>(bytes));
        case MDB_MONEY:
            return moneyText(as<std::int64_t>(bytes));
        case MDB_FLOAT:
            return fmt::format("{}", as<float>(bytes));
        case MDB_DOUBLE:
            return fmt::format("{}", as<double>(bytes));
        default:
            return decimal(column);
    }
}

Cell RowReader::cell(const MdbColumn& column) {
    if (column.col_type == MDB_BOOL) {  // the library tells a No by a length
        return column.cur_value_len != 0 ? "False" : "True";
    }
    const int from = column.cur_value_start;
    const int size = column.cur_value_len;
    if (size <= 0 || from < 0 || from + size > MDB_PGSIZE) {
        return std::nullopt;
    }
    const std::string_view bytes(reinterpret_cast<const char*>(file_.pg_buf) + from,
                                 static_cast<std::size_t>(size));
    switch (column.col_type) {
        case MDB_TEXT:
            return text(bytes);
        case MDB_MEMO:
            return memo(bytes);
        case MDB_DATETIME:
            return dateText(as<double>(bytes));
        case MDB_REPID:
            return guidText(bytes);
        default:
            return number(column, bytes);
    }
}

// ---- The file.

/// Raises Unreadable where the file's head and size cannot be those of an Access file. The library
/// takes an empty file, and makes much of nothing.
void requireForm(const std::string& path) {
    constexpr std::string_view Marks[] = {"Standard Jet DB", "Standard ACE DB"};
    constexpr std::size_t MarkAt = 4;
    constexpr std::size_t VersionAt = 20;
    std::string head(VersionAt + 1, '\0');
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw Unreadable("It cannot be read.");
    }
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    const bool isMarked = std::ranges::any_of(Marks, [&](std::string_view mark) {
        return std::string_view(head).substr(MarkAt, mark.size()) == mark;
    });
    if (!isMarked) {
        throw Unreadable(NoFile);
    }
    const std::uintmax_t page = head[VersionAt] == 0 ? 2048 : 4096;
    const std::uintmax_t size = std::filesystem::file_size(path);
    if (size < 3 * page || size % page != 0) {
        throw Unreadable("It is cut short: its size is no whole number of pages.");
    }
}

std::vector<Column> describeAll(const MdbHandle& file, const MdbTableDef& table) {
    std::vector<Column> columns;
    for (const MdbColumn* column : itemsOf<MdbColumn>(table.columns)) {
        columns.push_back(describe(file, *column));
    }
    return columns;
}

}  // namespace

struct AccessFile::Handle : private base::NotCopied {
    MdbHandle* file = nullptr;
    std::uintmax_t pages = 0;

    ~Handle() { mdb_close(file); }

    [[nodiscard]] std::span<MdbCatalogEntry*> catalog() const {
        return itemsOf<MdbCatalogEntry>(file->catalog);
    }
    [[nodiscard]] TableHandle open(MdbCatalogEntry& entry) const;
    void readRows(MdbTableDef& table, const std::string& codePage,
                  const std::vector<Column>& columns,
                  const std::function<void(const std::vector<Cell>&)>& row) const;
    [[nodiscard]] std::string linkedTo(const std::string& name, const std::string& codePage) const;
};

TableHandle AccessFile::Handle::open(MdbCatalogEntry& entry) const {
    TableHandle table(entry.table_pg < pages ? mdb_read_table(&entry) : nullptr);
    if (table == nullptr || mdb_read_columns(table.get()) == nullptr ||
        table->first_data_pg >= pages) {
        throw Unreadable(fmt::format("It is damaged or cut short: the table \"{}\" is not whole.",
                                     entry.object_name));
    }
    return table;
}

void AccessFile::Handle::readRows(MdbTableDef& table, const std::string& codePage,
                                  const std::vector<Column>& columns,
                                  const std::function<void(const std::vector<Cell>&)>& row) const {
    RowReader reader(*file, codePage);
    std::vector<Cell> cells;
    const auto held = itemsOf<MdbColumn>(table.columns);
    mdb_rewind_table(&table);
    while (mdb_fetch_row(&table) != 0) {
        cells.clear();
        for (std::size_t at = 0; at < columns.size(); ++at) {
            if (columns[at].refused.empty()) {
                cells.push_back(reader.cell(*held[at]));
            }
        }
        row(cells);
    }
}

/// The file that a linked table is in, from the file's own list of objects.
std::string AccessFile::Handle::linkedTo(const std::string& name,
                                         const std::string& codePage) const {
    std::string found;
    for (MdbCatalogEntry* entry : catalog()) {
        if (!base::equalsNoCase(entry->object_name, "MSysObjects")) {
            continue;
        }
        const TableHandle table = open(*entry);
        std::vector<Column> columns = describeAll(*file, *table);
        for (Column& column : columns) {
            const bool isAsked = base::equalsNoCase(column.name, "Name") ||
                                 base::equalsNoCase(column.name, "Database");
            column.refused = isAsked ? "" : "not asked for";
        }
        const bool isNameFirst =
            base::equalsNoCase(std::ranges::find(columns, "", &Column::refused)->name, "Name");
        readRows(*table, codePage, columns, [&](const std::vector<Cell>& cells) {
            if (cells.size() == 2 && cells[isNameFirst ? 0 : 1] == name) {
                found = cells[isNameFirst ? 1 : 0].value_or("");
            }
        });
    }
    return found;
}

AccessFile::AccessFile(const std::string& path, std::string codePage)
    : handle_(std::make_unique<Handle>()), codePage_(std::move(codePage)) {
    requireForm(path);
    handle_->file = mdb_open(path.c_str(), MDB_NOFLAGS);
    if (handle_->file == nullptr || mdb_read_catalog(handle_->file, MDB_ANY) == nullptr) {
        throw Unreadable(NoFile);
    }
    handle_->pages =
        std::filesystem::file_size(path) / static_cast<std::uintmax_t>(handle_->file->fmt->pg_size);
}

AccessFile::~AccessFile() = default;

std::vector<Entry> AccessFile::entries() const {
    std::vector<Entry> entries;
    for (MdbCatalogEntry* entry : handle_->catalog()) {
        Entry made{Entry::Kind::Table, entry->object_name, {}, 0};
        if (entry->object_type == LinkedTable) {
            made.kind = Entry::Kind::LinkedTable;
            made.linkedTo = handle_->linkedTo(made.name, codePage_);
        } else if (entry->object_type == MDB_QUERY) {
            made.kind = Entry::Kind::Query;
        } else if (mdb_is_user_table(entry) == 0) {
            continue;
        } else {
            made.rows = handle_->open(*entry)->num_rows;
        }
        entries.push_back(std::move(made));
    }
    return entries;
}

void AccessFile::read(const std::string& name,
                      const std::function<void(const std::vector<Column>&)>& columns,
                      const std::function<void(const std::vector<Cell>&)>& row) const {
    const auto catalog = handle_->catalog();
    const auto entry = std::ranges::find_if(catalog, [&](const MdbCatalogEntry* held) {
        return base::equalsNoCase(held->object_name, name) &&
               (held->object_type == LinkedTable || held->object_type == MDB_QUERY ||
                mdb_is_user_table(const_cast<MdbCatalogEntry*>(held)) != 0);
    });
    if (entry == catalog.end()) {
        throw Unreadable(fmt::format("There is no table \"{}\" in it.", name));
    }
    if ((*entry)->object_type == LinkedTable) {
        const std::string other = handle_->linkedTo((*entry)->object_name, codePage_);
        throw Unreadable(fmt::format("The table \"{}\" is linked to {}; import that file.", name,
                                     other.empty() ? "another file" : other));
    }
    if ((*entry)->object_type == MDB_QUERY) {
        throw Unreadable(fmt::format("\"{}\" is a query; save what it shows as a table.", name));
    }
    const TableHandle table = handle_->open(**entry);
    const std::vector<Column> described = describeAll(*handle_->file, *table);
    columns(described);
    std::int64_t rows = 0;
    handle_->readRows(*table, codePage_, described, [&](const std::vector<Cell>& cells) {
        ++rows;
        row(cells);
    });
    if (rows != static_cast<std::int64_t>(table->num_rows)) {
        throw Unreadable(
            fmt::format("The table \"{}\" has {} rows by the file's own count and {} were found: "
                        "the file is damaged or cut short.",
                        name, table->num_rows, rows));
    }
}

}  // namespace tools::access
