#include "groupops/base/outcome.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace groupops {

namespace {

/// "A, B, C and 5 more".
std::string someOf(const std::vector<std::string>& ids) {
    constexpr std::ptrdiff_t Shown = 10;
    const auto shown = std::min(Shown, std::ssize(ids));
    const auto text = fmt::format("{}", fmt::join(ids.begin(), ids.begin() + shown, ", "));
    return std::ssize(ids) == shown ? text
                                    : fmt::format("{} and {} more", text, ids.size() - shown);
}

std::vector<std::string> reasonsOf(const Outcome& outcome) {
    std::vector<std::string> reasons;
    for (const LeftOut& one : outcome.leftOut) {
        if (std::ranges::find(reasons, one.why) == reasons.end()) {
            reasons.push_back(one.why);
        }
    }
    return reasons;
}

std::vector<std::string> leftFor(const std::string& why, const Outcome& outcome) {
    std::vector<std::string> ids;
    for (const LeftOut& one : outcome.leftOut) {
        if (one.why == why) {
            ids.push_back(one.id);
        }
    }
    return ids;
}

}  // namespace

Wording runChangeWording() {
    return {"run", "changed and saved", "the change",
            "The runs not yet reached are as they were before."};
}

std::string countOf(std::size_t count, std::string_view thing) {
    return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}

std::string selectedText(std::size_t count) {
    return count == 0 ? std::string("No run is selected in the run list.")
                      : fmt::format("{} {} selected in the run list.", countOf(count, "run"),
                                    count == 1 ? "is" : "are");
}

std::string howFar(const Outcome& outcome, const Wording& words) {
    return fmt::format("{} of {} {}.", outcome.done,
                       countOf(static_cast<std::size_t>(outcome.asked), words.thing), words.done);
}

std::string whatWasLeft(const Outcome& outcome, const Wording& words) {
    if (outcome.complete()) {
        return {};
    }
    std::string text = howFar(outcome, words);
    if (!outcome.fault.empty()) {
        text += "\n\n" + outcome.fault;
    }
    if (outcome.stopped) {
        text += fmt::format("\n\nYou stopped {}.  {}", words.name, words.rest);
    }
    for (const std::string& why : reasonsOf(outcome)) {
        text += fmt::format("\n\n{}: {}.", why, someOf(leftFor(why, outcome)));
    }
    return text;
}

}  // namespace groupops
