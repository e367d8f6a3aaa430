#include "data/records/fields.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/base/timetext.h"

namespace data {

namespace {

bool isBlank(const base::Value& value) {
    return value.isNull() || (value.isText() && base::trim(value.heldText()).empty());
}

bool isNumber(const base::Value& value) { return value.isInteger() || value.isDouble(); }

/// A value as its field holds it.
base::Value heldValue(const Field& field, const base::Value& value) {
    if (field.kind == FieldKind::YesNo) {
        return !value.isNull() && value.asBoolean();
    }
    if (isBlank(value)) {
        return field.blank;
    }
    if (field.kind == FieldKind::Key) {
        return base::trim(value.asText());
    }
    return field.kind == FieldKind::Time && value.isDate() ? value.asDate().timeValue() : value;
}

/// A text that is a time as the field holds it, on the day of the time before it: a run may drive
/// past midnight.
base::Value timeOrText(const Field& field, const base::Value& typed, const base::Value& before) {
    const auto time = base::Date::parse(base::tidyTime(typed.heldText()));
    const bool keepsDay = field.kind == FieldKind::DateTime;
    if (!time || (keepsDay && *time != time->timeValue())) {
        return typed;
    }
    return keepsDay && before.isDate() ? before.asDate().dateValue().plusSeconds(time->seconds)
                                       : time->timeValue();
}

std::string inWords(const base::Value& value) {
    if (value.isNull()) {
        return "empty";
    }
    if (value.isYesNo()) {
        return value.asBoolean() ? "Yes" : "No";
    }
    const bool isTimeOfDay = value.isDate() && value.asDate() == value.asDate().timeValue();
    const auto text = isTimeOfDay ? base::tidyTime(value.asText()) : value.asText();
    return isNumber(value) ? text : fmt::format("\"{}\"", text);
}

using FieldRule = std::pair<const Rule*, const Field*>;

std::vector<FieldRule> rulesInOrder(const FieldTable& fields) {
    std::vector<FieldRule> rules;
    for (const Field& field : fields) {
        for (const Rule& rule : field.rules) {
            rules.emplace_back(&rule, &field);
        }
    }
    std::ranges::stable_sort(rules, {}, [](const FieldRule& rule) { return rule.first->code; });
    return rules;
}

}  // namespace

Field shownField(std::string_view column, FieldKind kind, std::string_view control) {
    return {.column = column,
            .kind = kind,
            .control = control,
            .use = FieldUse::Shown,
            .blank = kind == FieldKind::Number ? base::Value(0) : base::Value()};
}

const Field& fieldOf(const FieldTable& fields, std::string_view column) {
    const auto found = std::ranges::find(fields, column, &Field::column);
    if (found == fields.end()) {
        throw std::out_of_range(fmt::format("The form has no field \"{}\".", column));
    }
    return *found;
}

Record::Record(const FieldTable& fields) : fields_(&fields) {
    for (const Field& field : fields) {
        values_.push_back(heldValue(field, {}));
    }
}

std::size_t Record::placeOf(std::string_view column) const {
    return static_cast<std::size_t>(&fieldOf(*fields_, column) - fields_->data());
}

const base::Value& Record::operator[](std::string_view column) const {
    return values_[placeOf(column)];
}

std::string Record::text(std::string_view column) const {
    const auto& value = (*this)[column];
    return value.isNull() ? std::string() : value.asText();
}

void Record::set(std::string_view column, const base::Value& stored) {
    values_[placeOf(column)] = heldValue(fieldOf(*fields_, column), stored);
}

void Record::enter(std::string_view column, const base::Value& typed) {
    const Field& field = fieldOf(*fields_, column);
    const bool isTime = field.kind == FieldKind::Time || field.kind == FieldKind::DateTime;
    set(column, isTime && typed.isText() ? timeOrText(field, typed, (*this)[column]) : typed);
}

std::optional<Fault> findFault(const Entries& entries) {
    for (const auto& [rule, field] : rulesInOrder(entries.entered.fields())) {
        if (!rule->ofStored && !entries.isTouched(field->column)) {
            continue;
        }
        if (auto fault = rule->check(*field, entries)) {
            fault->column = field->column;
            fault->code = fault->code == 0 ? rule->code : fault->code;
            return fault;
        }
    }
    return std::nullopt;
}

Rule atMost(std::size_t characters, int code) {
    const auto check = [characters](const Field& field, const Entries& entries) {
        const auto text = std::string(base::trim(entries.entered.text(field.column)));
        const auto fits = base::firstCharacters(text, characters).size();
        return fits == text.size()
                   ? std::nullopt
                   : std::optional(Fault{
                         fmt::format("{} Too Long", field.caption),
                         fmt::format("Oops, the {} may not be longer than {} characters.  Please "
                                     "leave out the part that begins with \"{}\".",
                                     field.caption, characters,
                                     base::firstCharacters(text.substr(fits), 20))});
    };
    return {check, code};
}

Rule upTo(double most, const std::string& title, const std::string& text, int code) {
    const auto check = [=](const Field& field, const Entries& entries) {
        const auto& value = entries.entered[field.column];
        const bool fits = isNumber(value) && value.asNumber() >= 0 && value.asNumber() <= most;
        return fits ? std::nullopt : std::optional(Fault{title, text});
    };
    return {check, code};
}

std::string changesByOthers(const Entries& entries, const Record& stored) {
    std::string lines;
    for (const Field& field : stored.fields()) {
        const auto& now = stored[field.column];
        const auto& before = entries.known[field.column];
        const auto& mine = entries.entered[field.column];
        if (field.use == FieldUse::Shown || now == before) {
            continue;
        }
        lines += fmt::format("{}{}: was {}, is now {}", lines.empty() ? "" : "\n", field.caption,
                             inWords(before), inWords(now));
        if (entries.isTouched(field.column) && mine != now) {
            lines += fmt::format(", you entered {}", inWords(mine));
        }
    }
    return lines;
}

}  // namespace data
