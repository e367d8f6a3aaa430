#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/error.h"
#include "platform/base/value.h"
#include "platform/store/base/schema.h"

namespace store {

/// Why the store refused; each kind has a run-time error number of its own (see numberOf).
enum class Fault {
    Missing,       ///< no such file
    NotADatabase,  ///< the file is something else
    OtherKind,     ///< an Access file, which must be imported first
    Damaged,       ///< a database whose pages do not fit together
    Locked,        ///< another program held it for longer than the time-out
    Replaced,      ///< another file stands where the open one was, or none: a write would be lost
    Network,       ///< on a file system that several machines share, which would damage it
    ReadOnly,      ///< the file or its folder cannot be written
    Full,          ///< no room left on the disk
    Unreachable,   ///< no connection to the server can be made
    Lost,          ///< the connection to the server ended under way
    GivenUp,       ///< the user did not want to wait for the server any longer
    Constraint,    ///< a duplicate key, a missing value, a code with trailing blanks
    Statement,     ///< SQL that the store refused
    Other,
};

/// The run-time error number of a kind.
[[nodiscard]] int numberOf(Fault fault);

class StoreError : public base::RunTimeError {
public:
    StoreError(Fault fault, const std::string& description);
    [[nodiscard]] Fault fault() const noexcept { return fault_; }

private:
    Fault fault_;
};

/// How a cell is held by the store, before it is read as a column's kind.
enum class CellType { Null, Integer, Real, Text };

/// A cell as it is held. The text belongs to the statement.
struct Cell {
    CellType type = CellType::Null;
    union {
        std::int64_t integer = 0;
        double real;
    };
    std::string_view text = {};
};

/// A prepared statement. Its parameters are question marks. Parameters and columns count from 0.
/// Views returned by cell() and text() hold until the next step() or reset().
class Statement {
public:
    virtual ~Statement() = default;

    virtual void bind(int parameter, const base::Value& value) = 0;
    /// The next row; false after the last. Raises StoreError.
    virtual bool step() = 0;
    /// Back to before the first row; bindings are dropped.
    virtual void reset() = 0;

    [[nodiscard]] virtual int columnCount() const = 0;
    /// The whole cell at once; integer and real hold something where the type says so only.
    [[nodiscard]] virtual Cell cell(int column) const = 0;
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

/// A column and the value that a row has there, or is to get.
struct ColumnValue {
    const Column* column = nullptr;
    base::Value value;
};

/// One row of a table as it was fetched: its key, and the columns that must still hold these values
/// when it is written.
struct FetchedRow {
    const Table* table = nullptr;
    base::Value key;
    std::vector<ColumnValue> values;
};

/// What became of a write to a fetched row.
enum class RowOutcome { Written, Changed, Deleted };

/// A write that goes to the store with others: of a fetched row, or a statement that is bound.
struct Write {
    const FetchedRow* row = nullptr;
    const std::vector<ColumnValue>* changes = nullptr;  ///< of the row
    Statement* statement = nullptr;
};

/// Rows on their way from a server, which is asked nothing else before they are taken in. Who lets
/// go of them before that gives the connection up, and what was under way on it.
class Fetch {
public:
    virtual ~Fetch() = default;
    /// Waits for them, once. What fails is asked for again when it is stepped, and raised there.
    virtual void takeIn() = 0;
};

/// A function that SQL may call by name. Arguments come as they are stored. A RunTimeError that it
/// raises fails the statement and arrives where the statement was run.
struct Function {
    std::string name;
    int arguments = 0;
    bool deterministic = false;  ///< the same arguments always give the same result
    base::Value (*call)(std::span<const base::Value> arguments) = nullptr;
};

/// What a file says of itself: which of its owner's files it is, and the version of its tables.
/// Both are 0 in a file that was never marked.
struct FileMark {
    std::int32_t kind = 0;
    std::int32_t version = 0;
    friend bool operator==(const FileMark&, const FileMark&) = default;
};

/// Takes the rows of a table in, many and quickly. Only those of a finished one stay.
class RowLoader {
public:
    virtual ~RowLoader() = default;
    /// One value for each of the table's columns, as they are stored. Raises StoreError.
    virtual void add(std::span<const base::Value> row) = 0;
    /// Raises StoreError for a row that the table does not take.
    virtual void finish() = 0;
};

/// Told now and then while a file is copied, of the pages that are and of all.
using CopyProgress = std::function<void(std::int64_t done, std::int64_t all)>;

/// One open database file, or what stands for it on a server. SQL given here is the store's own
/// dialect.
class Database {
public:
    virtual ~Database() = default;

    [[nodiscard]] virtual const Catalog& catalog() const = 0;
    /// Raises ReadOnly where this user can read the file but not write it.
    virtual void requireWritable() const = 0;
    /// Reads the whole file; what of it does not fit together, in plain words. Empty where it does.
    [[nodiscard]] virtual std::vector<std::string> damages() = 0;
    [[nodiscard]] virtual FileMark mark() const = 0;
    /// Marks the file; part of the transaction that is open.
    virtual void setMark(FileMark mark) = 0;
    /// Makes the tables of another file visible under their own names; a table of this file wins.
    virtual void link(const std::string& path) = 0;

    virtual std::unique_ptr<Statement> prepare(std::string_view sql) = 0;
    /// Runs a statement to its end; returns the number of rows changed.
    virtual std::int64_t execute(std::string_view sql) = 0;
    [[nodiscard]] virtual std::int64_t changedRows() const = 0;
    /// A number that is another one as soon as another connection has written to the file.
    [[nodiscard]] virtual std::int64_t changeMark() const = 0;

    // A server's answer takes a while, however little is asked. What needs no other's result goes
    // there together; where nothing is gained by that, none of this is called.
    [[nodiscard]] virtual bool sendsTogether() const { return false; }
    /// Asks for the rows of bound statements; null where nothing is sent together. They and the
    /// database outlive what is returned.
    [[nodiscard]] virtual std::unique_ptr<Fetch> fetchTogether(std::span<Statement* const>) {
        return nullptr;
    }
    /// The same with `begin`, behind its lock.
    virtual void beginWith(std::span<Statement* const>) { begin(); }
    /// Writes in the given order inside a transaction, and commits it where that is asked for.
    /// False where a row is not as it was fetched or a statement fails: then none of them is done,
    /// and the transaction is open as it was before. Raises what `commit` raises.
    virtual bool writeTogether(std::span<const Write>, bool) { return false; }
    /// How often an answer was waited for since it was opened. What was on its way while something
    /// else was waited for, of whichever database, does not count.
    [[nodiscard]] virtual std::int64_t roundTrips() const { return 0; }

    // One row of a table, by its key. Values are stored as they are given. `update` and `remove` do
    // nothing where the row is gone or a fetched column holds something else by now.
    virtual RowOutcome update(const FetchedRow& row, const std::vector<ColumnValue>& changes) = 0;
    virtual RowOutcome remove(const FetchedRow& row) = 0;
    /// Columns not given get their defaults; returns the new row's key.
    virtual base::Value insert(const Table& table, const std::vector<ColumnValue>& values) = 0;
    /// Fills the values of `columns` as they are stored now; false where the row is gone.
    virtual bool read(const Table& table, const base::Value& key,
                      std::vector<ColumnValue>& columns) = 0;
    /// The default of a column as a value; Null where it has none.
    virtual base::Value defaultOf(const Column& column) = 0;

    /// For the table's empty columns in their order; a counter's values are given, too. Nothing
    /// else is done with the database until it is finished. Only inside a transaction.
    virtual std::unique_ptr<RowLoader> loader(const Table& table) = 0;

    /// Whether a transaction is open; a full disk or a damaged file ends one by rolling it back.
    [[nodiscard]] virtual bool inTransaction() const = 0;
    /// Takes the write lock at once. Raises Replaced, as does every write outside a transaction.
    virtual void begin() = 0;
    virtual void commit() = 0;  ///< raises Replaced, with the transaction still open
    virtual void rollback() = 0;
    /// From here to `rollback` this database and the linked ones are read as they are now, whatever
    /// others write meanwhile; see StandStill for one moment in several files.
    virtual void beginReading() = 0;

    /// Raises StoreError inside a transaction.
    virtual void setDurability(Durability durability) = 0;
    /// How long a statement waits for another program that holds the file.
    virtual void setLockTimeout(int milliseconds) = 0;
    /// Brings everything into the file itself, as far as other programs that read it allow.
    virtual void checkpoint() = 0;

    virtual void registerFunction(const Function& function) = 0;

    /// Creates a table with its key, checks and indexes, and adds it to the catalogue. A counter
    /// must be the table's only key column.
    virtual void create(const Table& table) = 0;
    /// Creates the indexes of a table that was created without any: filling it first and indexing
    /// it afterwards is several times faster.
    virtual void createIndexes(const Table& table) = 0;
    /// Adds the table where it is missing, otherwise the columns and indexes that it lacks; returns
    /// what was added ("RUN.COMMENT", "an index of RUN"). Raises StoreError for a column that has
    /// to have a value and no default.
    virtual std::vector<std::string> complete(const Table& table) = 0;

    /// Writes the file as it is now, page by page, to a new one that only its owner reads. What
    /// `progress` raises ends it and leaves the new file unfinished. What others write meanwhile
    /// lets it begin anew, but not after `beginReading`.
    virtual void copyTo(const std::string& path, const CopyProgress& progress) = 0;
};

/// How long a locked file is waited for, in milliseconds, unless told otherwise.
inline constexpr int LockTimeoutMs = 5000;

}  // namespace store
