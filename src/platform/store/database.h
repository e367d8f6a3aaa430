#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/base/error.h"
#include "platform/base/value.h"
#include "platform/store/schema.h"

namespace store {

/// Why the store refused; each kind has a run-time error number of its own (see database.cpp).
enum class Fault {
    Missing,       ///< no such file
    NotADatabase,  ///< the file is something else
    OtherKind,     ///< an Access file, which must be imported first
    Damaged,       ///< a database whose pages do not fit together
    Locked,        ///< another program held it for longer than the time-out
    ReadOnly,      ///< the file or its folder cannot be written
    Constraint,    ///< a duplicate key, a missing value, a code with trailing blanks
    Statement,     ///< SQL that the store refused
    Other,
};

class StoreError : public base::RunTimeError {
public:
    StoreError(Fault fault, const std::string& description);
    [[nodiscard]] Fault fault() const noexcept { return fault_; }

private:
    Fault fault_;
};

/// How a cell is held by the store, before it is read as a column's kind.
enum class CellType { Null, Integer, Real, Text };

/// A prepared statement. Parameters and columns count from 0. Views returned by text() hold until
/// the next step() or reset().
class Statement {
public:
    virtual ~Statement() = default;

    virtual void bind(int parameter, const base::Value& value) = 0;
    /// The next row; false after the last. Raises StoreError.
    virtual bool step() = 0;
    /// Back to before the first row; bindings are dropped.
    virtual void reset() = 0;

    [[nodiscard]] virtual int columnCount() const = 0;
    [[nodiscard]] virtual CellType type(int column) const = 0;
    [[nodiscard]] virtual std::int64_t integer(int column) const = 0;
    [[nodiscard]] virtual double real(int column) const = 0;
    [[nodiscard]] virtual std::string_view text(int column) const = 0;
};

/// How much a commit survives.
enum class Durability {
    PowerCut,  ///< every commit is on the disk (a planner's single save)
    Crash,     ///< a commit survives the program's end, the last ones may not survive a power cut
};

/// One open database file. SQL given here is the store's own dialect.
class Database {
public:
    virtual ~Database() = default;

    [[nodiscard]] virtual const Catalog& catalog() const = 0;
    /// Makes the tables of another file visible under their own names; a table of this file wins.
    virtual void link(const std::string& path) = 0;

    virtual std::unique_ptr<Statement> prepare(std::string_view sql) = 0;
    /// Runs a statement to its end; returns the number of rows changed.
    virtual std::int64_t execute(std::string_view sql) = 0;
    [[nodiscard]] virtual std::int64_t changedRows() const = 0;
    /// The key that the last insert generated.
    [[nodiscard]] virtual std::int64_t lastKey() const = 0;

    /// Takes the write lock at once.
    virtual void begin() = 0;
    virtual void commit() = 0;
    virtual void rollback() = 0;

    virtual void setDurability(Durability durability) = 0;
    /// Brings everything into the file itself.
    virtual void checkpoint() = 0;

    /// Creates a table with its key, checks and indexes, and adds it to the catalogue.
    virtual void create(const Table& table) = 0;
};

/// How long a locked file is waited for, in milliseconds, unless told otherwise.
inline constexpr int LockTimeoutMs = 5000;

/// Opens an existing file and reads it once. Never creates one. Raises StoreError: Missing,
/// NotADatabase, OtherKind, Damaged, Locked.
std::unique_ptr<Database> open(const std::string& path, int lockTimeoutMs = LockTimeoutMs);

/// Creates a new, empty file, readable by its owner only; raises StoreError where one is there.
std::unique_ptr<Database> createFile(const std::string& path);

}  // namespace store
