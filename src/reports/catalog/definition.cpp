#include "reports/catalog/definition.h"

#include <iterator>
#include <utility>

namespace reports {

Column strong(Column column) {
    column.strong = true;
    return column;
}

Column growing(Column column) {
    column.grows = true;
    return column;
}

Column condensed(Column column) {
    column.condensed = true;
    return column;
}

Column added(Column column) {
    column.total = Total::Sum;
    return column;
}

Column ratio(Column column, std::string of, std::string to) {
    column.total = Total::Ratio;
    column.ratioOf = std::move(of);
    column.ratioTo = std::move(to);
    return column;
}

const std::vector<Definition>& definitions() {
    static const std::vector<Definition> all = [] {
        std::vector<Definition> made;
        for (auto* file : {runLists, stopLists, driverSheets, directionLists, warningLists,
                           summaryLists, changeLists}) {
            auto some = file();
            std::ranges::move(some, std::back_inserter(made));
        }
        return made;
    }();
    return all;
}

}  // namespace reports
