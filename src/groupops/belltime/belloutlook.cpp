#include "groupops/belltime/belloutlook.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include <fmt/format.h>

#include "platform/base/text.h"

namespace groupops {

namespace {

using Verdict = RunForecast::Verdict;

/// "1 run", "18 of 27 runs".
std::string shareOf(int count, int all) {
    return count == all ? countOf(static_cast<std::size_t>(count), "run")
                        : fmt::format("{} of {} runs", count, all);
}

/// What the choice of the end to calculate from has to do with it.
std::string causeOf(const BellMethod& method, const char* runs, const char* side) {
    const auto* is = method.fromEnd ? "ends" : "starts";
    const auto* would = method.fromEnd ? "start" : "end";
    return method.gap == BellMethod::Gap::FixedMinutes
               ? fmt::format(
                     "Calculated from {} Time, a run {} {} {} minutes {} the bell; "
                     "calculated from {} Time it would {} then",
                     method.fromEnd ? "End" : "Start", runs, is, method.minutes, side,
                     method.fromEnd ? "Start" : "End", would)
               : fmt::format(
                     "Calculated from {} Time, a run {} {} when it should {}; calculated "
                     "from {} Time it would {} then",
                     method.fromEnd ? "End" : "Start", runs, is, would,
                     method.fromEnd ? "Start" : "End", would);
}

std::string namesOf(const std::vector<RunForecast>& runs) {
    constexpr std::size_t Shown = 5;
    const auto text =
        base::joined(std::span(runs).first(std::min(Shown, runs.size())), "; ",
                     [](const auto& run) { return fmt::format("{}: {}", run.run, run.why); });
    return text + (runs.size() > Shown ? fmt::format("; and {} more.", runs.size() - Shown) : ".");
}

}  // namespace

BellOutlook outlookOf(const std::vector<GroupForecast>& groups) {
    BellOutlook outlook{.rows = static_cast<int>(groups.size())};
    for (const GroupForecast& group : groups) {
        const int left = group.count(Verdict::LeftOut);
        outlook.changing += group.runs.empty() ? 0 : 1;
        outlook.runs += static_cast<int>(group.runs.size()) - left;
        outlook.late += group.count(Verdict::Late);
        outlook.early += group.count(Verdict::Early);
        std::ranges::copy_if(
            group.runs, std::back_inserter(outlook.leftOut),
            [](const RunForecast& run) { return run.verdict == Verdict::LeftOut; });
    }
    return outlook;
}

std::string countText(const BellOutlook& outlook) {
    return outlook.changing == 0
               ? std::string("No row has a new bell time yet.")
               : fmt::format("{} in {} of {} will change.",
                             countOf(static_cast<std::size_t>(outlook.runs), "run"),
                             outlook.changing,
                             countOf(static_cast<std::size_t>(outlook.rows), "row"));
}

std::vector<BellWarning> warningsOf(const BellOutlook& outlook, const BellMethod& method,
                                    const BellOutlook& other) {
    std::vector<BellWarning> warnings;
    if (outlook.late > 0) {
        warnings.push_back(
            {shareOf(outlook.late, outlook.runs) + " will arrive after their bell.",
             !method.fromEnd && other.late == 0
                 ? causeOf(method, "to school", "before") + ", and none would be late."
                 : ""});
    }
    if (outlook.early > 0) {
        warnings.push_back({shareOf(outlook.early, outlook.runs) + " will start before their bell.",
                            method.fromEnd && other.early == 0
                                ? causeOf(method, "home", "after") + ", and none would be early."
                                : ""});
    }
    if (!outlook.leftOut.empty()) {
        warnings.push_back({countOf(outlook.leftOut.size(), "run") + " will be left as they are.",
                            namesOf(outlook.leftOut)});
    }
    return warnings;
}

std::string restText(const BellOutlook& outlook) {
    if (outlook.changing == 0) {
        return {};
    }
    const std::string late = outlook.late == 0 ? "No run arrives after its bell.  " : "";
    const std::string early = outlook.early == 0 ? "No run leaves school before the bell.  " : "";
    return late + early + "There is no undo.";
}

std::string shortText(const BellOutlook& outlook) {
    if (outlook.changing == 0) {
        return {};
    }
    std::string text = countOf(static_cast<std::size_t>(outlook.runs), "run") + " will change";
    text += outlook.late > 0 ? fmt::format(", {} arrive after their bell", outlook.late) : "";
    text += outlook.early > 0 ? fmt::format(", {} start before it", outlook.early) : "";
    return text;
}

std::string judgementText(const GroupForecast& group) {
    const auto all = group.runs.size();
    const int late = group.count(Verdict::Late);
    const int early = group.count(Verdict::Early);
    const int left = group.count(Verdict::LeftOut);
    if (late > 0 && early > 0) {
        return fmt::format("{} late, {} early", late, early);
    }
    return late > 0    ? fmt::format("{} of {} late", late, all)
           : early > 0 ? fmt::format("{} of {} early", early, all)
           : left > 0  ? fmt::format("{} of {} left out", left, all)
                       : "none late";
}

std::string againstBellText(const RunForecast& run) {
    if (run.verdict == Verdict::LeftOut) {
        return "stays";
    }
    if (run.secondsAfterBell == 0) {
        return "at the bell";
    }
    const auto seconds = std::abs(run.secondsAfterBell);
    const auto* side = run.secondsAfterBell > 0 ? "after" : "before";
    return seconds < 60 ? fmt::format("{} sec {}", seconds, side)
                        : fmt::format("{} min {}", seconds / 60, side);
}

}  // namespace groupops
