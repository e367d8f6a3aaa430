#include <algorithm>
#include <future>
#include <map>
#include <random>
#include <thread>

#include "stopsdistrict.h"

namespace stops {

namespace {

using Ids = std::vector<std::int64_t>;

class RandomActions : public StopsDistrict {
protected:
    std::size_t below(std::size_t limit) { return random_() % limit; }
    bool isOnRun(std::int64_t id) { return std::ranges::find(order_, id) != order_.end(); }

    Ids someOf(Ids from) {
        std::shuffle(from.begin(), from.end(), random_);
        from.resize(std::min(from.size(), 1 + below(3)));
        return from;
    }

    void addSome() {
        std::vector<ChosenStop> stops;
        for (const auto stop : someOf({1, 2, 3, 4, 5, 6, 7, 8})) {
            auto& row = stops.emplace_back(chosen(static_cast<int>(stop)));
            row.run = isOnRun(row.stopTripId) ? "R1" : "";
        }
        for (const auto id : addStops(connection, run, stops).stopTripIds) {
            put(id, std::ssize(order_));
            ++logged_;
        }
    }

    void removeSome() {
        const auto some = someOf(order_);
        EXPECT_EQ(removeStops(connection, run, some).stopTripIds.size(), some.size());
        std::erase_if(order_, [&](auto id) { return std::ranges::count(some, id) > 0; });
        logged_ += some.size();
        EXPECT_TRUE(order_.empty() || readRunStops(connection, "R1")[0].sequence == 0);
    }

    void moveOne() {
        const auto from = below(order_.size());
        const auto id = order_[from];
        const auto i = static_cast<std::ptrdiff_t>(from);
        const std::ptrdiff_t places[] = {0, std::ssize(order_) - 1, i - 1, i + 1};
        const auto move = below(5);
        const auto before = below(order_.size());
        const bool stays = move == 4 ? before == from || before == from + 1
                                     : places[move] < 0 || places[move] == std::ssize(order_);
        const auto moved = move == 4 ? placeStops(connection, run, Ids{id}, order_[before])
                                     : moveStops(connection, run, Ids{id}, static_cast<Move>(move));
        EXPECT_EQ(moved.stopTripIds.empty(), stays);
        const auto place = static_cast<std::ptrdiff_t>(before) - (before > from ? 1 : 0);
        put(id, stays ? i : move == 4 ? place : places[move]);
        logged_ += stays ? 0 : 1;
    }

    void compare() {
        Ids order;
        std::int64_t former = -1;
        for (const auto& stop : readRunStops(connection, "R1")) {
            order.push_back(stop.stopTripId);
            EXPECT_LT(former, stop.sequence);
            former = stop.sequence;
        }
        EXPECT_EQ(order, order_);
        EXPECT_EQ(rows("SELECT ID FROM RUNLOG").size(), logged_);
        EXPECT_EQ(shown("R2"), "S9:0");
        EXPECT_EQ(rows("SELECT ID FROM STOP_TRIPTYPE WHERE INT_STOPID<6").size(), 5U);
    }

    void put(std::int64_t id, std::ptrdiff_t place) {
        std::erase(order_, id);
        order_.insert(order_.begin() + std::min(place, std::ssize(order_)), id);
    }

    std::mt19937 random_;  // NOLINT(cert-msc51-cpp): the same sequences each time
    Ids order_;            ///< of the records that the run should hold
    std::size_t logged_ = 0;
};

TEST_F(RandomActions, LeaveTheOrderShownTheRecordsAndTheLogAsTheyWereMade) {
    for (int step = 0; step < 600 && !HasFailure(); ++step) {
        SCOPED_TRACE(step);
        if (order_.empty() || below(4) == 0) {
            addSome();
        } else if (below(3) == 0) {
            removeSome();
        } else {
            moveOne();
        }
        compare();
    }
}

class TwoPrograms : public StopsDistrict {
protected:
    /// A planner's program that works by lists which the other one makes stale; how many stops it
    /// changed.
    static std::size_t workOn(const std::string& path, const EditedRun& run, unsigned seed) {
        ado::Connection connection;
        connection.Open(path);
        std::mt19937 random(seed);
        std::size_t changed = 0;
        for (int step = 0; step < 80; ++step) {
            std::vector<ChosenStop> listed;
            for (const auto& id : support::rowsOf(
                     "SELECT ID FROM STOP_TRIPTYPE WHERE RUN=' ' OR RUN Is Null", connection)) {
                listed.emplace_back(chosen(std::stoi(id))).run = " ";
            }
            const auto onRun = readRunStops(connection, run.run);
            std::this_thread::yield();
            if (random() % 2 == 0 && !listed.empty()) {
                changed += addStops(connection, run, listed).stopTripIds.size();
            } else if (!onRun.empty()) {
                const Ids one{onRun[random() % onRun.size()].stopTripId};
                changed += removeStops(connection, run, one).stopTripIds.size();
            }
        }
        return changed;
    }
};

TEST_F(TwoPrograms, NeverTakeAStopFromEachOther) {
    const auto path = district.path(data::DatabaseFile::Routing);
    auto other = std::async(std::launch::async, [&] {
        return workOn(path, {"R2", "AM", "SAM"}, 1);
    });
    const auto changed = workOn(path, run, 2) + other.get();

    std::map<std::string, std::string> runOf{{"S9", "R2"}};
    const auto log = rows("SELECT StopID, RUNID, ACTIVITYCODE FROM RUNLOG ORDER BY ID");
    EXPECT_EQ(log.size(), changed);
    for (const auto& entry : log) {
        const auto stop = entry.substr(0, 2);
        const auto onRun = entry.substr(3, 2);
        const bool added = entry.back() == '1';
        ASSERT_EQ(runOf[stop], added ? "" : onRun) << entry;
        runOf[stop] = added ? onRun : "";
    }
    for (const auto& [stop, onRun] : runOf) {
        EXPECT_THAT(rows("SELECT RUN FROM STOP_TRIPTYPE WHERE INT_STOPID=" + stop.substr(1)),
                    testing::ElementsAre(onRun.empty() ? " " : onRun));
    }
}

}  // namespace

}  // namespace stops
