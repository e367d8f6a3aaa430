#pragma once

#include <string>
#include <vector>

namespace groupops {

/// The run list that group operations work on; the main form has it.
class RunSelection {
public:
    virtual ~RunSelection() = default;
    /// The run ids of the selected rows in list order.
    [[nodiscard]] virtual std::vector<std::string> selectedRuns() const = 0;
    /// Repeats the last search, so that the list shows the new values.
    virtual void searchAgain() = 0;
};

}  // namespace groupops
