#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <optional>
#include <stop_token>
#include <thread>
#include <utility>

#include "platform/base/notcopied.h"

namespace map {

/// Whoever waits no longer than this for an answer is not felt to wait.
inline constexpr std::chrono::milliseconds SoonEnough{30};

/// An answer that is worked out on a thread of its own. Whoever asks anew, or goes, gives up what
/// was asked before; the work then ends by itself, so it must hold all that it reads.
template <class Answer>
class Aside : private base::NotCopied {
public:
    using Work = std::function<Answer(const std::stop_token& stop)>;

    ~Aside() { giveUp(); }

    void ask(Work work) {
        giveUp();
        stop_ = std::stop_source();
        std::packaged_task<Answer()> task(
            [work = std::move(work), stop = stop_.get_token()] { return work(stop); });
        answer_ = task.get_future();
        std::thread(std::move(task)).detach();
    }
    void giveUp() {
        stop_.request_stop();
        answer_ = {};
    }
    [[nodiscard]] bool isAsked() const { return answer_.valid(); }
    /// The answer, once; nothing where it is not there after that time. Raises what the work
    /// raised.
    [[nodiscard]] std::optional<Answer> take(std::chrono::milliseconds patience = {}) {
        if (!isAsked() || answer_.wait_for(patience) != std::future_status::ready) {
            return std::nullopt;
        }
        return answer_.get();
    }

private:
    std::stop_source stop_;
    std::future<Answer> answer_;
};

}  // namespace map
