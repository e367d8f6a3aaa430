#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ado/recordset.h"
#include "reports/base/content.h"
#include "reports/catalog/definition.h"

namespace reports {

/// How many rows a list has, in all and in its groups: for each level by the lowered values that
/// rows of one group share.
struct RowCounts {
    std::size_t rows = 0;
    std::vector<std::map<std::vector<std::string>, std::size_t>> groups = {};
};

/// A prepared report in the work tables.
struct Stored {
    ado::Connection& work;
    std::int64_t session = 0;
    std::int64_t first = 0, last = -1;  ///< the keys of its runs
    const Definition& definition;
    Report report;      ///< with captions as its runs want them
    std::string order;  ///< of a list's rows
    Options options;
    Heading heading;
    RowCounts counts = {};  ///< of a list whose rows come from one table
    std::function<std::shared_ptr<const Drawable>(const std::string& run)> maps = {};
};

/// Counts the rows of a list among those that a condition holds for.
void countRows(Stored& stored, const std::string& condition);

/// What both kinds of report share: items are made one row or one sheet at a time.
class StoredContent : public Content {
public:
    explicit StoredContent(const Stored& stored) : stored_(stored) {}

    [[nodiscard]] const Report& report() const final { return stored_.report; }
    [[nodiscard]] const Options& options() const final { return stored_.options; }
    [[nodiscard]] const Heading& heading() const final { return stored_.heading; }
    [[nodiscard]] std::size_t size() const final { return size_; }
    std::optional<Item> next() final;

protected:
    /// Adds what comes next to waiting_; false at the end.
    virtual bool readOn() = 0;
    /// A question of the definition's with this session put in.
    void open(ado::Recordset& rows, const std::string& question,
              ado::CursorType cursor = ado::CursorType::ForwardOnly) const;

    const Stored& stored_;
    std::deque<Item> waiting_;
    std::size_t size_ = 0;
};

// Each reads from the beginning; what is stored must outlive it.
[[nodiscard]] std::unique_ptr<Content> listContent(const Stored& stored);
[[nodiscard]] std::unique_ptr<Content> sheetContent(const Stored& stored);

/// A text, trimmed; nothing for Null.
[[nodiscard]] std::string wordsOf(const ado::Field& field);
[[nodiscard]] std::optional<double> figureOf(const ado::Field& field);
/// "1 run", "2 runs", "3 families".
[[nodiscard]] std::string countOf(std::size_t count, const std::string& noun);
/// Whether a page of its own was asked for where this run begins.
class PageBreaks {
public:
    explicit PageBreaks(PageBreak wanted) : wanted_(wanted) {}
    /// To be asked of every row in turn; its fields RUN, ROUTEID and SCHOOLNAME are looked at.
    bool isDue(ado::Recordset& row);

private:
    PageBreak wanted_;
    std::optional<std::string> last_;
};

}  // namespace reports
