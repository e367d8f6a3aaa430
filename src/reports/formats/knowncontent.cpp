#include <algorithm>

#include "reports/formats/texts.h"
#include "reports/formats/writer.h"

namespace reports {

namespace {

constexpr std::size_t MostKnown = 2000;

const std::vector<base::Value>* cellsOf(const Item& item) {
    if (const auto* row = std::get_if<Row>(&item)) {
        return &row->cells;
    }
    const auto* totals = std::get_if<Totals>(&item);
    return totals == nullptr ? nullptr : &totals->cells;
}

}  // namespace

KnownContent::KnownContent(Content& content) : content_(content) {
    while (beginning_.size() < MostKnown) {
        auto item = content_.next();
        if (!item) {
            break;
        }
        beginning_.push_back(std::move(*item));
    }
}

std::optional<Item> KnownContent::next() {
    if (beginning_.empty()) {
        return content_.next();
    }
    std::optional<Item> item = std::move(beginning_.front());
    beginning_.pop_front();
    return item;
}

bool KnownContent::hasRemarks() const {
    return std::ranges::any_of(
        beginning_, [](const Item& item) { return std::holds_alternative<Remark>(item); });
}

std::vector<std::size_t> KnownContent::longestCells() const {
    const std::vector<Column>& columns = report().columns;
    std::vector<std::size_t> longest(columns.size(), 0);
    for (const Item& item : beginning_) {
        if (const auto* cells = cellsOf(item)) {
            for (std::size_t i = 0; i < std::min(cells->size(), columns.size()); ++i) {
                longest[i] =
                    std::max(longest[i], columnsOf(plainCell(columns[i].kind, (*cells)[i])));
            }
        }
    }
    return longest;
}

}  // namespace reports
