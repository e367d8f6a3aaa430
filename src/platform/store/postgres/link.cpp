#include "platform/store/postgres/link.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include <fmt/format.h>

#include "platform/store/base/ddl.h"

namespace store::postgres {

namespace {

const std::string Undo = "ROLLBACK TO SAVEPOINT vireo_statement; RELEASE SAVEPOINT vireo_statement";
constexpr auto Commit = "COMMIT";
/// The number in the server's own books is asked for while the lock is taken, since after a commit
/// that was lost on its way only that tells what became of the unit.
const std::string Lock =
    "SELECT pg_advisory_xact_lock(hashtext('vireo unit'), hashtext($1)), pg_current_xact_id(),"
    " set_config('plan_cache_mode', 'force_generic_plan', true)";
constexpr auto NothingRead = "Nothing was read.";
constexpr auto NothingChanged = "Nothing was changed by that.";

/// What every connection is set to. Hashing texts that compare without case is dear, and what is
/// read here is too small for compiling to pay.
constexpr std::string_view Setup =
    "SET jit = off; SET enable_hashjoin = off; SET enable_hashagg = off; SET datestyle = 'ISO, "
    "MDY';"
    " SET client_min_messages = error; SET tcp_keepalives_idle = 10; SET tcp_keepalives_interval ="
    " 5; SET tcp_keepalives_count = 3; SET tcp_user_timeout = 20000;"
    " SET client_connection_check_interval = 5000; ";

/// The place of the first answer that tells of a fault; behind the last without one.
std::size_t firstFault(const std::vector<Result>& answers) {
    const auto failed = std::ranges::find_if(answers, isFault, &Result::get);
    return static_cast<std::size_t>(failed - answers.begin());
}

/// How often this thread has waited for a server, whichever.
std::int64_t& waitsOfThread() {
    thread_local std::int64_t waits = 0;
    return waits;
}

/// Turns a switch off when it ends.
struct Ended {
    bool& isOn;
    explicit Ended(bool& which) : isOn(which) {}
    ~Ended() { isOn = false; }
    Ended(const Ended&) = delete;
    Ended& operator=(const Ended&) = delete;
};

}  // namespace

Link::Link(const std::string& path, int lockTimeoutMs, Sharing sharing)
    : place_(serverPathOf(path)),
      source_{path, lockTimeoutMs},
      sharing_(sharing),
      lock_(Lock),
      files_{place_.file} {
    connect();
}

Link::~Link() = default;

void Link::connect() {
    startAsking();
    isGivenUp_ = false;
    {
        isWaiting_ = true;
        const Ended ended{isWaiting_};
        countTrip();
        connection_ = connected(place_.connection);
    }
    if (connection_ == nullptr) {
        raiseGivenUp(source_, NothingChanged);
    }
    if (library().status(connection_.get()) != CONNECTION_OK) {
        raiseUnreachable(source_, connection_.get());
    }
    isUp_ = true;
    own_.emplace(connection_.get());
    ++prepared_.generation;
    prepared_.released.clear();
    applied_.clear();
    isConnecting_ = true;
    const Ended ended{isConnecting_};
    try {
        script(std::string(Setup));
        applySettings();
        requireFile();
        takePlace();
    } catch (const StoreError&) {
        isUp_ = false;
        throw;
    }
}

std::vector<std::string> Link::settings() const {
    return {fmt::format("SET lock_timeout = {}", std::max(source_.lockTimeoutMs, 1)),
            fmt::format("SET synchronous_commit = {}",
                        durability_ == Durability::PowerCut ? "on" : "off"),
            fmt::format("SET search_path = {}, vireo", quotedList(files_))};
}

void Link::applySettings() {
    const std::vector<std::string> wanted = settings();
    if (wanted != applied_) {
        script(fmt::format("{}", fmt::join(wanted, "; ")));
        applied_ = wanted;
    }
}

void Link::requireFile() {
    if (sharing_ == Sharing::Unknown) {
        return;
    }
    const Result found = run("SELECT 1 FROM pg_namespace WHERE nspname = $1", {{place_.file}});
    if (library().rowCount(found.get()) == 0) {
        throw StoreError(
            Fault::Missing,
            fmt::format("\"{}\" was not found: the database has no such schema.", source_.path));
    }
}

/// Who opens a file alone keeps others out, and is kept out by them, for as long as it is open.
void Link::takePlace() {
    if (sharing_ == Sharing::Unknown) {
        return;
    }
    // A program that has just ended leaves the server a moment later.
    const int looks = sharing_ == Sharing::Alone ? 50 : 10;
    constexpr std::chrono::milliseconds Moment{100};
    const std::string sql =
        fmt::format("SELECT pg_try_advisory_lock{}(hashtext('vireo open'), hashtext($1))",
                    sharing_ == Sharing::Alone ? "" : "_shared");
    for (int look = 1;; ++look) {
        const Result taken = run(sql, {{place_.file}});
        if (*library().value(taken.get(), 0, 0) == 't') {
            return;
        }
        if (look == looks) {
            throw StoreError(Fault::Locked,
                             fmt::format("\"{}\" is in use by another program.", source_.path));
        }
        std::this_thread::sleep_for(Moment);
    }
}

void Link::script(const std::string& statements) { require(exec(statements).get()); }

void Link::require(const PGresult* answer) {
    if (isLost(connection_.get(), answer)) {
        lose();
        raiseGone("What was under way was undone.");
    }
    if (isCancelled_ && stateOf(answer) == "57014") {
        raiseGivenUp(source_, NothingChanged);
    }
    if (isFault(answer)) {
        raiseFault(source_, answer);
    }
}

void Link::lose() {
    inUnit_ = false;
    isUp_ = false;
    own_.reset();
    if (isGivenUp_) {
        connection_.reset();
    }
}

void Link::raiseGone(const std::string& what) {
    if (std::exchange(isGivenUp_, false)) {
        raiseGivenUp(source_, what);
    }
    raiseLost(source_, what);
}

/// The connection is lost, and with it the unit that was open.
void Link::raiseIfUnitIsLost() {
    const bool wasInUnit = inUnit_;
    lose();
    if (wasInUnit) {
        raiseGone("The change that was under way was undone as a whole.");
    }
}

bool Link::send(const Command& command) const {
    static const std::vector<Parameter> Nothing;
    const auto& parameters = command.parameters == nullptr ? Nothing : *command.parameters;
    const auto texts = textsOf(parameters);
    const auto types = typesOf(parameters);
    const int count = static_cast<int>(parameters.size());
    constexpr int AsText = 0;
    switch (command.kind) {
        case Command::Kind::Prepare:
            return library().sendPrepare(connection_.get(), command.name->c_str(),
                                         command.text->c_str(), count, types.data()) == 1;
        case Command::Kind::RunPrepared:
            return library().sendQueryPrepared(connection_.get(), command.text->c_str(), count,
                                               texts.data(), nullptr, nullptr, AsText) == 1;
        case Command::Kind::Run:
            break;
    }
    return library().sendQueryParams(connection_.get(), command.text->c_str(), count, types.data(),
                                     texts.data(), nullptr, nullptr, AsText) == 1;
}

/// What the forms do under a wait may ask the server something on the same connection.
void Link::startAsking() {
    if (isWaiting_ || reads_) {
        throw StoreError(Fault::Locked,
                         fmt::format("The server of \"{}\" has not answered yet.", source_.path));
    }
    isCancelled_ = false;
    waitsBefore_ = waitsOfThread();
}

/// What was on its way while the thread waited for something else costs no round trip of its own.
void Link::countTrip() {
    if (waitsBefore_ == waitsOfThread()) {
        ++waitsOfThread();
        ++roundTrips_;
    }
}

/// A change that stands for itself is either made or not, and the server may say so in the moment
/// that it is given; a unit ends with its connection.
bool Link::waits() {
    isWaiting_ = true;
    const Ended ended{isWaiting_};
    try {
        if (awaitAnswer(connection_.get())) {
            return true;
        }
        isCancelled_ = true;
        cancel(connection_.get());
        return !inUnit_ && isAnsweredSoon(connection_.get());
    } catch (...) {  // the program ends
        isGivenUp_ = true;
        lose();
        throw;
    }
}

Result Link::answer() {
    isGivenUp_ = isGivenUp_ || !waits();
    return Result(isGivenUp_ ? nullptr : library().getResult(connection_.get()));
}

Result Link::lastAnswer() {
    Result last = answer();
    while (last && library().resultStatus(last.get()) != PGRES_COPY_IN) {
        Result next = answer();
        if (!next) {
            break;
        }
        last = std::move(next);
    }
    return isGivenUp_ ? nullptr : std::move(last);
}

Result Link::exec(const std::string& statements) {
    startAsking();
    countTrip();
    return library().sendQuery(connection_.get(), statements.c_str()) == 1 ? lastAnswer() : nullptr;
}

/// Sends the commands together; an answer to each, none where the connection was lost.
Link::Answers Link::exchange(std::span<const Command> commands) {
    return dispatch(commands) ? receive(commands.size()) : Answers(commands.size());
}

bool Link::dispatch(std::span<const Command> commands) {
    startAsking();
    if (commands.size() == 1) {
        return send(commands.front());
    }
    return library().enterPipelineMode(connection_.get()) == 1 &&
           std::ranges::all_of(commands, [this](const Command& one) { return send(one); }) &&
           library().pipelineSync(connection_.get()) == 1;
}

Link::Answers Link::receive(std::size_t count) {
    countTrip();
    Answers answers(count);
    if (count == 1) {
        answers.front() = lastAnswer();
        return answers;
    }
    for (Result& one : answers) {
        one = answer();
        for (Result rest = one ? answer() : nullptr; rest != nullptr;) {
            rest = answer();
        }
    }
    const Result sync = answer();
    if (!isGivenUp_) {
        library().exitPipelineMode(connection_.get());
    }
    return answers;
}

Result Link::once(Query& query, const std::vector<Parameter>& parameters) {
    const bool isGuarded = inUnit_ && !query.isControl;
    Sending sending(prepared_);
    if (isGuarded) {
        sending.addBracket(brackets_.savepoint);
    }
    sending.add({&query, &parameters});
    const std::size_t wanted = sending.commands().size() - 1;
    if (isGuarded) {
        sending.addBracket(brackets_.release);
    }
    Answers answers = exchange(sending.commands());
    const std::size_t failed = firstFault(answers);
    Result result = std::move(answers[failed < answers.size() ? failed : wanted]);
    if (isLost(connection_.get(), result.get())) {
        return result;
    }
    if (!isFault(result.get())) {
        sending.ran();
        return result;
    }
    sending.failed(answers);
    if (isGuarded) {
        undoStatement();
    }
    return result;
}

void Link::undoStatement() { require(exec(Undo).get()); }

/// Outside a unit, before something is sent.
void Link::makeReady() {
    constexpr std::size_t ManyReleased = 20;
    if (!isUp_) {
        connect();
    }
    if (prepared_.released.size() > ManyReleased) {
        script("DEALLOCATE " + fmt::format("{}", fmt::join(prepared_.released, "; DEALLOCATE ")));
        prepared_.released.clear();
    }
}

Result Link::run(Query& query, const std::vector<Parameter>& parameters) {
    if (!inUnit_) {
        makeReady();
        if (query.writes) {
            applySettings();
        }
    }
    Result result = once(query, parameters);
    if (isLost(connection_.get(), result.get())) {
        raiseIfUnitIsLost();
        if (query.writes) {
            raiseGone("Please look whether the change was made before you make it again.");
        }
        if (isConnecting_ || isGivenUp_) {
            raiseGone(NothingRead);
        }
        connect();
        result = once(query, parameters);
    } else if (isFault(result.get()) &&
               (stateOf(result.get()) == "0A000" || stateOf(result.get()) == "26000") &&
               query.forget()) {  // a table was changed since it was prepared
        result = once(query, parameters);
    }
    require(result.get());
    hasWritten_ = hasWritten_ || query.writes;
    changedRows_ = std::atoll(library().commandRows(result.get()));
    return result;
}

Result Link::run(const std::string& sql, const std::vector<Parameter>& parameters) {
    Query query(sql);
    return run(query, parameters);
}

Link::Begun Link::tryToBegin(std::span<const Call> reads) {
    const std::vector<Parameter> file{{place_.file, 0}};
    Sending sending(prepared_);
    sending.addBracket(brackets_.begin);
    sending.add({&lock_, &file});
    const std::size_t lockPlace = sending.commands().size() - 1;
    sending.add(reads);
    Answers answers = exchange(sending.commands());
    const std::size_t failed = firstFault(answers);
    const bool failedLater = failed > lockPlace && failed < answers.size() &&
                             !isLost(connection_.get(), answers[failed].get());
    if (failed < answers.size()) {
        sending.failed(answers);
    }
    if (failed < answers.size() && !failedLater) {
        return {std::move(answers[failed]), {}, false};
    }
    Begun begun{nullptr, sending.ofCalls(std::move(answers)), failedLater};
    begun.lock = std::move(begun.reads.front());
    begun.reads.erase(begun.reads.begin());
    if (!failedLater) {
        sending.ran();
    }
    return begun;
}

Link::Answers Link::begin(std::span<const Call> reads) {
    if (!isUp_) {
        connect();
    }
    applySettings();
    Begun begun = tryToBegin(reads);
    if (isLost(connection_.get(), begun.lock.get())) {
        lose();
        if (isGivenUp_) {
            raiseGone(NothingChanged);
        }
        connect();
        begun = tryToBegin(reads);
    }
    if (isFault(begun.lock.get()) && !isLost(connection_.get(), begun.lock.get())) {
        script("ROLLBACK");
    }
    require(begun.lock.get());
    if (begun.readsFailed) {  // they are made again one by one, each with its own fault
        script("ROLLBACK");
        return begin();
    }
    unit_ = library().value(begun.lock.get(), 0, 1);
    inUnit_ = true;
    hasWritten_ = false;
    return std::move(begun.reads);
}

void Link::beginReading() {
    static_cast<void>(run("BEGIN ISOLATION LEVEL REPEATABLE READ, READ ONLY"));
    inUnit_ = true;
    unit_.clear();
    static_cast<void>(run("SELECT 1"));
}

std::string Link::fateOf(const std::string& unit) {
    constexpr std::chrono::milliseconds Glance{100};
    std::string fate;
    try {
        connect();
        for (int look = 0; look < 20 && (fate.empty() || fate == "in progress"); ++look) {
            std::this_thread::sleep_for(look == 0 ? std::chrono::milliseconds{0} : Glance);
            const Result answer = run("SELECT pg_xact_status($1::xid8)", {{unit}});
            fate = library().value(answer.get(), 0, 0);
        }
    } catch (const StoreError&) {
        fate.clear();
    }
    return fate;
}

void Link::commit() {
    inUnit_ = false;
    const Result answer = exec(Commit);
    committed(answer.get());
}

/// What became of the unit, as far as that can be known.
void Link::committed(PGresult* answer) {
    const std::string unit = std::exchange(unit_, {});
    inUnit_ = false;
    if (isLost(connection_.get(), answer)) {
        lose();
        const std::string fate = unit.empty() || isGivenUp_ ? "" : fateOf(unit);
        if (fate == "committed") {
            return;
        }
        raiseGone(fate == "aborted" ? "The change that was under way was undone as a whole."
                                    : "Please look whether the change was made before you make it "
                                      "again.");
    }
    require(answer);
    if (std::string_view(library().commandStatus(answer)) != Commit) {
        throw StoreError(Fault::Other, "The server undid the changes of this transaction.");
    }
}

void Link::sendReads(std::span<const Call> reads) {
    if (!inUnit_) {
        makeReady();
    }
    auto sending = std::make_unique<Sending>(prepared_);
    sending->addBracket(inUnit_ ? brackets_.savepoint : brackets_.planOnce);
    sending->add(reads);
    if (inUnit_) {
        sending->addBracket(brackets_.release);
    }
    areReadsSent_ = dispatch(sending->commands());
    reads_ = std::move(sending);
}

void Link::giveUpReads() noexcept {
    if (reads_) {
        reads_.reset();
        cancel(connection_.get());
        lose();
        connection_.reset();
    }
}

Link::Answers Link::collectReads() {
    const auto sending = std::exchange(reads_, nullptr);
    const std::size_t count = sending->commands().size();
    Answers answers = areReadsSent_ ? receive(count) : Answers(count);
    const std::size_t failed = firstFault(answers);
    if (failed == answers.size()) {
        sending->ran();
        return sending->ofCalls(std::move(answers));
    }
    sending->failed(answers);
    if (isLost(connection_.get(), answers[failed].get())) {
        raiseIfUnitIsLost();
        if (isGivenUp_) {
            raiseGone(NothingRead);
        }
    } else if (inUnit_) {
        undoStatement();
    } else if (isCancelled_) {
        require(answers[failed].get());
    }
    return {};
}

/// All that the unit has written until now is undone by the server; it goes on as a new one.
void Link::beginAnew() {
    script("ROLLBACK");
    inUnit_ = false;
    static_cast<void>(begin());
}

/// Where the unit has written nothing before, nothing needs to be kept of it.
bool Link::writeTogether(std::span<const Call> writes, bool commits) {
    const bool isWhole = commits && !hasWritten_;
    Sending sending(prepared_);
    if (!isWhole) {
        sending.addBracket(brackets_.savepoint);
    }
    sending.add(writes);
    if (!isWhole) {
        sending.addBracket(brackets_.release);
    }
    const std::size_t commitPlace = sending.commands().size();
    if (commits) {
        sending.addBracket(brackets_.commit);
    }
    const Answers answers = exchange(sending.commands());
    const std::size_t failed = firstFault(answers);
    const bool isDone = failed == answers.size();
    PGresult* telling = answers[isDone ? answers.size() - 1 : failed].get();
    const bool isGone = isLost(connection_.get(), telling);
    if (!isDone && !isGone && failed < commitPlace) {
        sending.failed(answers);
        isWhole ? beginAnew() : undoStatement();
        return false;
    }
    hasWritten_ = true;
    if (commits) {
        committed(telling);
    } else if (isGone) {
        raiseIfUnitIsLost();
    }
    if (!isGone) {
        sending.ran();
    }
    return true;
}

void Link::rollback() {
    inUnit_ = false;
    const Result answer = exec("ROLLBACK");
    if (isLost(connection_.get(), answer.get())) {
        lose();  // and the server has undone it by itself
        return;
    }
    require(answer.get());
}

void Link::setFiles(std::vector<std::string> files) {
    files_ = std::move(files);
    applySettings();
}

}  // namespace store::postgres
