#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "reports/catalog/reading.h"

namespace reports {

namespace {

/// One column of a group's rows added up.
struct Added {
    base::Value total;
    double above = 0, below = 0;  ///< of a ratio

    void take(Total kind, const base::Value& cell);
};

bool isLess(const base::Value& a, const base::Value& b) {
    return a.isDate() ? a.asDate() < b.asDate() : a.asNumber() < b.asNumber();
}

/// Without what adding in another order would have made of the last digits.
base::Value settled(const base::Value& sum) {
    constexpr double Steps = 1e6;
    return sum.isDouble() ? base::Value(std::round(sum.asNumber() * Steps) / Steps) : sum;
}

void Added::take(Total kind, const base::Value& cell) {
    if (cell.isNull() || kind == Total::None) {
        return;
    }
    if (kind == Total::Sum && !total.isNull()) {
        total = cell.isInteger() && total.isInteger()
                    ? base::Value(total.asInteger() + cell.asInteger())
                    : base::Value(total.asNumber() + cell.asNumber());
    } else if (total.isNull() ||
               (kind == Total::Least ? isLess(cell, total) : isLess(total, cell))) {
        total = cell;
    }
}

class ListContent final : public StoredContent {
public:
    explicit ListContent(const Stored& stored);

protected:
    bool readOn() override;

private:
    using Groups = std::vector<std::string>;  ///< the values that rows of one group share

    void findFields();
    [[nodiscard]] Groups groupsOfRow();
    void beginGroups(const Groups& groups);
    void endGroups(std::size_t from);
    void addRow();
    void add(const std::vector<base::Value>& cells, std::vector<Added>& totals) const;
    [[nodiscard]] Totals totalsOf(std::size_t sums, std::optional<std::size_t> level,
                                  std::string title) const;
    [[nodiscard]] bool addsUp() const;
    void finish();

    ado::Recordset rows_;
    std::vector<const ado::Field*> cells_;
    std::vector<std::pair<const ado::Field*, const ado::Field*>> ratios_;  ///< of each column
    Groups groups_;
    std::vector<std::string> titles_;
    std::vector<std::vector<Added>> sums_;  ///< of each level, the whole report's last
    PageBreaks breaks_;
    RowChange change_;
    bool isFinished_ = false;
};

ListContent::ListContent(const Stored& stored)
    : StoredContent(stored),
      sums_(stored.report.groups.size() + 1, std::vector<Added>(stored.report.columns.size())),
      breaks_(stored.options.breaks),
      change_(stored.definition.change ? stored.definition.change() : RowChange()) {
    const Definition& definition = stored.definition;
    const bool isCounted = !definition.table.empty();
    open(rows_, definition.rows + " ORDER BY " + stored.order,
         isCounted ? ado::CursorType::ForwardOnly : ado::CursorType::Static);
    size_ = isCounted ? stored.counts.rows : static_cast<std::size_t>(rows_.RecordCount());
    findFields();
}

void ListContent::findFields() {
    for (const Column& column : stored_.report.columns) {
        cells_.push_back(&rows_.Fields(column.field));
        const bool isRatio = column.total == Total::Ratio;
        const auto& divided = stored_.definition.divided;
        ratios_.emplace_back(
            isRatio ? &rows_.Fields(divided.empty() ? column.ratioOf : divided) : nullptr,
            isRatio ? &rows_.Fields(column.ratioTo) : nullptr);
    }
}

ListContent::Groups ListContent::groupsOfRow() {
    Groups groups;
    for (const Group& group : stored_.report.groups) {
        groups.push_back(base::lowered(wordsOf(rows_.Fields(group.field))));
    }
    return groups;
}

bool ListContent::readOn() {
    if (rows_.Eof()) {
        const bool goesOn = !isFinished_;
        if (goesOn) {
            finish();
        }
        return goesOn;
    }
    auto groups = groupsOfRow();
    if (groups != groups_) {
        beginGroups(groups);
    }
    addRow();
    rows_.MoveNext();
    return true;
}

void ListContent::beginGroups(const Groups& groups) {
    const auto& all = stored_.report.groups;
    const auto differs = std::mismatch(groups_.begin(), groups_.end(), groups.begin()).second;
    const auto from = static_cast<std::size_t>(differs - groups.begin());
    endGroups(from);
    groups_ = groups;
    const bool newPage = breaks_.isDue(rows_);
    for (std::size_t level = from; level < all.size(); ++level) {
        titles_.push_back(wordsOf(rows_.Fields(all[level].title)));
        const Groups upToHere(groups.begin(), groups.begin() + static_cast<int>(level) + 1);
        const auto count = stored_.counts.groups[level].at(upToHere);
        waiting_.emplace_back(
            GroupHead{level, titles_.back(),
                      all[level].note.empty() ? std::string() : countOf(count, all[level].note),
                      newPage && level == from});
    }
}

void ListContent::endGroups(std::size_t from) {
    for (std::size_t level = groups_.size(); level-- > from;) {
        if (stored_.report.groups[level].totals && addsUp()) {
            waiting_.emplace_back(totalsOf(level, level, titles_[level] + ", total"));
        }
        sums_[level].assign(stored_.report.columns.size(), {});
        titles_.pop_back();
    }
}

void ListContent::addRow() {
    std::vector<base::Value> cells;
    cells.reserve(cells_.size());
    for (const ado::Field* field : cells_) {
        cells.push_back(field->Value());
    }
    if (change_) {
        change_(rows_, cells);
    }
    for (auto& totals : sums_) {
        add(cells, totals);
    }
    waiting_.emplace_back(Row{std::move(cells)});
    const std::string& remark = stored_.definition.remark;
    if (auto text = remark.empty() ? std::string() : wordsOf(rows_[remark]); !text.empty()) {
        waiting_.emplace_back(Remark{std::move(text)});
    }
}

void ListContent::add(const std::vector<base::Value>& cells, std::vector<Added>& totals) const {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const Column& column = stored_.report.columns[i];
        if (column.total != Total::Ratio) {
            totals[i].take(column.total, cells[i]);
            continue;
        }
        const auto above = figureOf(*ratios_[i].first);
        const auto below = figureOf(*ratios_[i].second);
        if (above && below) {
            totals[i].above += *above;
            totals[i].below += *below;
        }
    }
}

Totals ListContent::totalsOf(std::size_t sums, std::optional<std::size_t> level,
                             std::string title) const {
    Totals totals{level, std::move(title), {}};
    for (std::size_t i = 0; i < sums_[sums].size(); ++i) {
        const Added& added = sums_[sums][i];
        const bool isRatio = stored_.report.columns[i].total == Total::Ratio;
        totals.cells.push_back(!isRatio          ? settled(added.total)
                               : added.below > 0 ? base::Value(added.above * 100 / added.below)
                                                 : base::Value());
    }
    return totals;
}

bool ListContent::addsUp() const {
    return std::ranges::any_of(stored_.report.columns,
                               [](const Column& column) { return column.total != Total::None; });
}

void ListContent::finish() {
    isFinished_ = true;
    endGroups(0);
    groups_.clear();
    if (size_ == 0) {
        waiting_.emplace_back(Remark{stored_.definition.nothing});
    } else if (addsUp()) {
        waiting_.emplace_back(totalsOf(sums_.size() - 1, std::nullopt,
                                       fmt::format("{}, {}", stored_.definition.all,
                                                   countOf(size_, stored_.definition.counts))));
    }
}

}  // namespace

std::unique_ptr<Content> listContent(const Stored& stored) {
    return std::make_unique<ListContent>(stored);
}

}  // namespace reports
