#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <optional>
#include <ranges>
#include <string>
#include <utility>
#include <vector>

#include "groupops/base/outcome.h"
#include "platform/ado/connection.h"
#include "platform/base/ports.h"

namespace groupops {

/// The numbers from 1 to `last`, for things that are told by their number.
[[nodiscard]] std::vector<int> numbersTo(int last);

/// Whether a unit that raised this is written as a whole or not at all: so a server ends it where
/// the connection is gone. Any other fault keeps what the unit had written.
[[nodiscard]] bool endedAsAWhole(const std::exception& fault);

/// When a planner reads of one thing's turn: before it, or when it is done.
enum class Telling { Before, Done };

/// An operation on many things of one database, one unit of work each. Between two the progress
/// gets its turn and the planner may stop.
///
/// While another program keeps the database locked, the status says so; after a minute the planner
/// is told what is written and what is not, and asked whether to go on or to stop. A unit that met
/// the lock is done anew, as a whole.
///
/// Nothing is read first.
struct NoReads {
    template <class Item>
    std::vector<std::string> operator()(const Item&) const {
        return {};
    }
};

/// What a unit raises goes on to the caller; before it does, the planner is told what is written
/// and what is not. What the faulty unit has written until then stays, too.
class GroupLoop {
public:
    /// The outcome outlives the loop.
    GroupLoop(ado::Connection& connection, base::ProgressPort& progress, Wording words,
              Outcome& outcome);

    /// Does `unit` for each item. It answers with what was left out and why, or with nothing where
    /// the item is done. `status` gives what is told of an item; the progress is told the percent
    /// of the items. False where the planner stopped. Raises what a unit raises.
    /// `reads` gives statements that the unit of an item opens first, whatever it finds there.
    template <class Items, class Unit, class Status, class Reads = NoReads>
    bool forEach(const Items& items, Unit unit, Status status, Telling telling = Telling::Done,
                 Reads reads = {});

    /// Does one unit of work that is none of the items; false where the planner stopped.
    bool once(const std::function<void()>& work);

    /// Names the thing that the present unit works on, for the planner who is told of a fault.
    void worksOn(std::string thing) { atHand_ = std::move(thing); }

    /// How long another program may keep the database before the planner is asked. A test shortens
    /// it.
    static void setPatience(std::chrono::milliseconds patience);

private:
    using Statements = std::vector<std::string>;
    bool turn(const std::function<void()>& work, const Statements& reads);
    bool wholly(const std::function<void()>& work, const Statements& reads);
    bool tried(const std::function<void()>& work, const Statements& reads);
    template <class Work>
    auto told(Work work) const;
    void tellFault(const std::exception& fault) const;
    bool goOnWaiting();
    void count(std::optional<LeftOut> left);
    void tell(const std::string& status);

    ado::GroupWork work_;
    base::ProgressPort& progress_;
    Wording words_;
    Outcome& outcome_;
    std::string status_;
    std::string atHand_;
};

/// Tells the planner of what a work raises.
template <class Work>
auto GroupLoop::told(Work work) const {
    try {
        return work();
    } catch (const std::exception& fault) {
        tellFault(fault);
        throw;
    }
}

template <class Items, class Unit, class Status, class Reads>
bool GroupLoop::forEach(const Items& items, Unit unit, Status status, Telling telling,
                        Reads reads) {
    const auto total = static_cast<double>(std::ranges::size(items));
    double begun = 0;
    for (const auto& item : items) {
        const double percent = 100 * ++begun / total;
        if (telling == Telling::Before) {
            tell(status(item));
            progress_.progress(percent);
        }
        std::optional<LeftOut> left;
        atHand_.clear();
        if (!turn([&] { left = unit(item); }, told([&] { return reads(item); }))) {
            return false;
        }
        if (telling == Telling::Done) {
            if (!left) {
                tell(status(item));
            }
            progress_.progress(percent);
        }
        count(std::move(left));
    }
    return true;
}

}  // namespace groupops
