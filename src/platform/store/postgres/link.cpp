#include "platform/store/postgres/link.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <thread>
#include <utility>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/store/base/ddl.h"

namespace store::postgres {

namespace {

enum Type : Oid { Bool = 16, Bigint = 20, TextType = 25, Double = 701, Timestamp = 1114 };

const std::string Savepoint = "SAVEPOINT vireo_statement";
const std::string Release = "RELEASE SAVEPOINT vireo_statement";
const std::string Undo = "ROLLBACK TO SAVEPOINT vireo_statement; RELEASE SAVEPOINT vireo_statement";
const std::string Begin = "BEGIN";
/// The number in the server's own books is asked for while the lock is taken, since after a commit
/// that was lost on its way only that tells what became of the unit.
const std::string Lock =
    "SELECT pg_advisory_xact_lock(hashtext('vireo unit'), hashtext($1)), pg_current_xact_id()";
const std::vector<Parameter> NoParameters;
constexpr auto NothingChanged = "Nothing was changed by that.";

/// What every connection is set to. Hashing texts that compare without case is dear, and what is
/// read here is too small for compiling to pay.
constexpr std::string_view Setup =
    "SET jit = off; SET enable_hashjoin = off; SET enable_hashagg = off; SET datestyle = 'ISO, "
    "MDY';"
    " SET client_min_messages = error; SET tcp_keepalives_idle = 10; SET tcp_keepalives_interval ="
    " 5; SET tcp_keepalives_count = 3; SET tcp_user_timeout = 20000;"
    " SET client_connection_check_interval = 5000; ";

/// The statement with its question marks outside quotes as "$1", "$2".
std::string numbered(std::string_view sql) {
    std::string text;
    char quote = 0;
    int number = 0;
    for (const char c : sql) {
        if (quote != 0) {
            quote = c == quote ? '\0' : quote;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '?') {
            text += fmt::format("${}", ++number);
            continue;
        }
        text += c;
    }
    return text;
}

std::string firstWord(std::string_view sql) {
    sql = base::trimLeft(sql);
    return base::uppered(sql.substr(0, sql.find_first_of(" \n\t(")));
}

template <std::size_t Count>
bool isOneOf(const std::string& word, const std::array<std::string_view, Count>& words) {
    return std::ranges::find(words, word) != words.end();
}

void requireKeepable(const std::string& text) {
    if (text.find('\0') != std::string::npos) {
        throw StoreError(Fault::Constraint,
                         "A text with a character of no meaning in it (code 0) cannot be stored.");
    }
}

void keepQuiet(void*, const char*) {}

std::vector<Oid> typesOf(const std::vector<Parameter>& parameters) {
    std::vector<Oid> types;
    types.reserve(parameters.size());
    std::ranges::transform(parameters, std::back_inserter(types), &Parameter::type);
    return types;
}

std::vector<const char*> textsOf(const std::vector<Parameter>& parameters) {
    std::vector<const char*> texts;
    texts.reserve(parameters.size());
    std::ranges::transform(parameters, std::back_inserter(texts), [](const Parameter& one) {
        return one.text ? one.text->c_str() : nullptr;
    });
    return texts;
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

Parameter typed(const base::Value& value) {
    if (value.isNull()) {
        return {};
    }
    if (value.isText()) {
        requireKeepable(value.heldText());
        return {value.heldText(), TextType};
    }
    if (value.isDate()) {
        return {value.asDate().iso(), Timestamp};
    }
    if (value.isYesNo()) {
        return {value.asBoolean() ? "t" : "f", Bool};
    }
    if (value.isInteger()) {
        return {std::to_string(value.asInteger()), Bigint};
    }
    return {fmt::format("{}", value.asNumber()), Double};
}

Parameter untyped(const base::Value& value, ColumnKind kind) {
    Parameter parameter = typed(value);
    parameter.type = 0;
    if (kind == ColumnKind::YesNo && parameter.text) {
        parameter.text = value.asNumber() != 0 ? "t" : "f";
    }
    return parameter;
}

Query::Query(std::string_view text) : sql(numbered(text)) {
    constexpr std::array<std::string_view, 4> Reading{"SELECT", "VALUES", "EXPLAIN", "SHOW"};
    constexpr std::array<std::string_view, 5> Control{"SAVEPOINT", "RELEASE", "ROLLBACK", "COMMIT",
                                                      "BEGIN"};
    const std::string word = firstWord(sql);
    isControl = isOneOf(word, Control);
    writes = !isControl && !isOneOf(word, Reading);
}

Link::Link(const std::string& path, int lockTimeoutMs, Sharing sharing)
    : place_(serverPathOf(path)),
      source_{path, lockTimeoutMs},
      sharing_(sharing),
      files_{place_.file} {
    connect();
}

Link::~Link() = default;

void Link::connect() {
    constexpr std::array<const char*, 8> Keys{
        "application_name", "connect_timeout",  "keepalives_idle", "keepalives_interval",
        "keepalives_count", "tcp_user_timeout", "client_encoding", "dbname"};
    const std::array<const char*, 8> values{"vireo", "5",     "10",   "5",
                                            "3",     "20000", "UTF8", place_.connection.c_str()};
    startAsking();
    isGivenUp_ = false;
    {
        isWaiting_ = true;
        const Ended ended{isWaiting_};
        connection_ = connected(Keys, values);
    }
    if (connection_ == nullptr) {
        raiseGivenUp(source_, NothingChanged);
    }
    if (library().status(connection_.get()) != CONNECTION_OK) {
        raiseUnreachable(source_, connection_.get());
    }
    isUp_ = true;
    ++generation_;
    released_.clear();
    applied_.clear();
    isConnecting_ = true;
    const Ended ended{isConnecting_};
    library().setNoticeProcessor(connection_.get(), keepQuiet, nullptr);
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
    const std::string_view form = sharing_ == Sharing::Alone ? "" : "_shared";
    const Result taken = run(
        fmt::format("SELECT pg_try_advisory_lock{}(hashtext('vireo open'), hashtext($1))", form),
        {{place_.file}});
    if (*library().value(taken.get(), 0, 0) != 't') {
        throw StoreError(Fault::Locked,
                         fmt::format("\"{}\" is in use by another program.", source_.path));
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
    if (isWaiting_) {
        throw StoreError(Fault::Locked,
                         fmt::format("The server of \"{}\" has not answered yet.", source_.path));
    }
    isCancelled_ = false;
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
    return library().sendQuery(connection_.get(), statements.c_str()) == 1 ? lastAnswer() : nullptr;
}

/// Sends the commands together; the answer to the wanted one, or to the first that failed.
Result Link::exchange(std::span<const Command> commands, std::size_t wanted) {
    startAsking();
    if (commands.size() == 1) {
        return send(commands.front()) ? lastAnswer() : nullptr;
    }
    PGconn* connection = connection_.get();
    if (library().enterPipelineMode(connection) != 1 ||
        !std::ranges::all_of(commands, [this](const Command& one) { return send(one); }) ||
        library().pipelineSync(connection) != 1) {
        return nullptr;
    }
    Result result;
    bool failed = false;
    for (std::size_t i = 0; i < commands.size(); ++i) {
        Result one = answer();
        for (Result rest = one ? answer() : nullptr; rest != nullptr;) {
            rest = answer();
        }
        if (!failed && (i == wanted || isFault(one.get()))) {
            failed = isFault(one.get());
            result = std::move(one);
        }
    }
    const Result sync = answer();
    if (isGivenUp_) {
        return nullptr;
    }
    library().exitPipelineMode(connection);
    return result;
}

Result Link::once(Query& query, const std::vector<Parameter>& parameters) {
    const std::vector<Oid> types = typesOf(parameters);
    if (query.types != types) {
        release(query);
        query.types = types;
        query.name.clear();
        query.runs = 0;
    }
    if (query.generation != generation_) {
        query.name.clear();
    }
    std::vector<Command> commands;
    const bool isGuarded = inUnit_ && !query.isControl;
    if (isGuarded) {
        commands.push_back({Command::Kind::Run, &Savepoint, nullptr, &NoParameters});
    }
    std::string name = query.name;
    if (name.empty() && query.runs > 0 && !query.isControl) {
        name = fmt::format("vireo{}", ++names_);
        commands.push_back({Command::Kind::Prepare, &query.sql, &name, &parameters});
    }
    const std::size_t wanted = commands.size();
    commands.push_back(name.empty()
                           ? Command{Command::Kind::Run, &query.sql, nullptr, &parameters}
                           : Command{Command::Kind::RunPrepared, &name, nullptr, &parameters});
    if (isGuarded) {
        commands.push_back({Command::Kind::Run, &Release, nullptr, &NoParameters});
    }
    Result result = exchange(commands, wanted);
    if (isLost(connection_.get(), result.get())) {
        return result;
    }
    if (!isFault(result.get())) {
        ++query.runs;
        query.name = name;
        query.generation = generation_;
    } else if (isGuarded) {
        undoStatement();
    }
    return result;
}

void Link::undoStatement() { require(exec(Undo).get()); }

Result Link::run(Query& query, const std::vector<Parameter>& parameters) {
    constexpr std::size_t ManyReleased = 20;
    if (!inUnit_) {
        if (!isUp_) {
            connect();
        }
        if (query.writes) {
            applySettings();
        }
        if (released_.size() > ManyReleased) {
            script("DEALLOCATE " + fmt::format("{}", fmt::join(released_, "; DEALLOCATE ")));
            released_.clear();
        }
    }
    Result result = once(query, parameters);
    if (isLost(connection_.get(), result.get())) {
        const bool wasInUnit = inUnit_;
        lose();
        if (wasInUnit) {
            raiseGone("The change that was under way was undone as a whole.");
        }
        if (query.writes) {
            raiseGone("Please look whether the change was made before you make it again.");
        }
        if (isConnecting_ || isGivenUp_) {
            raiseGone("Nothing was read.");
        }
        connect();
        result = once(query, parameters);
    } else if (isFault(result.get()) && !query.name.empty() &&
               (stateOf(result.get()) == "0A000" || stateOf(result.get()) == "26000")) {
        query.name.clear();  // a table was changed since it was prepared
        result = once(query, parameters);
    }
    require(result.get());
    changedRows_ = std::atoll(library().commandRows(result.get()));
    return result;
}

Result Link::run(const std::string& sql, const std::vector<Parameter>& parameters) {
    Query query(sql);
    return run(query, parameters);
}

void Link::begin() {
    if (!isUp_) {
        connect();
    }
    applySettings();
    const std::vector<Parameter> file{{place_.file, 0}};
    const std::array<Command, 2> commands{
        Command{Command::Kind::Run, &Begin, nullptr, &NoParameters},
        Command{Command::Kind::Run, &Lock, nullptr, &file}};
    Result taken = exchange(commands, 1);
    if (isLost(connection_.get(), taken.get())) {
        lose();
        if (isGivenUp_) {
            raiseGone(NothingChanged);
        }
        connect();
        taken = exchange(commands, 1);
    }
    if (isFault(taken.get()) && !isLost(connection_.get(), taken.get())) {
        script("ROLLBACK");
    }
    require(taken.get());
    unit_ = library().value(taken.get(), 0, 1);
    inUnit_ = true;
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
    const std::string unit = std::exchange(unit_, {});
    inUnit_ = false;
    const Result answer = exec("COMMIT");
    if (isLost(connection_.get(), answer.get())) {
        lose();
        const std::string fate = unit.empty() || isGivenUp_ ? "" : fateOf(unit);
        if (fate == "committed") {
            return;
        }
        raiseGone(fate == "aborted" ? "The change that was under way was undone as a whole."
                                    : "Please look whether the change was made before you make it "
                                      "again.");
    }
    require(answer.get());
    if (std::string_view(library().commandStatus(answer.get())) != "COMMIT") {
        throw StoreError(Fault::Other, "The server undid the changes of this transaction.");
    }
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

void Link::release(const Query& query) {
    if (!query.name.empty() && query.generation == generation_) {
        released_.push_back(query.name);
    }
}

}  // namespace store::postgres
