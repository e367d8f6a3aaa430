#include "platform/store/postgres/query.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "platform/base/text.h"

namespace store::postgres {

namespace {

enum Type : Oid { Bool = 16, Bigint = 20, TextType = 25, Double = 701, Timestamp = 1114 };

const std::vector<Parameter> NoParameters;

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

}  // namespace

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

void PreparedNames::release(const Query& query) {
    if (!query.name.empty() && query.generation == generation) {
        released.push_back(query.name);
    }
}

void Sending::add(const std::string& statement) {
    commands_.push_back({Command::Kind::Run, &statement, nullptr, &NoParameters});
}

void Sending::add(std::span<const Call> calls) {
    for (const Call& call : calls) {
        add(call);
    }
}

void Sending::add(const Call& call) {
    Query& query = *call.query;
    if (const auto types = typesOf(*call.parameters); query.types != types) {
        names_.release(query);
        query.types = types;
        query.name.clear();
        query.runs = 0;
    }
    Taking& taken = taking(query);
    if (taken.name.empty() && taken.runs > 0 && !query.isControl) {
        taken.name = fmt::format("vireo{}", ++names_.given);
        commands_.push_back({Command::Kind::Prepare, &query.sql, &taken.name, call.parameters});
    }
    ++taken.runs;
    calls_.push_back(commands_.size());
    commands_.push_back(
        taken.name.empty()
            ? Command{Command::Kind::Run, &query.sql, nullptr, call.parameters}
            : Command{Command::Kind::RunPrepared, &taken.name, nullptr, call.parameters});
}

Sending::Taking& Sending::taking(Query& query) {
    const auto known = std::ranges::find(takings_, &query, &Taking::query);
    const bool isPrepared = query.generation == names_.generation;
    return known != takings_.end()
               ? *known
               : takings_.emplace_back(
                     Taking{&query, query.runs, isPrepared ? query.name : std::string()});
}

std::vector<Result> Sending::ofCalls(std::vector<Result> answers) const {
    std::vector<Result> results;
    results.reserve(calls_.size());
    for (const std::size_t place : calls_) {
        results.push_back(std::move(answers[place]));
    }
    return results;
}

void Sending::ran() {
    for (Taking& taken : takings_) {
        taken.query->runs = taken.runs;
        taken.query->name = taken.name;
        taken.query->generation = names_.generation;
    }
}

}  // namespace store::postgres
