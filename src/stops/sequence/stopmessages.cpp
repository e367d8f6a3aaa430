#include "stops/sequence/stopmessages.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "platform/base/ports.h"
#include "platform/base/text.h"

namespace stops {

namespace {

using table::TextTable;

constexpr std::size_t MostNamed = 10;
constexpr std::size_t MostListed = 200;
constexpr std::size_t ManyStops = 100;

constexpr auto RunGoneText =
    "Oops, another user has deleted this run since you opened it.  No stop was added.";
constexpr auto PlaceGoneText =
    "Oops, another user has taken the stop in front of which you put the others off this run since "
    "it was listed.  Nothing was moved.  The list now shows the run as it is.";

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

/// A line for each, and how many more there are.
template <class Items, class LineOf>
std::string listed(const Items& items, LineOf lineOf) {
    std::string text;
    for (std::size_t i = 0; i < items.size() && i < MostListed; ++i) {
        text += (i == 0 ? "" : "\n") + lineOf(items[i]);
    }
    return items.size() <= MostListed
               ? text
               : fmt::format("{}\nand {} more", text, items.size() - MostListed);
}

std::string stopId(const ChosenStop& stop) { return stop.stopId; }

std::string stopAndRun(const ChosenStop& stop) {
    return fmt::format("{} on {}", stop.stopId, base::trim(stop.run));
}

std::string whyNoTripType(const ChosenStop& stop) {
    return base::trim(stop.run).empty()
               ? fmt::format("{}: no trip type {}", stop.stopId, stop.tripType)
               : fmt::format(
                     "{}: trip type {} is on run {}; to take it from there, find it by "
                     "Search Trip Types",
                     stop.stopId, stop.tripType, base::trim(stop.run));
}

std::size_t rowOf(int row) { return static_cast<std::size_t>(row); }

std::string nameOf(const TextTable& stops, std::size_t row) {
    const auto address = stops.text(row, "ADDR1");
    return stops.text(row, "STOPID") +
           (base::trim(address).empty() ? "" : fmt::format(", {}", base::trim(address)));
}

std::string whatBoards(const TextTable& stops, std::size_t row) {
    const auto description = stops.text(row, "DESCRIPTION");
    const auto passengers = stops.text(row, "NUM_STUDENTS");
    return fmt::format("{}{}{} passenger{}", base::trim(description),
                       base::trim(description).empty() ? "" : ", ",
                       passengers == "0" ? "no" : passengers, passengers == "1" ? "" : "s");
}

std::string said(std::string_view done, std::size_t count) {
    return fmt::format("{} {} {}.", count, count == 1 ? "stop" : "stops", done);
}

void tell(const std::string& text, std::string_view title, const std::string& concerns = {}) {
    base::MsgBox({.text = text,
                  .title = std::string(title),
                  .icon = base::MsgIcon::Information,
                  .concerns = concerns});
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

std::string questionBeforeRemoving(const TextTable& stops, std::span<const int> rows) {
    return rows.size() == 1
               ? fmt::format("Are you sure you want to take the stop {} off this run?",
                             stops.text(rowOf(rows[0]), "STOPID"))
               : fmt::format("Are you sure you want to take {} stops off this run?", rows.size());
}

std::string removalConcerns(const TextTable& stops, std::span<const int> rows,
                            std::string_view run) {
    if (rows.size() == 1) {
        const auto row = rowOf(rows[0]);
        return fmt::format("{}\n{}\nStop {} of {} on run {}", nameOf(stops, row),
                           whatBoards(stops, row), row + 1, stops.rowCount(), run);
    }
    return listed(
        rows, [&](int row) { return fmt::format("{}: {}", row + 1, nameOf(stops, rowOf(row))); });
}

void tellOfSkipped(const AddedStops& added) {
    if (added.runIsGone) {
        tell(RunGoneText, RunGoneTitle);
    }
    if (!added.withoutTripType.empty()) {
        tell(std::string(NoTripTypeText), NoTripTypeTitle,
             listed(added.withoutTripType, whyNoTripType));
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
    if (changed.placeIsGone) {
        tell(PlaceGoneText, ChangedTitle);
    }
    if (!changed.changedByAnother.empty()) {
        tell(fmt::format("Oops, another user has taken {} of the stops you selected off this run "
                         "since they were listed.  The list now shows the run as it is.",
                         changed.changedByAnother.size()),
             ChangedTitle);
    }
}

std::string resultOf(const AddedStops& added) {
    auto text = said("added", added.stopTripIds.size());
    if (const auto skipped = added.withoutTripType.size() + added.changedByAnother.size();
        skipped > 0) {
        text += fmt::format("  {} not added.", skipped);
    }
    if (!added.takenFrom.empty()) {
        text += fmt::format("  Taken from run {}.", fmt::join(added.takenFrom, ", "));
    }
    return text;
}

std::string resultOf(const ChangedStops& changed, std::string_view done) {
    return said(done, changed.stopTripIds.size()) +
           (changed.equallyNumbered.empty()
                ? ""
                : "  Two stops have the same number: To Top or To Bottom numbers the run anew.");
}

}  // namespace stops
