#include "platform/store/postgres/waiting.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include <poll.h>
#include <unistd.h>

#include "platform/base/wait.h"

namespace store::postgres {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds Unnoticed{950};
constexpr auto Text = "Waiting for the district's server.";

/// The forms live on the first thread of the program.
bool isThreadOfForms() { return getpid() == gettid(); }

/// Lets something come in; false where the connection is gone, as the answer will say. What is
/// encrypted may have come in already without the socket knowing.
bool takeIn(PGconn* connection, milliseconds patience) {
    constexpr milliseconds Glance{2};
    const Library& pq = library();
    const bool isEncrypted = pq.sslInUse(connection) != 0;
    pollfd one{pq.socket(connection), POLLIN, 0};
    const auto longest = isEncrypted ? std::min(patience, Glance) : patience;
    return one.fd >= 0 &&
           ((poll(&one, 1, static_cast<int>(longest.count())) <= 0 && !isEncrypted) ||
            pq.consumeInput(connection) == 1);
}

/// Whether the answer is there, after at most that time.
bool isHere(PGconn* connection, milliseconds patience) {
    if (library().isBusy(connection) == 0) {
        return true;
    }
    for (const auto end = Clock::now() + patience;;) {
        const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
        if (left.count() <= 0) {
            return false;
        }
        if (!takeIn(connection, left) || library().isBusy(connection) == 0) {
            return true;
        }
    }
}

/// A connection in the making, which goes on by itself when nobody waits for it any more.
class Making {
public:
    void made(Connection connection) {
        const std::lock_guard lock(mutex_);
        connection_ = std::move(connection);
        isMade_ = true;
        changed_.notify_one();
    }
    [[nodiscard]] bool isMadeWithin(milliseconds patience) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, patience, [this] { return isMade_; });
    }
    [[nodiscard]] Connection take() {
        const std::lock_guard lock(mutex_);
        return std::move(connection_);
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    Connection connection_;
    bool isMade_ = false;
};

void keepQuiet(void*, const char*) {}

struct FreeCancel {
    void operator()(PGcancel* cancel) const { library().freeCancel(cancel); }
};

Connection connectedWithin(const std::string& address, int seconds) {
    constexpr std::array<const char*, 9> Keys{
        "application_name",    "connect_timeout",  "keepalives_idle",
        "keepalives_interval", "keepalives_count", "tcp_user_timeout",
        "client_encoding",     "dbname",           nullptr};
    const std::string patience = std::to_string(seconds);
    const std::array<const char*, 9> values{"vireo", patience.c_str(), "10",   "5", "3", "20000",
                                            "UTF8",  address.c_str(),  nullptr};
    constexpr int DbnameIsAddress = 1;
    return Connection(library().connect(Keys.data(), values.data(), DbnameIsAddress));
}

}  // namespace

Connection connectedAnyhow(const std::string& address) {
    // A server that starts anew can forget who waits for it; a busy one needs longer.
    Connection made;
    for (const int seconds : {5, 10, 15}) {
        const auto begun = Clock::now();
        made = connectedWithin(address, seconds);
        const bool isAnswered = Clock::now() - begun < std::chrono::seconds{seconds - 1};
        if (isAnswered || library().status(made.get()) == CONNECTION_OK) {
            break;
        }
    }
    library().setNoticeProcessor(made.get(), keepQuiet, nullptr);
    return made;
}

Connection connected(const std::string& address) {
    if (!isThreadOfForms()) {
        return connectedAnyhow(address);
    }
    const auto making = std::make_shared<Making>();
    const auto begun = Clock::now();
    std::thread([making, address] { making->made(connectedAnyhow(address)); }).detach();
    if (making->isMadeWithin(Unnoticed)) {
        return making->take();
    }
    for (base::Wait wait(Text, begun); !making->isMadeWithin(milliseconds{0});) {
        if (!wait.goesOn()) {
            return nullptr;
        }
    }
    return making->take();
}

bool awaitAnswer(PGconn* connection) {
    if (!isThreadOfForms()) {
        while (!isHere(connection, Unnoticed)) {
        }
        return true;
    }
    const auto begun = Clock::now();
    if (isHere(connection, Unnoticed)) {
        return true;
    }
    for (base::Wait wait(Text, begun); !isHere(connection, milliseconds{1});) {
        if (!wait.goesOn()) {
            return false;
        }
    }
    return true;
}

void cancel(PGconn* connection) {
    const std::shared_ptr<PGcancel> wish(library().getCancel(connection), FreeCancel{});
    if (wish == nullptr) {
        return;
    }
    std::thread([wish] {  // a server that hangs takes no such wish either
        std::array<char, 256> reason{};
        library().cancel(wish.get(), reason.data(), static_cast<int>(reason.size()));
    })
        .detach();
}

bool isAnsweredSoon(PGconn* connection) {
    constexpr milliseconds Moment{1000};
    return isHere(connection, Moment);
}

}  // namespace store::postgres
