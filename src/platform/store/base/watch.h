#pragma once

#include <string>
#include <vector>

namespace store {

/// A row that others have written: its table, and its value in the column that the table was
/// announced by.
struct ToldRow {
    std::string table;
    std::string value;
};

/// What others have written to a database since the last look.
struct Changes {
    bool any = false;
    /// Whether `rows` are all that were written of the announced tables; otherwise any row may have
    /// been.
    bool areAllTold = false;
    std::vector<ToldRow> rows = {};  ///< each once
};

/// Looks out for what other programs commit to a database, and for who has the same record open.
/// Not for several threads. Nothing of it waits.
class Watch {
public:
    virtual ~Watch() = default;
    /// What was committed since the last look, or since the watch began.
    [[nodiscard]] virtual Changes look() = 0;

    /// Tells others which record is open here; "" none any more. Only a hint, which ends with the
    /// program, however that ends.
    virtual void open(const std::string& record) = 0;
    /// Who else has that record open, as they call themselves; a little late.
    [[nodiscard]] virtual std::vector<std::string> others() = 0;
};

}  // namespace store
