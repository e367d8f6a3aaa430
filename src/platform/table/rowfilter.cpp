#include "platform/table/rowfilter.h"

#include <algorithm>
#include <utility>

#include "platform/base/fold.h"
#include "platform/base/text.h"

namespace table {

void RowFilter::lookAt(std::vector<std::size_t> columns) {
    columns_ = std::move(columns);
    texts_.clear();
    ends_.clear();
}

void RowFilter::setWords(std::string_view typed) {
    words_.clear();
    std::string folded = base::folded(typed);
    std::ranges::replace(folded, '\t', ' ');
    for (auto rest = base::trim(folded); !rest.empty(); rest = base::trimLeft(rest)) {
        const auto word = rest.substr(0, rest.find(' '));
        words_.emplace_back(word);
        rest.remove_prefix(word.size());
    }
}

void RowFilter::addCell(std::string_view text) {
    const std::size_t from = texts_.size();
    texts_ += text;
    if (base::isAscii(text)) {
        for (std::size_t at = from; at < texts_.size(); ++at) {
            texts_[at] = base::lowered(texts_[at]);
        }
    } else {
        texts_.replace(from, text.size(), base::folded(text));
    }
    texts_ += '\n';
}

bool RowFilter::readOn(const TextTable& table, std::size_t rows) {
    for (std::size_t row = ends_.size(); row < table.rowCount() && rows > 0; ++row, --rows) {
        for (const std::size_t column : columns_) {
            addCell(table.text(row, column));
        }
        ends_.push_back(texts_.size());
    }
    return ends_.size() < table.rowCount();
}

bool RowFilter::holdsAll(std::string_view row) const {
    return std::ranges::all_of(
        words_, [&](const std::string& word) { return row.find(word) != std::string_view::npos; });
}

std::vector<std::size_t> RowFilter::rows(const TextTable& table, std::size_t first) {
    readOn(table, table.rowCount());
    const std::string_view texts = texts_;
    std::vector<std::size_t> found;
    std::size_t from = first == 0 || ends_.empty() ? 0 : ends_[first - 1];
    for (std::size_t row = first; row < ends_.size(); ++row) {
        if (holdsAll(texts.substr(from, ends_[row] - from))) {
            found.push_back(row);
        }
        from = ends_[row];
    }
    return found;
}

}  // namespace table
