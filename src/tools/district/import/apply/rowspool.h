#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tools/district/base/progress.h"
#include "tools/district/import/plan/rowsink.h"

namespace tools::district {

/// Keeps what an import changes in a nameless file of this account, so that the sources are read
/// once and without a write lock. New rows get numbers made up for the time being, which other rows
/// may name; they lie far below any number of a district.
class RowSpool final : public RowSink {
public:
    /// Raises base::RunTimeError where no temporary file can be made.
    RowSpool();

    // Each raises base::RunTimeError where the temporary folder is full.
    std::int64_t add(const StoredTable& table, std::span<const store::Column* const> columns,
                     std::span<const base::Value> values) override;
    void change(const StoredTable& table, std::int64_t row,
                std::span<const store::Column* const> columns,
                std::span<const base::Value> values) override;
    void remove(const StoredTable& table, std::int64_t row) override;

    /// Hands everything on in the order in which it came, with the numbers that `sink` gives new
    /// rows in place of the made-up ones. Raises Interrupted, and what `sink` raises.
    void writeTo(RowSink& sink, Progress& progress);

private:
    enum class Kind : std::uint8_t { Add, Change, Remove };
    struct Shape {
        Kind kind;
        const StoredTable* table;
        std::vector<const store::Column*> columns;
    };
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    void put(Kind kind, const StoredTable& table, std::int64_t row,
             std::span<const store::Column* const> columns, std::span<const base::Value> values);
    std::uint32_t shapeNumber(Kind kind, const StoredTable& table,
                              std::span<const store::Column* const> columns);
    void write(const void* bytes, std::size_t count);
    void writeValue(const base::Value& value);
    void read(void* bytes, std::size_t count);
    void readValue(base::Value& value);
    template <class Plain>
    void writePlain(const Plain& plain);
    template <class Plain>
    [[nodiscard]] Plain readPlain();

    std::unique_ptr<std::FILE, Close> file_;
    std::vector<Shape> shapes_;
    std::int64_t size_ = 0;
    std::int64_t added_ = 0;
    std::vector<std::int64_t> numbers_;  ///< of the new rows, as far as they are written
    std::string text_;
};

}  // namespace tools::district
