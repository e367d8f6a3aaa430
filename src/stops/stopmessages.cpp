#include "stops/stopmessages.h"

#include <string>

#include <fmt/format.h>

#include "platform/base/ports.h"

namespace stops {

namespace {

/// The first few stop ids, and how many more there are.
std::string names(const std::vector<ChosenStop>& stops) {
    constexpr std::size_t Most = 10;
    std::string text;
    for (std::size_t i = 0; i < stops.size() && i < Most; ++i) {
        text += (i == 0 ? "" : ", ") + stops[i].stopId;
    }
    return stops.size() <= Most ? text : fmt::format("{} and {} more", text, stops.size() - Most);
}

void tell(const std::string& text, std::string_view title) {
    base::MsgBox(text, std::string(title), base::MsgIcon::Information);
}

}  // namespace

void tellOfSkipped(const AddedStops& added) {
    if (!added.withoutTripType.empty()) {
        tell(std::string(NoTripTypeText), NoTripTypeTitle);
    }
    if (!added.changedByAnother.empty()) {
        tell(
            fmt::format("Oops, another user has put on a run, taken off a run or deleted {} of the "
                        "stops you selected since they were listed: {}.  Not added to the run.  "
                        "Please look at where they are now and select them again if you still "
                        "want them on this run.",
                        added.changedByAnother.size(), names(added.changedByAnother)),
            ChangedTitle);
    }
}

void tellOfSkipped(const ChangedStops& changed) {
    if (!changed.changedByAnother.empty()) {
        tell(fmt::format("Oops, another user has taken {} of the stops you selected off this run "
                         "since they were listed.  The list now shows the run as it is.",
                         changed.changedByAnother.size()),
             ChangedTitle);
    }
}

}  // namespace stops
