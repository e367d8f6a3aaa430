#include "runsearch/search/listplace.h"

#include <unordered_set>

#include "platform/controls/multicolumnlist.h"

namespace runsearch {

namespace {

std::string captionOf(const controls::MultiColumnList& list, int column) {
    const auto& columns = list.table().columns;
    const auto index = static_cast<std::size_t>(column);
    return column < 0 || index >= columns.size() ? std::string() : columns[index].caption;
}

}  // namespace

ListPlace::ListPlace(const controls::MultiColumnList& list)
    : chosenRow_(list.chosenRow()),
      chosenKey_(list.chosenKey()),
      selectedKeys_(selectedKeys(list)),
      sortCaption_(captionOf(list, list.sortColumn())),
      sortColumn_(list.sortColumn()),
      sortOrder_(list.sortOrder()) {}

void ListPlace::restore(controls::MultiColumnList& list) const {
    if (sortColumn_ >= 0 && captionOf(list, sortColumn_) == sortCaption_) {
        list.toggleSort(sortColumn_);
        if (sortOrder_ == Qt::DescendingOrder) {
            list.toggleSort(sortColumn_);
        }
    }
    const std::unordered_set<std::string> wanted(selectedKeys_.begin(), selectedKeys_.end());
    std::vector<int> selected;
    int chosen = chosenRow_;
    for (int row = 0; row < list.rows(); ++row) {
        const std::string key = list.cellText(row, 0);
        if (wanted.contains(key)) {
            selected.push_back(row);
        }
        if (chosenRow_ >= 0 && key == chosenKey_) {
            chosen = row;
        }
    }
    list.choose(chosen);
    if (selected.size() > 1) {
        list.selectRows(selected);
    }
}

std::vector<std::string> selectedKeys(const controls::MultiColumnList& list) {
    std::vector<std::string> keys;
    for (const int row : list.selectedRows()) {
        keys.push_back(list.cellText(row, 0));
    }
    return keys;
}

}  // namespace runsearch
