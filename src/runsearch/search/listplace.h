#pragma once

#include <QString>
#include <string>
#include <vector>

#include "platform/table/texttable.h"

namespace controls {
class MultiColumnList;
}

namespace runsearch {

/// How a planner has arranged a list: the columns it is sorted by, its filter, the rows selected
/// and the one chosen, and how far it is scrolled. Taken before the list is filled anew and put
/// back afterwards.
class ListPlace {
public:
    /// What becomes of the choice where the chosen row is gone.
    enum class WhenGone {
        NoneChosen,  ///< keys go on from where it stood
        NextChosen,  ///< the row that stands at its place now
    };

    explicit ListPlace(const controls::MultiColumnList& list);

    /// Rows are known by their first column. Where the list's columns are others now, it stays
    /// unsorted.
    void restore(controls::MultiColumnList& list, WhenGone whenGone) const;

private:
    void select(controls::MultiColumnList& list) const;
    [[nodiscard]] bool chooseFormer(controls::MultiColumnList& list) const;
    void chooseOther(controls::MultiColumnList& list, WhenGone whenGone) const;

    int scrolled_;
    int chosenRow_;
    std::string chosenKey_;  ///< also of a row that the filter hides
    std::vector<std::string> selectedKeys_;
    std::vector<table::TableColumn> columns_;
    std::vector<table::SortBy> sorting_;
    QString filter_;
};

/// The first column of the selected rows, in list order.
[[nodiscard]] std::vector<std::string> selectedKeys(const controls::MultiColumnList& list);

}  // namespace runsearch
