#include "platform/store/sqlite/statement.h"

#include <algorithm>
#include <memory>
#include <string>

#include <fmt/format.h>

namespace store::sqlite {

namespace {

void refuseRest(const Source& source, std::string_view rest) {
    if (rest.find_first_not_of(" \t\r\n;") != std::string_view::npos) {
        throw StoreError(Fault::Statement, fmt::format("\"{}\": only one statement can be run at a "
                                                       "time; this follows it: {}",
                                                       source.path, rest));
    }
}

int bindText(sqlite3_stmt* statement, int position, std::string_view text) {
    return sqlite3_bind_text64(statement, position, text.data(), text.size(), SQLITE_TRANSIENT,
                               SQLITE_UTF8);
}

int bindValue(sqlite3_stmt* statement, int position, const base::Value& value) {
    if (value.isNull()) {
        return sqlite3_bind_null(statement, position);
    }
    if (value.isText()) {
        return bindText(statement, position, value.heldText());
    }
    if (value.isDouble()) {
        return sqlite3_bind_double(statement, position, value.asNumber());
    }
    if (value.isDate()) {
        return bindText(statement, position, value.asDate().iso());
    }
    if (value.isYesNo()) {
        return sqlite3_bind_int(statement, position, value.asBoolean() ? 1 : 0);
    }
    return sqlite3_bind_int64(statement, position, value.asInteger());
}

std::string_view textOf(sqlite3_value* value) {
    const unsigned char* text = sqlite3_value_text(value);
    return text == nullptr ? std::string_view()
                           : std::string_view(reinterpret_cast<const char*>(text),
                                              static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

}  // namespace

PreparedStatement::PreparedStatement(const Source& source, std::string_view sql) : source_(source) {
    const char* rest = nullptr;
    check(source_, sqlite3_prepare_v3(source_.handle, sql.data(), static_cast<int>(sql.size()),
                                      SQLITE_PREPARE_PERSISTENT, &statement_, &rest));
    const auto used = static_cast<std::size_t>(rest - sql.data());
    try {
        refuseRest(source_, sql.substr(used));
    } catch (...) {
        sqlite3_finalize(statement_);
        throw;
    }
    if (statement_ == nullptr) {
        throw StoreError(Fault::Statement,
                         fmt::format("\"{}\": the statement is empty.", source_.path));
    }
    writes_ = sqlite3_stmt_readonly(statement_) == 0;
}

PreparedStatement::~PreparedStatement() { sqlite3_finalize(statement_); }

void PreparedStatement::bind(int parameter, const base::Value& value) {
    check(source_, bindValue(statement_, parameter + 1, value));
}

bool PreparedStatement::step() {
    if (writes_ && sqlite3_get_autocommit(source_.handle) != 0) {
        requireSameFiles(source_);
    } else if (!writes_ && sqlite3_stmt_busy(statement_) == 0) {
        std::ranges::for_each(source_.contents, &OverwriteWatch::glance);
    }
    const int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW) {
        return true;
    }
    if (code != SQLITE_DONE) {
        // Read the fault's text before the reset that releases the statement's locks clears it.
        const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> release(statement_,
                                                                            sqlite3_reset);
        raiseFault(source_, code);
    }
    return false;
}

void PreparedStatement::reset() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

int PreparedStatement::columnCount() const { return sqlite3_column_count(statement_); }

// One look at the engine's value instead of a call for each part of it. That is not thread-safe,
// and need not be: a connection belongs to one thread.
Cell PreparedStatement::cell(int column) const {
    sqlite3_value* value = sqlite3_column_value(statement_, column);
    Cell cell;
    switch (sqlite3_value_type(value)) {
        case SQLITE_NULL:
            break;
        case SQLITE_INTEGER:
            cell.type = CellType::Integer;
            cell.integer = sqlite3_value_int64(value);
            break;
        case SQLITE_FLOAT:
            cell.type = CellType::Real;
            cell.real = sqlite3_value_double(value);
            break;
        default:
            cell.type = CellType::Text;
            cell.text = textOf(value);
            break;
    }
    return cell;
}

CellType PreparedStatement::type(int column) const {
    switch (sqlite3_column_type(statement_, column)) {
        case SQLITE_NULL:
            return CellType::Null;
        case SQLITE_INTEGER:
            return CellType::Integer;
        case SQLITE_FLOAT:
            return CellType::Real;
        default:
            return CellType::Text;
    }
}

std::int64_t PreparedStatement::integer(int column) const {
    return sqlite3_column_int64(statement_, column);
}

double PreparedStatement::real(int column) const {
    return sqlite3_column_double(statement_, column);
}

std::string_view PreparedStatement::text(int column) const {
    const unsigned char* text = sqlite3_column_text(statement_, column);
    if (text == nullptr) {
        return {};
    }
    return {reinterpret_cast<const char*>(text),
            static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

base::Value PreparedStatement::stored(int column) const {
    return plainValue(sqlite3_column_value(statement_, column));
}

base::Value plainValue(sqlite3_value* value) {
    switch (sqlite3_value_type(value)) {
        case SQLITE_NULL:
            return {};
        case SQLITE_INTEGER:
            return std::int64_t{sqlite3_value_int64(value)};
        case SQLITE_FLOAT:
            return sqlite3_value_double(value);
        default:
            break;
    }
    return std::string(textOf(value));
}

}  // namespace store::sqlite
