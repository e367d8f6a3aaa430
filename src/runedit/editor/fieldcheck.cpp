#include "runedit/editor/fieldcheck.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/base/timetext.h"

namespace runedit {

namespace {

using Fault = std::optional<FieldFault>;

constexpr std::string_view NotFound = "NOT FOUND";
constexpr std::string_view IllegalCharacters = "#%*'/\\\"";

std::string trimmed(const std::string& text) { return std::string(base::trim(text)); }

bool isBlank(const std::string& text) { return base::trim(text).empty(); }

Fault runIdFault(const RunTexts& texts, bool isNew, const KeyQuestions& questions) {
    const auto runId = trimmed(texts[RunField::RunId]);
    if (runId.empty()) {
        return FieldFault{RunField::RunId, 1, "Blank RunID",
                          "Oops, you have not entered a RunID.  Please do so."};
    }
    // The key of a stored run cannot be changed any more.
    if (isNew && runId.find_first_of(IllegalCharacters) != std::string::npos) {
        // Two backslashes stand in the text itself.
        return FieldFault{RunField::RunId, 7, "Illegal Character in the RUNID",
                          "Oops, you have entered a RunID using one of the following characters: "
                          "(#, %, *, /, \\\\, \", ') these are not allowed.  Please change your "
                          "Run ID."};
    }
    if (!isNew) {
        return {};
    }
    const auto other = questions.run(runId);
    return other == NotFound ? Fault() : conflictingRunId(other);
}

struct KeyRule {
    RunField field;
    KeyQuestions::Question KeyQuestions::*question;
    int code;
    std::string_view name;
    std::string_view title;
};

constexpr std::array<KeyRule, 5> KeyRules{{
    {RunField::RunFamily, &KeyQuestions::runFamily, 3, "Run Family ID", "Invalid Run Family ID"},
    {RunField::School, &KeyQuestions::school, 4, "School", "Invalid School"},
    {RunField::TripType, &KeyQuestions::tripType, 5, "Trip Type", "Invalid Trip Type"},
    {RunField::LocCode, &KeyQuestions::locCode, 6, "Location", "Invalid Location"},
    {RunField::VehType, &KeyQuestions::vehType, 7, "Vehicle Type", "Invalid Vehicle Type"},
}};

Fault keyFault(const KeyRule& rule, const RunTexts& texts, const KeyQuestions& questions) {
    const auto key = trimmed(texts[rule.field]);
    if (key.empty() || (questions.*rule.question)(key) != NotFound) {
        return {};
    }
    return FieldFault{
        rule.field, rule.code, std::string(rule.title),
        fmt::format("Oops, you have entered a {} that is not in the list.  Please do so.",
                    rule.name)};
}

Fault timeFault(const RunTexts& texts, RunField field) {
    if (timeIn(texts, field)) {
        return {};
    }
    const auto name = infoOf(field).caption;
    return FieldFault{
        field, 8, fmt::format("Invalid {}", name),
        fmt::format("Oops, you have entered an Invalid {}.  Please reenter the time, making sure "
                    "to include the ':' to seperate the hour from minutes (hh:mm:ss AM format).",
                    name)};
}

Fault overFillFault(const RunTexts& texts) {
    const auto text = trimmed(texts[RunField::OverFill]);
    const bool digits =
        std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    constexpr std::size_t EnoughDigits = 20;
    if (digits && text.size() <= EnoughDigits && base::leadingNumber(text) <= MaxOverFill) {
        return {};
    }
    return FieldFault{
        RunField::OverFill, faultcode::OverFill, "Invalid Over Fill",
        fmt::format("Oops, you have entered an Over Fill that is not a number of seats.  Please "
                    "enter a whole number from 0 to {}.",
                    MaxOverFill)};
}

struct LengthRule {
    RunField field;
    std::size_t longest;
};

constexpr std::array<LengthRule, 4> LengthRules{{{RunField::RunId, MaxRunIdLength},
                                                 {RunField::Description, MaxTextLength},
                                                 {RunField::Comment, MaxCommentLength},
                                                 {RunField::ClosedStreets, MaxTextLength}}};

Fault lengthFault(const LengthRule& rule, const RunTexts& texts, bool isNew) {
    if (rule.field == RunField::RunId && !isNew) {
        return {};
    }
    const auto text = base::trim(texts[rule.field]);
    if (base::firstCharacters(text, rule.longest).size() == text.size()) {
        return {};
    }
    const auto name = infoOf(rule.field).caption;
    return FieldFault{rule.field, faultcode::TooLong, fmt::format("{} Too Long", name),
                      fmt::format("Oops, the {} may not be longer than {} characters.  Please "
                                  "shorten it.",
                                  name, rule.longest)};
}

template <class Rules, class Check>
Fault firstOf(const Rules& rules, Check check) {
    for (const auto& rule : rules) {
        if (auto fault = check(rule)) {
            return fault;
        }
    }
    return {};
}

constexpr std::array TimeFields{RunField::BellTime, RunField::StartTime, RunField::EndTime};

}  // namespace

FieldFault conflictingRunId(const std::string& otherDescription) {
    return {RunField::RunId, 2, "Conflicting RunID",
            "Oops, you have entered a RunID that is already being used by another run.  The "
            "description of the other conflicting run is: " +
                otherDescription + ".  Please change the RunID."};
}

std::optional<base::Date> timeIn(const RunTexts& texts, RunField field) {
    const auto time = base::Date::parse(base::tidyTime(texts[field]));
    return time ? std::optional(time->timeValue()) : std::nullopt;
}

std::optional<FieldFault> findFault(const RunTexts& texts, bool isNew,
                                    const KeyQuestions& questions) {
    auto fault = runIdFault(texts, isNew, questions);
    if (!fault) {
        fault = firstOf(KeyRules,
                        [&](const KeyRule& rule) { return keyFault(rule, texts, questions); });
    }
    if (!fault) {
        fault = firstOf(TimeFields, [&](RunField field) { return timeFault(texts, field); });
    }
    if (!fault) {
        fault = overFillFault(texts);
    }
    if (!fault) {
        fault = firstOf(LengthRules,
                        [&](const LengthRule& rule) { return lengthFault(rule, texts, isNew); });
    }
    return fault;
}

std::optional<FieldFault> findTimeFault(const RunTexts& texts) {
    const auto anchor = timesFromStart(texts) ? RunField::StartTime : RunField::EndTime;
    if (auto fault = timeFault(texts, anchor)) {
        return fault;
    }
    return isBlank(texts[RunField::BellTime]) ? Fault() : timeFault(texts, RunField::BellTime);
}

}  // namespace runedit
