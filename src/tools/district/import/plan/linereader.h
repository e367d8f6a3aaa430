#pragma once

#include <string>
#include <vector>

#include "tools/district/import/map/binding.h"
#include "tools/district/import/plan/storedtable.h"

namespace tools::district {

/// The tables that an import reads or changes, each once.
class TableSet {
public:
    virtual ~TableSet() = default;
    [[nodiscard]] virtual StoredTable& of(const std::string& table,
                                          const std::vector<std::string>& key) = 0;
};

/// A row that a line makes, before it is compared.
struct MadeRow {
    std::size_t which = 0;  ///< of the kind's rows
    std::vector<base::Value> key;
    std::vector<base::Value> values;    ///< of the table's compared columns
    std::vector<base::Value> onAdding;  ///< of BoundRow::added behind key and values
};

/// Makes rows of the lines of one source.
class LineReader {
public:
    struct BoundCellSource {
        const CellSource* source = nullptr;
        const store::Column* column = nullptr;
        int place = -1;                      ///< in the binding; -1 where it comes from no field
        StoredTable* refers = nullptr;       ///< to a row of this table
        bool isRequired = false;             ///< an empty cell refuses the line
        const base::Value* usual = nullptr;  ///< what an empty cell stands for; null for Null
    };
    struct BoundRow {
        std::size_t which = 0;
        const RowSource* source = nullptr;
        StoredTable* table = nullptr;
        std::vector<BoundCellSource> key;
        std::vector<BoundCellSource> values;
        std::vector<BoundCellSource> onAdding;
        std::vector<const store::Column*> added;  ///< all columns of a new row
        int onlyWith = -1;
        int list = -1;
    };

    /// Says to the tables which columns are compared. `unknownCode` is asked about a code that its
    /// table does not have: true where it has been put there.
    LineReader(const FileKind& kind, Binding& binding, TableSet& tables);

    [[nodiscard]] const std::vector<BoundRow>& rows() const { return rows_; }
    [[nodiscard]] const FileKind& kind() const { return kind_; }

    /// Codes that stand nowhere yet are taken as they come and added to `unknownCodes`.
    void allowUnknownCodes(bool allow) { allowsUnknownCodes_ = allow; }

    struct UnknownCode {
        StoredTable* table = nullptr;
        base::Value code;
    };
    struct Made {
        std::vector<MadeRow> rows;
        std::vector<UnknownCode> codes;
    };
    /// The rows of a record. Numbers of rows of the same line are left Null. Raises Refusal.
    void make(const CsvRecord& record, Made& made);

private:
    [[nodiscard]] BoundRow bound(std::size_t which, TableSet& tables);
    [[nodiscard]] BoundCellSource boundCell(const CellSource& source, const store::Table& table,
                                            TableSet& tables) const;
    [[nodiscard]] base::Value cellOf(const BoundCellSource& source, const BoundCell& cell,
                                     Made& made) const;
    [[nodiscard]] base::Value referred(const BoundCellSource& source, base::Value value,
                                       Made& made) const;
    void makeRow(const BoundRow& row, const CsvRecord& record, Made& made);
    void makeOne(const BoundRow& row, const CsvRecord& record, std::string_view listed, Made& made);

    const FileKind& kind_;
    Binding& binding_;
    std::vector<BoundRow> rows_;
    bool allowsUnknownCodes_ = false;
};

}  // namespace tools::district
