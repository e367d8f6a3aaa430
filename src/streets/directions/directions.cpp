#include "streets/directions/directions.h"

#include <cmath>

#include <fmt/format.h>

#include "platform/base/notcopied.h"
#include "platform/base/value.h"
#include "streets/directions/drives.h"
#include "streets/directions/sentences.h"

namespace streets {

namespace {

constexpr double NoDistance = 1;  // feet
constexpr double NotDriven = 25;  // feet from a stop to a turn that nobody needs to be told
constexpr double LandmarkFeet = 2 * FeetPerMile;
const std::string Skip = "SKIP";
constexpr auto Crossing = "Railroad crossing, stop and look";

std::string milesText(double miles) { return base::numberText(std::round(miles * 100) / 100); }

/// Start, stops and total; what is between them is told by those who derive.
class DirectionWriter : private base::NotCopied {
public:
    explicit DirectionWriter(const DirectedRun& run) : run_(run) {}
    virtual ~DirectionWriter() = default;

    std::vector<DirectionLine> write() {
        for (std::size_t i = 0; i < run_.stops.size(); ++i) {
            if (i == 0) {
                start();
            } else if (run_.stops[i].way != nullptr) {
                leadTo(i, *run_.stops[i].way);
            }
            if (!run_.stops[i].passed) {
                stopAt(i);
            }
        }
        if (!lines_.empty()) {
            total();
        }
        return std::move(lines_);
    }

protected:
    virtual void leadTo(std::size_t stop, const Leg& way) = 0;

    void add(DirectionLine line) { lines_.push_back(std::move(line)); }
    void addLandmark(std::size_t stop) { add({stop, "Landmark", Crossing, Skip, "Crossing", ""}); }
    [[nodiscard]] const DirectedRun& run() const { return run_; }

private:
    void start() {
        const DirectedStop& stop = run_.stops.front();
        add({0, "Start", fmt::format("Start at {}", stop.address), Skip,
             fmt::format("Start {}", stop.stopId), ""});
    }

    void stopAt(std::size_t place) {
        const DirectedStop& stop = run_.stops[place];
        std::string text = fmt::format("Stop {} at {}", stop.stopId, stop.address);
        if (stop.students > 0) {
            text += fmt::format(": {} {}", stop.students, run_.pickup ? "board" : "leave");
        }
        add({place, "Stop", std::move(text), stop.time ? stop.time->hhmm() : Skip,
             fmt::format("Stop {}", stop.stopId), ""});
    }

    void total() {
        add({run_.stops.size() - 1, "Total", "Total",
             fmt::format("{} miles, {} minutes", milesText(run_.miles),
                         base::numberText(run_.minutes)),
             "Total", milesText(run_.miles)});
    }

    const DirectedRun& run_;
    std::vector<DirectionLine> lines_;
};

class BlockWriter : public DirectionWriter {
public:
    using DirectionWriter::DirectionWriter;

private:
    void leadTo(std::size_t stop, const Leg& way) override {
        for (const Stretch& stretch : way.stretches) {
            if (stretch.feet >= NoDistance) {
                drive(stop, stretch);
            }
        }
    }

    void drive(std::size_t stop, const Stretch& stretch) {
        const double turned = heading_ ? std::remainder(stretch.headingIn - *heading_, 360.0) : 0;
        const auto heading = headingName(stretch.headingIn);
        const auto miles = milesText(stretch.feet / FeetPerMile);
        if (std::abs(turned) == 180) {
            add({stop, "Turn Back", fmt::format("Turn back on {}", stretch.name), Skip, "Turn back",
                 ""});
        }
        const auto* turn = turned == -90  ? "Turn left onto "
                           : turned == 90 ? "Turn right onto "
                                          : "Follow ";
        add({stop, "Direction", fmt::format("{}{}, go {}", turn, stretch.name, heading),
             miles + " miles", fmt::format("{} {}", heading, stretch.name), miles});
        if (stretch.feet > LandmarkFeet) {
            addLandmark(stop);
        }
        heading_ = stretch.headingIn;
    }

    std::optional<double> heading_;
};

class StreetWriter : public DirectionWriter {
public:
    using DirectionWriter::DirectionWriter;

private:
    /// What leads past turn points is told as one way.
    void leadTo(std::size_t stop, const Leg& way) override {
        stretches_.insert(stretches_.end(), way.stretches.begin(), way.stretches.end());
        const bool isLast = stop + 1 == run().stops.size();
        if (run().stops[stop].passed && !isLast) {
            return;
        }
        auto drives = drivesOf(stretches_);
        stretches_.clear();
        leaveOutShortBegin(drives);
        for (const Drive& drive : drives) {
            tell(stop, drive);
        }
    }

    void leaveOutShortBegin(std::vector<Drive>& drives) const {
        const bool isShort = drives.size() > 1 && drives.front().feet < NotDriven && goesOn_ &&
                             drives[1].approach != Approach::TurnBack;
        if (isShort) {
            drives[1].feet += drives.front().feet;
            drives.erase(drives.begin());
        }
    }

    void tell(std::size_t stop, const Drive& drive) {
        if (drive.feet < NoDistance && drive.approach == Approach::Begin) {
            return;
        }
        if (drive.approach == Approach::TurnBack) {
            add({stop, "Turn Back", turnBackSentence(drive), Skip, "Turn back", ""});
        }
        add({stop, "Direction", sentenceOf(drive, goesOn_), wayLength(drive.feet),
             shortSentenceOf(drive), milesText(drive.feet / FeetPerMile)});
        for (int i = 0; i < drive.crossings; ++i) {
            addLandmark(stop);
        }
        goesOn_ = true;
    }

    std::vector<Stretch> stretches_;
    bool goesOn_ = false;
};

}  // namespace

std::vector<DirectionLine> directionsOf(const DirectedRun& run, Wording wording) {
    if (wording == Wording::Blocks) {
        return BlockWriter(run).write();
    }
    return StreetWriter(run).write();
}

}  // namespace streets
