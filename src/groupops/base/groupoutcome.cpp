#include "groupops/base/groupoutcome.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace groupops {

std::string runCount(std::size_t count) {
    return count == 1 ? std::string("1 run") : fmt::format("{} runs", count);
}

std::string selectedText(std::size_t count) {
    return count == 0 ? std::string("No run is selected in the run list.")
                      : fmt::format("{} {} selected in the run list.", runCount(count),
                                    count == 1 ? "is" : "are");
}

std::string someOf(const std::vector<std::string>& ids) {
    constexpr std::ptrdiff_t Shown = 10;
    const auto shown = std::min(Shown, std::ssize(ids));
    const auto text = fmt::format("{}", fmt::join(ids.begin(), ids.begin() + shown, ", "));
    return std::ssize(ids) == shown ? text
                                    : fmt::format("{} and {} more", text, ids.size() - shown);
}

std::string whatWasLeft(const GroupOutcome& outcome) {
    if (outcome.changed == outcome.asked) {
        return {};
    }
    std::string text = fmt::format("{} changed and saved, {} of {} not changed.",
                                   runCount(static_cast<std::size_t>(outcome.changed)),
                                   outcome.asked - outcome.changed, outcome.asked);
    if (outcome.stopped) {
        text += "\n\nYou stopped the change.  The runs not yet reached are as they were before.";
    }
    if (!outcome.gone.empty()) {
        text += fmt::format("\n\nDeleted by another program meanwhile: {}.", someOf(outcome.gone));
    }
    if (!outcome.withoutEnd.empty()) {
        text += fmt::format(
            "\n\nLeft as they were, for they have no end time to keep the time span from: {}.",
            someOf(outcome.withoutEnd));
    }
    return text;
}

}  // namespace groupops
