#include "runsearch/search/listplace.h"

#include <QScrollBar>
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
    : scrolled_(list.verticalScrollBar()->value()),
      chosenRow_(list.chosenRow()),
      chosenKey_(list.chosenKey()),
      selectedKeys_(selectedKeys(list)),
      sortCaption_(captionOf(list, list.sortColumn())),
      sortColumn_(list.sortColumn()),
      sortOrder_(list.sortOrder()) {}

void ListPlace::restore(controls::MultiColumnList& list, WhenGone whenGone) const {
    sort(list);
    const std::unordered_set<std::string> wanted(selectedKeys_.begin(), selectedKeys_.end());
    std::vector<int> selected;
    for (int row = 0; row < list.rows() && !wanted.empty(); ++row) {
        if (wanted.contains(list.cellText(row, 0))) {
            selected.push_back(row);
        }
    }
    list.selectRows(selected);
    chooseRow(list, whenGone);
    list.verticalScrollBar()->setValue(scrolled_);
    list.scrollTo(list.currentIndex());
}

void ListPlace::sort(controls::MultiColumnList& list) const {
    if (sortColumn_ >= 0 && captionOf(list, sortColumn_) == sortCaption_) {
        list.toggleSort(sortColumn_);
        if (sortOrder_ == Qt::DescendingOrder) {
            list.toggleSort(sortColumn_);
        }
    }
}

void ListPlace::chooseRow(controls::MultiColumnList& list, WhenGone whenGone) const {
    if (chosenRow_ < 0) {
        return;
    }
    for (int row = 0; row < list.rows(); ++row) {
        if (list.cellText(row, 0) == chosenKey_) {
            return list.chooseAmongSelected(row);
        }
    }
    if (whenGone == WhenGone::NoneChosen) {
        list.standAt(chosenRow_);
    } else if (list.selectedCount() == 0) {
        list.choose(chosenRow_);
    } else {
        list.chooseAmongSelected(chosenRow_);
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
