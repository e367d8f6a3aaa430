#include "tools/district/travel/directions.h"

#include <array>
#include <cmath>

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "platform/base/value.h"
#include "tools/district/travel/travel.h"

namespace tools::district {

namespace {

constexpr double NoDistance = 1;  // feet
const std::string Skip = "SKIP";

enum class Heading { None, East, North, West, South };

std::string_view nameOf(Heading heading) {
    constexpr std::array<std::string_view, 5> Names = {"", "east", "north", "west", "south"};
    return Names[static_cast<std::size_t>(heading)];
}

int quarter(Heading heading) { return static_cast<int>(heading) - 1; }

bool opposite(Heading a, Heading b) {
    return a != Heading::None && b != Heading::None && (quarter(a) + 2) % 4 == quarter(b);
}

bool leftOf(Heading before, Heading after) { return (quarter(before) + 1) % 4 == quarter(after); }

std::string milesText(double miles) { return base::numberText(std::round(miles * 100) / 100); }

class DirectionWriter {
public:
    explicit DirectionWriter(const Run& run) : run_(run) {}

    std::vector<DirectionLine> write() {
        for (const Visit& visit : run_.visits) {
            if (lines_.empty()) {
                start(visit);
            } else {
                leadTo(visit);
            }
            if (visit.stop->type != data::stoptype::Directional) {
                stopAt(visit);
            }
        }
        if (!lines_.empty()) {
            total();
        }
        return std::move(lines_);
    }

private:
    void add(const Stop& stop, std::string_view type, std::string text1, std::string text2,
             std::string shortText, std::string shortDistance) {
        lines_.push_back({&stop, type, std::move(text1), std::move(text2), std::move(shortText),
                          std::move(shortDistance)});
    }

    void start(const Visit& visit) {
        add(*visit.stop, "Start", "Start at " + visit.stop->address, Skip,
            "Start " + visit.stop->stopId, "");
        if (visit.stop->placed) {
            here_ = visit.stop;
        }
    }

    void leadTo(const Visit& visit) {
        if (!visit.stop->placed) {
            return;
        }
        if (here_ != nullptr) {
            const Point from = here_->at;
            const Point to = visit.stop->at;
            drive(*visit.stop, to.x > from.x ? Heading::East : Heading::West, streetName(from.y),
                  std::abs(to.x - from.x));
            drive(*visit.stop, to.y > from.y ? Heading::North : Heading::South, avenueName(to.x),
                  std::abs(to.y - from.y));
        }
        here_ = visit.stop;
    }

    void drive(const Stop& towards, Heading heading, const std::string& road, double feet) {
        if (feet < NoDistance) {
            return;
        }
        const std::string miles = milesText(feet / FeetPerMile);
        if (opposite(heading_, heading)) {
            add(towards, "Turn Back", "Turn back on " + road, Skip, "Turn back", "");
        }
        add(towards, "Direction", fmt::format("{}{}, go {}", turn(heading), road, nameOf(heading)),
            miles + " miles", fmt::format("{} {}", nameOf(heading), road), miles);
        if (feet > 2 * FeetPerMile) {
            add(towards, "Landmark", "Railroad crossing, stop and look", Skip, "Crossing", "");
        }
        heading_ = heading;
    }

    [[nodiscard]] std::string_view turn(Heading heading) const {
        if (heading_ == Heading::None || heading_ == heading || opposite(heading_, heading)) {
            return "Follow ";
        }
        return leftOf(heading_, heading) ? "Turn left onto " : "Turn right onto ";
    }

    void stopAt(const Visit& visit) {
        std::string text = fmt::format("Stop {} at {}", visit.stop->stopId, visit.stop->address);
        if (visit.students > 0) {
            text += fmt::format(": {} {}", visit.students, run_.pickup ? "board" : "leave");
        }
        add(*visit.stop, "Stop", std::move(text), visit.time ? visit.time->hhmm() : Skip,
            "Stop " + visit.stop->stopId, "");
    }

    void total() {
        add(*run_.visits.back().stop, "Total", "Total",
            fmt::format("{} miles, {} minutes", milesText(run_.totalMiles),
                        base::numberText(run_.totalMinutes)),
            "Total", milesText(run_.totalMiles));
    }

    const Run& run_;
    std::vector<DirectionLine> lines_;
    const Stop* here_ = nullptr;
    Heading heading_ = Heading::None;
};

}  // namespace

std::vector<DirectionLine> directionsOf(const Run& run) { return DirectionWriter(run).write(); }

}  // namespace tools::district
