// Kills group operations and lets two of them work on one district, for kill-group-operations. The
// operations are the program's own; only their forms are missing.

#include <algorithm>
#include <iostream>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <fmt/format.h>

#include "operations.h"
#include "platform/base/ports.h"
#include "snapshots.h"
#include "workshop.h"

namespace {

using namespace killing;

/// Time stamps are always the same, so that districts can be compared.
class StandingClock : public base::ClockPort {
public:
    [[nodiscard]] base::Date now() const override { return base::Date::of(2026, 1, 31, 8, 5, 9); }
};

/// Says what is wrong and counts it.
class Faults {
public:
    explicit Faults(const Workshop& workshop) : workshop_(workshop) {}

    void add(const std::string& district, std::string_view title, const std::string& fault) {
        ++count_;
        std::cout << fmt::format("FAULT in {}: {}\n  kept as {}\n", title, fault,
                                 workshop_.keep(district));
    }
    /// Units that are torn, and whatever the district's check finds.
    void examine(const std::string& district, std::string_view title, const Reached& reached) {
        if (!reached.torn.empty()) {
            add(district, title,
                fmt::format("{} neither as before nor as after, first of them {}",
                            reached.torn.size(), reached.torn.front()));
        }
        if (const auto found = workshop_.faultsOf(district); !found.empty()) {
            add(district, title, found);
        }
    }
    [[nodiscard]] int count() const { return count_; }

private:
    const Workshop& workshop_;
    int count_ = 0;
};

using Step = void (*)(District&);
using Steps = std::vector<Step>;

/// Makes the district "state" anew and performs steps on it.
void prepare(const Workshop& workshop, const Steps& steps) {
    workshop.renew("state");
    District district(workshop.path("state"));
    for (const Step step : steps) {
        step(district);
    }
}

Snapshot snapshotIn(const Workshop& workshop, const std::string& name, Operation::Unit unit,
                    const Places& places) {
    District district(workshop.path(name));
    return snapshotOf(district, unit, places);
}

Places placesIn(const Workshop& workshop, const std::string& name) {
    District district(workshop.path(name));
    return killing::placesIn(district);
}

/// An operation as it goes undisturbed.
struct Undisturbed {
    std::vector<Snapshot> states;
    Places places;
    std::chrono::microseconds took{};
    std::chrono::microseconds firstStepTook{};
};

std::chrono::microseconds timeOf(const Workshop& workshop, Step step) {
    workshop.renew("state");
    District district(workshop.path("state"));
    const auto begin = std::chrono::steady_clock::now();
    step(district);
    const auto end = std::chrono::steady_clock::now();
    return std::chrono::duration_cast<std::chrono::microseconds>(end - begin);
}

Undisturbed watch(const Workshop& workshop, const Operation& operation) {
    Undisturbed watched;
    watched.took = timeOf(workshop, operation.perform);
    watched.places = placesIn(workshop, "state");
    std::vector<Steps> statesBySteps{{}, {operation.perform}};
    if (operation.firstStep != nullptr) {
        watched.firstStepTook = timeOf(workshop, operation.firstStep);
        statesBySteps.insert(statesBySteps.begin() + 1, {operation.firstStep});
    }
    for (const Steps& steps : statesBySteps) {
        prepare(workshop, steps);
        watched.states.push_back(snapshotIn(workshop, "state", operation.unit, watched.places));
    }
    return watched;
}

/// Any moment of the operation is as likely as any other. Every second time it is one of its first
/// step, which is short.
std::chrono::microseconds moment(const Undisturbed& watched, bool early) {
    static std::mt19937 random(std::random_device{}());
    const auto span =
        early && watched.firstStepTook.count() > 0 ? watched.firstStepTook * 3 / 2 : watched.took;
    return std::chrono::microseconds(
        std::uniform_int_distribution<std::int64_t>(0, span.count())(random));
}

/// Who is killed: the program that performs the operation, or the server.
enum class Victim { Program, Server };

/// Kills in the midst of an operation; how its program came to its end.
Ending endOfKilled(const Workshop& workshop, const Operation& operation, Victim victim,
                   std::chrono::microseconds after) {
    std::optional<ServerKiller> killer;
    if (victim == Victim::Server) {
        killer.emplace(workshop);
    }
    const Performer performer(operation, workshop.path("killed"));
    std::this_thread::sleep_for(after);
    killer ? killer->kill("killed") : performer.kill();
    const Ending ending = performer.wait();
    workshop.settle("killed");
    // A program whose server dies ends with a message.
    return victim == Victim::Server && ending == Ending::Failed ? Ending::Killed : ending;
}

void killEach(const Workshop& workshop, const Operation& operation, Victim victim, int count,
              Faults& faults) {
    const Undisturbed watched = watch(workshop, operation);
    int underWay = 0;
    for (int killed = 0; killed < count;) {
        workshop.renew("killed");
        const Ending ending =
            endOfKilled(workshop, operation, victim, moment(watched, killed % 2 == 0));
        if (ending == Ending::Failed) {
            faults.add("killed", operation.name, "it failed by itself");
            return;
        }
        if (ending == Ending::Finished) {
            continue;
        }
        ++killed;
        const Reached reached =
            compare(snapshotIn(workshop, "killed", operation.unit, watched.places), watched.states);
        underWay += reached.changed > 0 && reached.changed < reached.units ? 1 : 0;
        faults.examine("killed", operation.name, reached);
    }
    std::cout << fmt::format(
        "{}: {} units in {} ms; {} killed {} times, {} of them with some units written\n",
        operation.name, compare(watched.states.front(), watched.states).units,
        watched.took.count() / 1000, victim == Victim::Server ? "server" : "program", count,
        underWay);
}

/// Two operations at once, and what must come out of them.
struct Pair {
    std::string_view first;
    std::string_view second;
    std::vector<std::string_view> finish;    ///< performed afterwards
    std::vector<std::string_view> expected;  ///< these one after the other come to the same
};

const std::vector<Pair> Pairs{
    {"group-change", "bell-change", {}, {"group-change", "bell-change"}},
    {"bell-change", "dead-head", {"dead-head"}, {"bell-change", "dead-head"}},
    {"group-change", "group-change", {}, {"group-change"}},
    {"dead-head", "dead-head", {}, {"dead-head"}},
    {"merge", "merge", {}, {"merge"}},
    {"merge", "dead-head", {}, {"merge", "dead-head"}},
};

Steps stepsOf(const std::vector<std::string_view>& names) {
    Steps steps;
    for (const std::string_view name : names) {
        steps.push_back(operationOf(name).perform);
    }
    return steps;
}

void performBoth(const Workshop& workshop, const Pair& pair, int count, Faults& faults) {
    const auto title = fmt::format("{} beside {}", pair.first, pair.second);
    const Operation& second = operationOf(pair.second);
    prepare(workshop, stepsOf(pair.expected));
    const Places places = placesIn(workshop, "state");
    const Snapshot expected = snapshotIn(workshop, "state", second.unit, places);
    for (int i = 0; i < count; ++i) {
        workshop.renew("both");
        const Performer one(operationOf(pair.first), workshop.path("both"));
        const Performer other(second, workshop.path("both"));
        const bool ended = one.wait() == Ending::Finished;
        if (other.wait() != Ending::Finished || !ended) {
            faults.add("both", title, "one of them did not come to its end");
        }
        {
            District district(workshop.path("both"));
            for (const Step step : stepsOf(pair.finish)) {
                step(district);
            }
        }
        const Reached reached =
            compare(snapshotIn(workshop, "both", second.unit, places), {expected, expected});
        faults.examine("both", title, reached);
    }
    std::cout << fmt::format("{}: {} times\n", title, count);
}

/// Without names: all operations, also with the server killed where there is one, and the pairs.
int run(int count, const std::string& folder, const std::vector<std::string>& names) {
    const Workshop workshop(folder);
    Faults faults(workshop);
    for (const Operation& operation : operations()) {
        if (names.empty() || std::ranges::find(names, operation.name) != names.end()) {
            killEach(workshop, operation, Victim::Program, count, faults);
            if (workshop.isOnServer()) {
                killEach(workshop, operation, Victim::Server, (count + 3) / 4, faults);
            }
        }
    }
    if (names.empty()) {
        for (const Pair& pair : Pairs) {
            performBoth(workshop, pair, (count + 9) / 10, faults);
        }
    }
    std::cout << (faults.count() == 0 ? "No fault.\n"
                                      : fmt::format("{} faults.\n", faults.count()));
    return faults.count() == 0 ? 0 : 1;
}

}  // namespace

int main(int count, char** words) {
    StandingClock clock;
    base::ports().clock = &clock;
    std::cout << std::unitbuf;
    try {
        if (count == 4 && words[1] == std::string("perform")) {
            District district(words[3]);
            operationOf(words[2]).perform(district);
            return 0;
        }
        if (count > 2) {
            return run(std::stoi(words[1]), words[2], {words + 3, words + count});
        }
        std::cerr << "Usage: group-operations COUNT FOLDER [OPERATION...]\n"
                     "       group-operations perform OPERATION DISTRICT\n";
        return 2;
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
}
