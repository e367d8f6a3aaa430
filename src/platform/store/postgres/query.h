#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/base/value.h"
#include "platform/store/base/database.h"
#include "platform/store/postgres/library.h"

namespace store::postgres {

/// One parameter as it goes to the server: as text, nothing for Null, with the type that it has
/// there or 0 where its place says.
struct Parameter {
    std::optional<std::string> text;
    Oid type = 0;
};

/// A value with the type that the statement must take it for. Raises StoreError for a text that the
/// server cannot keep.
[[nodiscard]] Parameter typed(const base::Value& value);

/// A value as the column that it is meant for reads it.
[[nodiscard]] Parameter untyped(const base::Value& value, ColumnKind kind);

/// A statement that may run several times; prepared on the server when it runs for the second time
/// with parameters of the same types.
struct Query {
    explicit Query(std::string_view text);

    struct Form {
        std::vector<Oid> types;
        int runs = 0;
        std::string name = {};         ///< on the server; empty where it is not prepared
        std::uint64_t generation = 0;  ///< of the connection that it is prepared on
    };
    /// The form for parameters of these types; null where there are too many to keep another.
    [[nodiscard]] Form* formOf(std::vector<Oid> types);
    /// Forgets what is prepared; whether anything was.
    bool forget();

    std::string sql;
    bool writes = false;
    bool isControl = false;  ///< of transactions
    std::deque<Form> forms = {};
};

/// The queries in use, one for each text.
class SharedQueries {
public:
    [[nodiscard]] std::shared_ptr<Query> of(const std::string& text);

private:
    std::unordered_map<std::string, std::weak_ptr<Query>> queries_;
};

/// A query with what it is run with; both outlive the exchange that they are given to.
struct Call {
    Query* query = nullptr;
    const std::vector<Parameter>* parameters = nullptr;
};

/// The names under which queries are prepared on a connection.
struct PreparedNames {
    std::uint64_t generation = 0;  ///< of the connection
    std::uint64_t given = 0;
    std::vector<std::string> released = {};  ///< not needed any more, but still there

    void release(const Query& query);
};

/// One thing that the server is sent.
struct Command {
    enum class Kind { Run, Prepare, RunPrepared } kind = Kind::Run;
    const std::string* text = nullptr;  ///< the statement or its name
    const std::string* name = nullptr;  ///< of a Prepare
    const std::vector<Parameter>* parameters = nullptr;
};

/// What goes to the server together, and what it makes of the queries that took part.
class Sending {
public:
    explicit Sending(PreparedNames& names) : names_(names) {}

    /// A statement without parameters that is none of the calls.
    void addBracket(Query& query);
    void add(const Call& call);
    void add(std::span<const Call> calls);

    [[nodiscard]] const std::vector<Command>& commands() const { return commands_; }
    /// The answers to the queries among those to all commands.
    [[nodiscard]] std::vector<Result> ofCalls(std::vector<Result> answers) const;
    /// Notes what is prepared now, after everything went well.
    void ran();
    /// Notes what was prepared in vain, after something failed.
    void failed(std::span<const Result> answers);

private:
    struct Taking {
        Query::Form* form;
        int runs;
        std::string name;
    };
    Taking& taking(Query::Form& form);
    void send(const Call& call);
    const std::string* preparedName(const Call& call);

    PreparedNames& names_;
    std::vector<Command> commands_;
    std::vector<std::size_t> calls_;  ///< places among the commands
    std::deque<Taking> takings_;      ///< commands point at their names
};

[[nodiscard]] std::vector<Oid> typesOf(const std::vector<Parameter>& parameters);
[[nodiscard]] std::vector<const char*> textsOf(const std::vector<Parameter>& parameters);

}  // namespace store::postgres
