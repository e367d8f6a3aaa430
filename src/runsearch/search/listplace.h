#pragma once

#include <Qt>
#include <string>
#include <vector>

namespace controls {
class MultiColumnList;
}

namespace runsearch {

/// How a planner has arranged a list: the column it is sorted by, the rows selected and the one
/// chosen. Taken before the list is filled anew and put back afterwards.
class ListPlace {
public:
    explicit ListPlace(const controls::MultiColumnList& list);

    /// Rows are known by their first column. Where the chosen row is gone, the one that stands at
    /// its place is chosen; where its columns are others now, the list stays unsorted.
    void restore(controls::MultiColumnList& list) const;

private:
    int chosenRow_;
    std::string chosenKey_;
    std::vector<std::string> selectedKeys_;
    std::string sortCaption_;
    int sortColumn_;
    Qt::SortOrder sortOrder_;
};

/// The first column of the selected rows, in list order.
[[nodiscard]] std::vector<std::string> selectedKeys(const controls::MultiColumnList& list);

}  // namespace runsearch
