#include "runsearch/search/runcomparison.h"

#include "runsearch/search/runlist.h"

namespace runsearch {

RunComparison::RunComparison(const table::TextTable& shown, bool withRouting,
                             const std::string& question, ado::Connection& connection)
    : shown_(shown),
      columns_(runColumns(withRouting)),
      reader_(columns_, question, connection),
      isSame_(shown.rowCount()) {
    rowOf_.reserve(shown.rowCount());
    for (std::size_t row = 0; row < shown.rowCount(); ++row) {
        rowOf_.emplace(shown.text(row, 0), row);
    }
}

bool RunComparison::goOn(std::size_t most) {
    table::TextTable now = data::emptyTable(columns_);
    if (!reader_.atEnd()) {
        const auto& regenerate = reader_.field(NeedsSolving);
        reader_.read(now, most, [&](table::TextTable& table, std::size_t row) {
            if (regenerate.asBoolean()) {
                table.colourRed(row, 0, 0);
            }
        });
    }
    for (std::size_t row = 0; row < now.rowCount(); ++row) {
        compare(now, row);
    }
    return !reader_.atEnd();
}

void RunComparison::compare(const table::TextTable& now, std::size_t row) {
    const auto found = rowOf_.find(now.text(row, 0));
    if (found == rowOf_.end()) {
        return;
    }
    bool isSame = now.isRed(row, 0) == shown_.isRed(found->second, 0);
    for (std::size_t column = 0; column < now.columns.size() && isSame; ++column) {
        isSame = now.value(row, column) == shown_.value(found->second, column);
    }
    isSame_[found->second] = isSame;
}

std::vector<std::string> RunComparison::changed() const {
    std::vector<std::string> ids;
    for (std::size_t row = 0; row < isSame_.size(); ++row) {
        if (!isSame_[row]) {
            ids.push_back(shown_.text(row, 0));
        }
    }
    return ids;
}

}  // namespace runsearch
