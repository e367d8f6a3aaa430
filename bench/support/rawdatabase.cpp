#include "support/rawdatabase.h"

#include <stdexcept>

namespace bench {

namespace {

struct Bind {
    sqlite3_stmt* statement;
    int place;
    void operator()(std::int64_t value) const { sqlite3_bind_int64(statement, place, value); }
    void operator()(double value) const { sqlite3_bind_double(statement, place, value); }
    void operator()(const std::string& value) const {
        sqlite3_bind_text(statement, place, value.c_str(), -1, SQLITE_TRANSIENT);
    }
};

}  // namespace

RawDatabase::RawDatabase(const std::string& path) {
    if (sqlite3_open_v2(path.c_str(), &database_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database_));
    }
}

RawDatabase::~RawDatabase() {
    for (const auto& [sql, statement] : statements_) {
        sqlite3_finalize(statement);
    }
    sqlite3_close(database_);
}

void RawDatabase::run(const char* sql, std::initializer_list<Parameter> parameters,
                      const Row& row) {
    auto*& statement = statements_[sql];
    if (statement == nullptr &&
        sqlite3_prepare_v2(database_, sql, -1, &statement, nullptr) != SQLITE_OK) {
        throw std::runtime_error(std::string(sqlite3_errmsg(database_)) + ": " + sql);
    }
    int place = 0;
    for (const Parameter& parameter : parameters) {
        std::visit(Bind{statement, ++place}, parameter);
    }
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(statement)) == SQLITE_ROW) {
        if (row) {
            row(statement);
        }
    }
    sqlite3_reset(statement);
    if (result != SQLITE_DONE) {
        throw std::runtime_error(std::string(sqlite3_errmsg(database_)) + ": " + sql);
    }
}

}  // namespace bench
