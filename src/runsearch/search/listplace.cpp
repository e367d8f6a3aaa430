#include "runsearch/search/listplace.h"

#include <QScrollBar>
#include <unordered_set>

#include "platform/controls/multicolumnlist.h"

namespace runsearch {

ListPlace::ListPlace(const controls::MultiColumnList& list)
    : scrolled_(list.verticalScrollBar()->value()),
      chosenRow_(list.chosenRow()),
      chosenKey_(chosenRow_ < 0 ? list.hiddenChoice() : list.chosenKey()),
      selectedKeys_(selectedKeys(list)),
      columns_(list.table().columns),
      sorting_(list.sorting()),
      filter_(list.filter()) {}

void ListPlace::restore(controls::MultiColumnList& list, WhenGone whenGone) const {
    list.setFilter({});
    if (list.table().columns == columns_) {
        list.sortBy(sorting_);
    }
    select(list);
    const bool isThere = chooseFormer(list);
    list.setFilter(filter_);
    if (!isThere && chosenRow_ >= 0) {
        chooseOther(list, whenGone);
    }
    list.verticalScrollBar()->setValue(scrolled_);
    list.scrollTo(list.currentIndex());
}

void ListPlace::select(controls::MultiColumnList& list) const {
    const std::unordered_set<std::string> wanted(selectedKeys_.begin(), selectedKeys_.end());
    std::vector<int> selected;
    for (int row = 0; row < list.rows() && !wanted.empty(); ++row) {
        if (wanted.contains(list.cellText(row, 0))) {
            selected.push_back(row);
        }
    }
    list.selectRows(selected);
}

bool ListPlace::chooseFormer(controls::MultiColumnList& list) const {
    for (int row = 0; row < list.rows() && !chosenKey_.empty(); ++row) {
        if (list.cellText(row, 0) == chosenKey_) {
            list.chooseAmongSelected(row);
            return true;
        }
    }
    return false;
}

void ListPlace::chooseOther(controls::MultiColumnList& list, WhenGone whenGone) const {
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
