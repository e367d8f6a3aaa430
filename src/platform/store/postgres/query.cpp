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

Query::Form* Query::formOf(std::vector<Oid> types) {
    constexpr std::size_t MaxForms = 32;
    const auto known = std::ranges::find(forms, types, &Form::types);
    if (known != forms.end()) {
        return &*known;
    }
    return forms.size() == MaxForms ? nullptr : &forms.emplace_back(Form{std::move(types)});
}

bool Query::forget() {
    bool wasPrepared = false;
    for (Form& form : forms) {
        wasPrepared = wasPrepared || !form.name.empty();
        form.name.clear();
    }
    return wasPrepared;
}

std::shared_ptr<Query> SharedQueries::of(const std::string& text) {
    constexpr std::size_t Many = 1000;
    if (queries_.size() >= Many) {
        std::erase_if(queries_, [](const auto& one) { return one.second.expired(); });
    }
    std::weak_ptr<Query>& kept = queries_[text];
    std::shared_ptr<Query> query = kept.lock();
    if (query == nullptr) {
        query = std::make_shared<Query>(text);
        kept = query;
    }
    return query;
}

void PreparedNames::release(const Query& query) {
    for (const Query::Form& form : query.forms) {
        if (!form.name.empty() && form.generation == generation) {
            released.push_back(form.name);
        }
    }
}

void Sending::addBracket(Query& query) { send({&query, &NoParameters}); }

void Sending::add(std::span<const Call> calls) {
    for (const Call& call : calls) {
        add(call);
    }
}

void Sending::add(const Call& call) {
    send(call);
    calls_.push_back(commands_.size() - 1);
}

void Sending::send(const Call& call) {
    const std::string* name = preparedName(call);
    commands_.push_back(
        name == nullptr ? Command{Command::Kind::Run, &call.query->sql, nullptr, call.parameters}
                        : Command{Command::Kind::RunPrepared, name, nullptr, call.parameters});
}

/// The name that the query is run by, which goes to the server first where it is new; null where it
/// is not worth one.
const std::string* Sending::preparedName(const Call& call) {
    Query::Form* form = call.query->formOf(typesOf(*call.parameters));
    if (form == nullptr) {
        return nullptr;
    }
    Taking& taken = taking(*form);
    if (taken.name.empty() && taken.runs > 0) {
        taken.name = fmt::format("vireo{}", ++names_.given);
        commands_.push_back(
            {Command::Kind::Prepare, &call.query->sql, &taken.name, call.parameters});
    }
    ++taken.runs;
    return taken.name.empty() ? nullptr : &taken.name;
}

Sending::Taking& Sending::taking(Query::Form& form) {
    const auto known = std::ranges::find(takings_, &form, &Taking::form);
    const bool isPrepared = form.generation == names_.generation;
    return known != takings_.end() ? *known
                                   : takings_.emplace_back(Taking{
                                         &form, form.runs, isPrepared ? form.name : std::string()});
}

std::vector<Result> Sending::ofCalls(std::vector<Result> answers) const {
    std::vector<Result> results;
    results.reserve(calls_.size());
    for (const std::size_t place : calls_) {
        results.push_back(std::move(answers[place]));
    }
    return results;
}

void Sending::failed(std::span<const Result> answers) {
    for (std::size_t i = 0; i < commands_.size(); ++i) {
        if (commands_[i].kind == Command::Kind::Prepare && answers[i] != nullptr &&
            library().resultStatus(answers[i].get()) == PGRES_COMMAND_OK) {
            names_.released.push_back(*commands_[i].name);
        }
    }
}

void Sending::ran() {
    for (Taking& taken : takings_) {
        taken.form->runs = taken.runs;
        taken.form->name = taken.name;
        taken.form->generation = names_.generation;
    }
}

}  // namespace store::postgres
