#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <thread>

#include "stopsdistrict.h"

namespace stops {

namespace {

using Ids = std::vector<std::int64_t>;

/// What the run should hold: record keys in order, kept without sequence numbers.
class Model {
public:
    void add(const Ids& records) {
        for (const auto id : records) {
            std::erase(order, id);
            order.push_back(id);
        }
    }
    void remove(const Ids& records) {
        std::erase_if(order, [&](auto id) { return contains(records, id); });
    }
    void move(std::int64_t id, Move move) {
        const auto place = std::find(order.begin(), order.end(), id);
        const auto first = order.begin();
        const auto last = order.end() - 1;
        switch (move) {
            case Move::ToTop:
                std::rotate(first, place, place + 1);
                break;
            case Move::ToBottom:
                std::rotate(place, place + 1, order.end());
                break;
            case Move::Up:
                std::iter_swap(place, place == first ? place : place - 1);
                break;
            case Move::Down:
                std::iter_swap(place, place == last ? place : place + 1);
                break;
        }
    }
    static bool contains(const Ids& records, std::int64_t id) {
        return std::find(records.begin(), records.end(), id) != records.end();
    }

    Ids order;
};

class RandomActions : public StopsDistrict {
protected:
    std::size_t below(std::size_t limit) { return random_() % limit; }

    Ids someOf(Ids from) {
        std::shuffle(from.begin(), from.end(), random_);
        from.resize(std::min(from.size(), 1 + below(3)));
        return from;
    }

    void addSome() {
        std::vector<ChosenStop> stops;
        for (const auto stop : someOf({1, 2, 3, 4, 5, 6, 7, 8})) {
            auto row = chosen(static_cast<int>(stop));
            row.run = Model::contains(model_.order, row.stopTripId) ? "R1" : "";
            stops.push_back(row);
        }
        const auto added = addStops(connection, run, stops);
        model_.add(added.stopTripIds);
        logged_ += added.stopTripIds.size();
        EXPECT_TRUE(added.changedByAnother.empty());
        for (const auto& stop : stops) {
            puts_[stop.intStopId] += isSharedPlace(stop.stopType) ? 1 : 0;
        }
    }

    void removeSome() {
        const auto chosenOnes = someOf(model_.order);
        EXPECT_EQ(removeStops(connection, run, chosenOnes).stopTripIds.size(), chosenOnes.size());
        model_.remove(chosenOnes);
        logged_ += chosenOnes.size();
        for (std::size_t i = 0; i < model_.order.size(); ++i) {
            EXPECT_EQ(readRunStops(connection, "R1")[i].sequence, static_cast<std::int64_t>(i));
        }
    }

    void moveOne() {
        const auto id = model_.order[below(model_.order.size())];
        const auto move = static_cast<Move>(below(4));
        const bool blocked = (move == Move::Up && id == model_.order.front()) ||
                             (move == Move::Down && id == model_.order.back());
        EXPECT_EQ(moveStops(connection, run, Ids{id}, move).stopTripIds.empty(), blocked);
        model_.move(id, move);
        logged_ += blocked ? 0 : 1;
    }

    void compare() {
        Ids order;
        std::map<std::int64_t, int> times;
        std::int64_t former = -1;
        for (const auto& stop : readRunStops(connection, "R1")) {
            order.push_back(stop.stopTripId);
            ++times[stop.intStopId];
            EXPECT_LT(former, stop.sequence);
            former = stop.sequence;
        }
        EXPECT_EQ(order, model_.order);
        for (const auto& [stop, count] : times) {
            EXPECT_LE(count, std::max(1, puts_[stop])) << "stop " << stop;
        }
        EXPECT_EQ(rows("SELECT ID FROM RUNLOG").size(), logged_);
        EXPECT_EQ(shown("R2"), "S9:0");
        EXPECT_EQ(rows("SELECT ID FROM STOP_TRIPTYPE WHERE INT_STOPID<6").size(), 5U);
    }

    std::mt19937 random_;  // NOLINT(cert-msc51-cpp): the same sequences each time
    Model model_;
    std::map<std::int64_t, int> puts_;
    std::size_t logged_ = 0;
};

TEST_F(RandomActions, LeaveTheOrderShownTheRecordsAndTheLogAsTheyWereMade) {
    for (int step = 0; step < 600 && !HasFailure(); ++step) {
        SCOPED_TRACE(step);
        if (model_.order.empty() || below(4) == 0) {
            addSome();
        } else if (below(3) == 0) {
            removeSome();
        } else {
            moveOne();
        }
        compare();
    }
}

/// A planner's program that puts free stops on its run and takes them off, by lists that the other
/// one makes stale.
void workOn(const std::string& path, const EditedRun& run, unsigned seed, std::size_t& changed) {
    ado::Connection connection;
    connection.Open(path);
    std::mt19937 random(seed);
    for (int step = 0; step < 80; ++step) {
        std::vector<ChosenStop> listed;
        ado::Recordset free;
        free.Open("SELECT ID, INT_STOPID FROM STOP_TRIPTYPE WHERE RUN=' ' OR RUN Is Null",
                  connection);
        for (; !free.Eof(); free.MoveNext()) {
            listed.push_back({.intStopId = free["INT_STOPID"].asInteger(),
                              .stopId = "S" + free["INT_STOPID"].asText(),
                              .stopType = "REGULAR",
                              .stopTripId = free["ID"].asInteger(),
                              .tripType = "AM",
                              .run = " "});
        }
        free.Close();
        const auto onRun = readRunStops(connection, run.run);
        std::this_thread::yield();
        if (random() % 2 == 0 && !listed.empty()) {
            changed += addStops(connection, run, listed).stopTripIds.size();
        } else if (!onRun.empty()) {
            const Ids one{onRun[random() % onRun.size()].stopTripId};
            changed += removeStops(connection, run, one).stopTripIds.size();
        }
    }
}

TEST_F(StopsDistrict, TwoProgramsNeverTakeAStopFromEachOther) {
    const auto path = district.path(data::DatabaseFile::Routing);
    std::array<std::size_t, 2> changed{};
    std::thread other([&] { workOn(path, {"R2", "AM", "SAM"}, 1, changed[1]); });
    workOn(path, run, 2, changed[0]);
    other.join();

    std::map<std::string, std::string> runOf{{"S9", "R2"}};
    const auto log = rows("SELECT StopID, RUNID, ACTIVITYCODE FROM RUNLOG ORDER BY ID");
    EXPECT_EQ(log.size(), changed[0] + changed[1]);
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
