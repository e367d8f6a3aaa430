#include "tools/script/turnwatch.h"

#include <QAbstractEventDispatcher>
#include <algorithm>
#include <chrono>
#include <utility>

namespace script {

TurnWatch::TurnWatch() : begin_(now()) {
    auto* dispatcher = QAbstractEventDispatcher::instance();
    connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, &TurnWatch::endTurn);
    connect(dispatcher, &QAbstractEventDispatcher::awake, this, &TurnWatch::endTurn);
}

TurnWatch::Moment TurnWatch::now() {
    constexpr double MsOfSecond = 1e3;
    constexpr double NsOfMs = 1e6;
    std::timespec computing{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &computing);
    const std::chrono::duration<double, std::milli> passed =
        std::chrono::steady_clock::now().time_since_epoch();
    return {passed.count(), static_cast<double>(computing.tv_sec) * MsOfSecond +
                                static_cast<double>(computing.tv_nsec) / NsOfMs};
}

void TurnWatch::endTurn() {
    constexpr double LeastMs = 10;
    const Moment end = now();
    const double computing = end.computingMs - begin_.computingMs;
    if (computing >= LeastMs) {
        turns_.push_back({deed_, end.ms - begin_.ms, computing});
    }
    begin_ = now();
}

void TurnWatch::setDeed(const std::string& deed) {
    endTurn();
    deed_ = deed;
}

std::vector<TurnWatch::Turn> TurnWatch::take(double ms) {
    endTurn();
    auto taken = std::exchange(turns_, {});
    std::erase_if(taken, [ms](const Turn& turn) { return turn.computingMs < ms; });
    return taken;
}

}  // namespace script
