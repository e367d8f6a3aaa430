#include "stops/sequence/stopmessages.h"

#include <fmt/format.h>

#include "platform/base/ports.h"
#include "platform/base/text.h"

namespace stops {

namespace {

constexpr std::size_t MostNamed = 10;
constexpr std::size_t ManyStops = 100;

/// The first few stops, and how many more there are.
template <class NameOf>
std::string names(const std::vector<ChosenStop>& stops, NameOf nameOf) {
    std::string text;
    for (std::size_t i = 0; i < stops.size() && i < MostNamed; ++i) {
        text += (i == 0 ? "" : ", ") + nameOf(stops[i]);
    }
    return stops.size() <= MostNamed
               ? text
               : fmt::format("{} and {} more", text, stops.size() - MostNamed);
}

std::string stopId(const ChosenStop& stop) { return stop.stopId; }

std::string stopAndRun(const ChosenStop& stop) {
    return fmt::format("{} on {}", stop.stopId, base::trim(stop.run));
}

void tell(const std::string& text, std::string_view title) {
    base::MsgBox(text, std::string(title), base::MsgIcon::Information);
}

}  // namespace

std::string questionBeforeAdding(const EditedRun& run, std::span<const ChosenStop> chosen) {
    std::vector<ChosenStop> here;
    std::vector<ChosenStop> elsewhere;
    for (const auto& stop : chosen) {
        if (!isSharedPlace(stop.stopType) && !base::trim(stop.run).empty()) {
            const bool same = base::equalsNoCase(base::trim(stop.run), base::trim(run.run));
            (same ? here : elsewhere).push_back(stop);
        }
    }
    std::string text;
    if (!elsewhere.empty()) {
        text += fmt::format(
            "{} of the selected stops on another run: {}.  Adding takes them off "
            "that run.\n\n",
            elsewhere.size(), names(elsewhere, stopAndRun));
    }
    if (!here.empty()) {
        text += fmt::format(
            "{} of the selected stops on this run already: {}.  Adding moves them "
            "to its end.\n\n",
            here.size(), names(here, stopId));
    }
    if (text.empty() && chosen.size() < ManyStops) {
        return {};
    }
    return text + fmt::format(
                      "Do you wish to add {} to the run?",
                      chosen.size() == 1 ? "the stop" : fmt::format("all {} stops", chosen.size()));
}

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
                        added.changedByAnother.size(), names(added.changedByAnother, stopId)),
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
