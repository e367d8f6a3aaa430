#include "tools/district/make/plan.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/base/error.h"
#include "platform/base/text.h"

namespace tools::district {

namespace {

/// One line of a file, cut into cells without their quotes.
class Line {
public:
    Line(std::string_view text, char separator) {
        while (true) {
            const auto end = text.find(separator);
            cells_.push_back(unquoted(base::trim(text.substr(0, end))));
            if (end == std::string_view::npos) {
                return;
            }
            text.remove_prefix(end + 1);
        }
    }

    [[nodiscard]] std::string_view text(std::size_t cell) const { return cells_.at(cell); }
    [[nodiscard]] double number(std::size_t cell) const { return parsed<double>(text(cell)); }
    [[nodiscard]] int whole(std::size_t cell) const { return parsed<int>(text(cell)); }

    /// "510" is 5:10; in seconds.
    [[nodiscard]] std::int64_t clock(std::size_t cell) const {
        const int value = whole(cell);
        return std::int64_t{value / 100} * 3600 + std::int64_t{value % 100} * 60;
    }

    /// "03:19:11.888", in milliseconds.
    [[nodiscard]] std::int64_t milliseconds(std::size_t cell) const {
        const auto value = text(cell);
        const auto hours = parsed<std::int64_t>(value.substr(0, 2));
        const auto minutes = parsed<std::int64_t>(value.substr(3, 2));
        return (hours * 60 + minutes) * 60'000 +
               std::llround(parsed<double>(value.substr(6)) * 1000);
    }

private:
    static std::string_view unquoted(std::string_view cell) {
        const bool quoted = cell.size() >= 2 && cell.front() == '"' && cell.back() == '"';
        return quoted ? cell.substr(1, cell.size() - 2) : cell;
    }

    template <class Number>
    static Number parsed(std::string_view cell) {
        Number value{};
        if (std::from_chars(cell.data(), cell.data() + cell.size(), value).ec != std::errc{}) {
            base::raise(base::errors::TypeMismatch);
        }
        return value;
    }

    std::vector<std::string_view> cells_;
};

/// Every line behind the header.
template <class Each>
void eachLine(std::string_view text, char separator, const Each& each) {
    for (bool isHeader = true; !text.empty(); isHeader = false) {
        const auto end = std::min(text.find('\n'), text.size());
        auto one = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        one.remove_suffix(one.ends_with('\r') ? 1 : 0);
        if (!isHeader && !base::trim(one).empty()) {
            each(Line(one, separator));
        }
    }
}

/// Cuts each bus's legs into runs at its dead-heads.
std::vector<PlanRun> runsOf(const std::vector<PlanLeg>& legs) {
    std::vector<PlanRun> runs;
    bool isOpen = false;
    for (const PlanLeg& leg : legs) {
        if (leg.action == "deadhead") {
            isOpen = false;
        } else if (leg.action == "pickup") {
            const bool isSameBus = !runs.empty() && runs.back().bus == leg.bus;
            if (!isOpen || !isSameBus) {
                const int ordinal = isSameBus ? runs.back().ordinal + 1 : 1;
                runs.push_back({.bus = leg.bus, .ordinal = ordinal, .pickups = {}, .school = {}});
                isOpen = true;
            }
            runs.back().pickups.push_back({leg.from, leg.start});
        } else if (leg.action == "dropoff") {
            runs.back().school = {leg.from, leg.start};
        }
    }
    return runs;
}

template <class Items>
const auto& withId(const Items& items, int id) {
    const auto found =
        std::ranges::lower_bound(items, id, {}, [](const auto& one) { return one.id; });
    if (found == items.end() || found->id != id) {
        base::raise(base::errors::SubscriptOutOfRange);
    }
    return *found;
}

}  // namespace

const PlanSchool& Plan::school(int id) const { return withId(schools, id); }

const PlanStop& Plan::stop(int id) const { return withId(stops, id); }

Plan readPlan(const PlanFiles& files) {
    Plan plan;
    eachLine(files.schools, '\t', [&](const Line& line) {
        plan.schools.push_back({line.whole(0), {line.number(1), line.number(2)}, line.clock(4)});
    });
    eachLine(files.stops, '\t', [&](const Line& line) {
        plan.stops.push_back(
            {line.whole(0), {line.number(1), line.number(2)}, line.whole(3), line.whole(4)});
    });
    eachLine(files.plan, ',', [&](const Line& line) {
        plan.legs.push_back({line.whole(0), line.whole(1), line.whole(2), std::string(line.text(3)),
                             line.milliseconds(4), line.milliseconds(5)});
    });
    std::ranges::sort(plan.schools, {}, &PlanSchool::id);
    std::ranges::sort(plan.stops, {}, &PlanStop::id);
    plan.runs = runsOf(plan.legs);
    return plan;
}

}  // namespace tools::district
