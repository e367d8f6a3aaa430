// A thread listens to what the server tells, so that nobody waits for it.

#include "platform/store/base/watch.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "platform/store/base/location.h"
#include "platform/store/postgres/engine.h"
#include "platform/store/postgres/faults.h"
#include "platform/store/postgres/ownbackends.h"
#include "platform/store/postgres/waiting.h"

namespace store::postgres {

namespace {

constexpr char Separator = '\x1f';

/// What the thread hears and who looks share; whoever of them lives longer keeps it.
class Hearing {
public:
    explicit Hearing(std::string file)
        : file_(std::move(file)), wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
    ~Hearing() { close(wake_); }
    Hearing(const Hearing&) = delete;
    Hearing& operator=(const Hearing&) = delete;

    [[nodiscard]] int wake() const { return wake_; }

    void open(const std::string& record) {
        const std::lock_guard lock(mutex_);
        record_ = record;
        others_.clear();
        eventfd_write(wake_, 1);
    }
    [[nodiscard]] std::string record() {
        const std::lock_guard lock(mutex_);
        return record_;
    }
    [[nodiscard]] std::vector<std::string> others() {
        const std::lock_guard lock(mutex_);
        return others_;
    }
    void meet(const std::string& record, std::vector<std::string> others) {
        const std::lock_guard lock(mutex_);
        if (record == record_) {
            others_ = std::move(others);
        }
    }

    [[nodiscard]] Changes takeOut() {
        const std::lock_guard lock(mutex_);
        return std::exchange(heard_, {false, true});
    }

    /// What was told while nobody listened was missed.
    void begin() {
        const std::lock_guard lock(mutex_);
        if (std::exchange(hasBegun_, true)) {
            heard_.any = true;
            heard_.areAllTold = false;
        }
    }

    /// "routing.mdb", "RUN" and "A000512", parted by separators.
    void hear(std::string_view told) {
        const auto afterFile = told.find(Separator);
        const auto afterTable = told.find(Separator, afterFile + 1);
        if (afterTable == std::string_view::npos || told.substr(0, afterFile) != file_) {
            return;
        }
        const std::string_view table = told.substr(afterFile + 1, afterTable - afterFile - 1);
        const std::string_view value = told.substr(afterTable + 1);
        const std::lock_guard lock(mutex_);
        heard_.any = true;
        const bool isKnown = std::ranges::any_of(heard_.rows, [&](const ToldRow& row) {
            return row.value == value && row.table == table;
        });
        if (!isKnown && heard_.rows.size() < Most) {
            heard_.rows.push_back({std::string(table), std::string(value)});
        }
        heard_.areAllTold = heard_.areAllTold && heard_.rows.size() < Most;
    }

    void end() {
        const std::lock_guard lock(mutex_);
        isEnded_ = true;
        eventfd_write(wake_, 1);
        changed_.notify_all();
    }
    [[nodiscard]] bool isEnded() {
        const std::lock_guard lock(mutex_);
        return isEnded_;
    }
    /// True as soon as the watch has ended.
    [[nodiscard]] bool endsWithin(std::chrono::milliseconds patience) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, patience, [this] { return isEnded_; });
    }
    void leave() {
        const std::lock_guard lock(mutex_);
        isLeft_ = true;
        changed_.notify_all();
    }
    [[nodiscard]] bool isLeftWithin(std::chrono::milliseconds patience) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, patience, [this] { return isLeft_; });
    }

private:
    /// More than anybody looks up one by one.
    static constexpr std::size_t Most = 2000;

    std::string file_;
    int wake_;
    std::mutex mutex_;
    std::condition_variable changed_;
    Changes heard_{false, true};
    std::string record_;
    std::vector<std::string> others_;
    bool hasBegun_ = false;
    bool isEnded_ = false;
    bool isLeft_ = false;
};

struct FreeNotify {
    void operator()(PGnotify* one) const { library().freeMemory(one); }
};

/// The answer to one statement; null where it failed. On this thread it may wait.
Result ask(PGconn* connection, const char* statement, const std::string& parameter) {
    const std::array<const char*, 1> values{parameter.c_str()};
    constexpr int AsText = 0;
    if (library().sendQueryParams(connection, statement, parameter.empty() ? 0 : 1, nullptr,
                                  values.data(), nullptr, nullptr, AsText) != 1) {
        return nullptr;
    }
    Result first(library().getResult(connection));
    while (const Result rest{first ? library().getResult(connection) : nullptr}) {
    }
    return isFault(first.get()) ? nullptr : std::move(first);
}

[[nodiscard]] bool begins(PGconn* connection, const std::string& who) {
    return library().status(connection) == CONNECTION_OK &&
           ask(connection, "LISTEN vireo", "") != nullptr &&
           (who.empty() ||
            ask(connection, "SELECT set_config('application_name', 'vireo ' || $1, false)", who) !=
                nullptr);
}

/// A record that is open is a lock that many may share, which the server takes back from a program
/// that is gone.
class OpenRecord {
public:
    explicit OpenRecord(PGconn* connection) : connection_(connection) {}

    /// Whether the record is to be looked at again and again.
    bool follow(Hearing& hearing) {
        const std::string wanted = hearing.record();
        if (wanted != held_) {
            ask(connection_, "SELECT pg_advisory_unlock_all()", "");
            held_ = wanted;
        }
        if (held_.empty()) {
            return false;
        }
        ask(connection_,
            "SELECT pg_try_advisory_lock_shared(hashtext('vireo record'), hashtext($1)) WHERE NOT"
            " EXISTS (SELECT 1 FROM pg_locks WHERE locktype = 'advisory' AND pid ="
            " pg_backend_pid())",
            held_);
        hearing.meet(held_, others());
        return true;
    }

private:
    [[nodiscard]] std::vector<std::string> others() const {
        const Result rows =
            ask(connection_,
                "SELECT DISTINCT substr(a.application_name, 7) FROM pg_locks l JOIN"
                " pg_stat_activity a USING (pid) WHERE l.locktype = 'advisory' AND l.database ="
                " (SELECT oid FROM pg_database WHERE datname = current_database()) AND"
                " l.classid::bigint = hashtext('vireo record')::bigint & 4294967295 AND"
                " l.objid::bigint = hashtext($1)::bigint & 4294967295 AND l.objsubid = 2 AND pid <>"
                " pg_backend_pid() AND a.application_name LIKE 'vireo _%' ORDER BY 1",
                held_);
        std::vector<std::string> names;
        for (int row = 0; rows && row < library().rowCount(rows.get()); ++row) {
            names.emplace_back(library().value(rows.get(), row, 0));
        }
        return names;
    }

    PGconn* connection_;
    std::string held_;
};

void takeIn(PGconn* connection, Hearing& hearing) {
    using Notify = std::unique_ptr<PGnotify, FreeNotify>;
    while (const Notify one{library().notifies(connection)}) {
        if (!isOwnBackend(one->be_pid)) {
            hearing.hear(one->extra);
        }
    }
}

/// Until the connection or the watch ends.
void listen(PGconn* connection, Hearing& hearing) {
    constexpr int SafeguardMs = 10'000;  // encrypted messages may have come in unseen
    constexpr int OftenMs = 1000;
    OpenRecord open(connection);
    std::array<pollfd, 2> both{pollfd{library().socket(connection), POLLIN, 0},
                               pollfd{hearing.wake(), POLLIN, 0}};
    for (takeIn(connection, hearing); !hearing.isEnded(); takeIn(connection, hearing)) {
        poll(both.data(), both.size(), open.follow(hearing) ? OftenMs : SafeguardMs);
        eventfd_t woken = 0;
        eventfd_read(hearing.wake(), &woken);
        if (library().consumeInput(connection) != 1) {
            return;
        }
    }
}

void attend(const std::shared_ptr<Hearing>& hearing, const std::string& address,
            const std::string& who) {
    constexpr std::chrono::seconds Pause{5};
    do {
        const Connection connection = connectedAnyhow(address);
        if (begins(connection.get(), who)) {
            hearing->begin();
            listen(connection.get(), *hearing);
        }
    } while (!hearing->endsWithin(Pause));
    hearing->leave();
}

class ServerWatch final : public Watch {
public:
    ServerWatch(const ServerPath& place, const std::string& who)
        : hearing_(std::make_shared<Hearing>(place.file)),
          thread_([hearing = hearing_, address = place.connection, who] {
              attend(hearing, address, who);
          }) {}

    /// A thread that is connecting to a server that hangs is left to itself.
    ~ServerWatch() override {
        constexpr std::chrono::milliseconds Moment{200};
        hearing_->end();
        hearing_->isLeftWithin(Moment) ? thread_.join() : thread_.detach();
    }
    ServerWatch(const ServerWatch&) = delete;
    ServerWatch& operator=(const ServerWatch&) = delete;

    Changes look() override { return hearing_->takeOut(); }
    void open(const std::string& record) override { hearing_->open(record); }
    std::vector<std::string> others() override { return hearing_->others(); }

private:
    std::shared_ptr<Hearing> hearing_;
    std::thread thread_;
};

}  // namespace

std::unique_ptr<Watch> watch(const std::string& path, const std::string& who) {
    return std::make_unique<ServerWatch>(serverPathOf(path), who);
}

}  // namespace store::postgres
