#include "groupops/base/grouploop.h"

#include <numeric>
#include <string_view>

#include <fmt/format.h>

#include "platform/store/base/database.h"

namespace groupops {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto WaitingStatus = "Waiting for another program that is writing to the database...";
/// Two operations at once give way to each other all the time: that is not worth a word.
constexpr int SilentTurns = 5;

constexpr auto LockedText =
    "Oops, another program has been writing to the database for some time.\n\n{}  {}\n\n"
    "Yes - go on, waiting for it.\nNo - stop here; what is saved stays.";

constexpr auto FaultText =
    "Oops, {} could not go on{}.  The program tells the fault next and ends.\n\n{}  {}{}";

std::chrono::milliseconds lockPatience = std::chrono::minutes(1);

}  // namespace

std::vector<int> numbersTo(int last) {
    std::vector<int> numbers(static_cast<std::size_t>(last));
    std::iota(numbers.begin(), numbers.end(), 1);
    return numbers;
}

bool endedAsAWhole(const std::exception& fault) {
    using enum store::Fault;
    const auto* error = dynamic_cast<const store::StoreError*>(&fault);
    const auto kind = error == nullptr ? Other : error->fault();
    return kind == Lost || kind == GivenUp || kind == Unreachable;
}

GroupLoop::GroupLoop(ado::Connection& connection, base::ProgressPort& progress, Wording words,
                     Outcome& outcome)
    : work_(connection), progress_(progress), words_(std::move(words)), outcome_(outcome) {}

void GroupLoop::setPatience(std::chrono::milliseconds patience) { lockPatience = patience; }

bool GroupLoop::once(const std::function<void()>& work) {
    atHand_.clear();
    return wholly(work, {});
}

bool GroupLoop::wholly(const std::function<void()>& work, const Statements& reads) {
    auto start = Clock::now();
    int turns = 0;
    while (!outcome_.stopped && !tried(work, reads)) {
        if (++turns == SilentTurns) {
            progress_.status(WaitingStatus);
        }
        outcome_.stopped = progress_.yield();
        if (!outcome_.stopped && Clock::now() - start >= lockPatience) {
            outcome_.stopped = !goOnWaiting();
            start = Clock::now();
        }
    }
    if (turns >= SilentTurns) {
        progress_.status(status_);
    }
    return !outcome_.stopped;
}

bool GroupLoop::turn(const std::function<void()>& work, const Statements& reads) {
    outcome_.stopped = progress_.yield();
    return wholly(work, reads);
}

bool GroupLoop::tried(const std::function<void()>& work, const Statements& reads) {
    return told([&] { return work_.unit(work, reads); });
}

void GroupLoop::tellFault(const std::exception& fault) const {
    const bool named = !atHand_.empty();
    const std::string at = named ? fmt::format(" at {}: {}", words_.thing, atHand_) : "";
    const std::string_view how =
        endedAsAWhole(fault) ? "is written as a whole or not at all" : "may be written in part";
    const std::string part =
        named ? fmt::format("  The {} named above {}.", words_.thing, how) : "";
    base::MsgBox(
        fmt::format(FaultText, words_.name, at, howFar(outcome_, words_), words_.rest, part),
        "Not Everything Was Written", base::MsgIcon::Exclamation);
}

bool GroupLoop::goOnWaiting() {
    return base::MsgBox(fmt::format(LockedText, howFar(outcome_, words_), words_.rest),
                        "Database in Use", base::MsgIcon::Exclamation,
                        base::MsgButtons::YesNo) == base::MsgAnswer::Yes;
}

void GroupLoop::count(std::optional<LeftOut> left) {
    if (left) {
        outcome_.leftOut.push_back(std::move(*left));
    } else {
        ++outcome_.done;
    }
}

void GroupLoop::tell(const std::string& status) {
    status_ = status;
    progress_.status(status);
}

}  // namespace groupops
