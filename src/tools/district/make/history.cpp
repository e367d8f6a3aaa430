#include "tools/district/make/history.h"

#include <array>

#include "data/schema/schema.h"
#include "stops/sequence/stoplog.h"
#include "tools/district/make/codes.h"
#include "tools/district/make/random.h"

namespace tools::district {

namespace {

constexpr std::int64_t LogDays = 1095;
constexpr std::int64_t OpensAt = 25'200;  // 7 in the morning
constexpr std::int64_t OpenSeconds = 36'000;

std::vector<const Run*> runsWithStops(const District& district) {
    std::vector<const Run*> runs;
    for (const Run& run : district.runs) {
        if (!run.visits.empty()) {
            runs.push_back(&run);
        }
    }
    return runs;
}

/// The i-th of `count` moments, within office hours and rising with i.
base::Date momentOf(const District& district, std::int64_t i) {
    const base::Date first =
        district.asOf.dateValue().plusSeconds(-LogDays * base::Date::SecondsPerDay);
    const std::int64_t second = i * LogDays * OpenSeconds / district.logEntries;
    return first.plusSeconds(second / OpenSeconds * base::Date::SecondsPerDay + OpensAt +
                             second % OpenSeconds);
}

int activityOf(std::size_t roll) {
    return roll < 55   ? data::activity::Added
           : roll < 70 ? data::activity::Removed
           : roll < 94 ? data::activity::Moved
                       : data::activity::Merged;
}

std::string moved(const Visit& visit, Random& random) {
    constexpr std::array Ways = {"up to top", "up one", "down one"};
    const std::size_t way = random.below(visit.sequence > 1 ? 3 : 2);
    return stops::movedText(visit.stop->stopId, Ways[way], visit.sequence + (way == 2 ? -1 : 1),
                            way == 0 ? 1 : visit.sequence);
}

std::string describe(const LogEntry& entry, const Run& other, Random& random) {
    const Visit& visit = *entry.visit;
    switch (entry.activity) {
        case data::activity::Added:
            return stops::addedText(visit.stop->stopId, visit.sequence);
        case data::activity::Removed:
            return stops::removedText(visit.stop->stopId, visit.sequence);
        case data::activity::Merged:
            return stops::mergedText(entry.run->id, static_cast<std::int64_t>(1 + random.below(9)),
                                     other.id, visit.sequence);
        default:
            return moved(visit, random);
    }
}

}  // namespace

void tellHistory(const District& district, const std::function<void(const LogEntry&)>& each) {
    const auto runs = runsWithStops(district);
    if (runs.empty()) {
        return;
    }
    Random random(district.seed + 1);
    for (std::int64_t i = 0; i < district.logEntries; ++i) {
        LogEntry entry;
        entry.run = random.pick(runs);
        entry.visit = &random.pick(entry.run->visits);
        entry.date = momentOf(district, i);
        entry.user = random.chance(70)   ? user::Planner
                     : random.chance(70) ? user::Clerk
                                         : user::BuiltIn;
        entry.activity = activityOf(random.below(100));
        entry.description = describe(entry, *random.pick(runs), random);
        each(entry);
    }
}

}  // namespace tools::district
