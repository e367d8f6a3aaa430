#include "stops/triprecord/tripfields.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/base/text.h"

namespace stops {

namespace {

constexpr std::size_t MaxCommentCharacters = 255;

struct FieldNames {
    std::string_view column;
    std::string_view caption;
};

constexpr std::array<FieldNames, AllTripFields.size()> Names{{{"NUM_STUDENTS", "Passengers"},
                                                              {"LOAD_TIME", "Load time"},
                                                              {"TIME_TOSTOP", "Driving time"},
                                                              {"DIST_TOSTOP", "Distance"},
                                                              {"TIME_AT_STOP", "Time at stop"},
                                                              {"RUN_PICKUP_SIDE", "Pick-up side"},
                                                              {"ACTIVE", "Active"},
                                                              {"COMMENT", "Comment"}}};

const FieldNames& namesOf(TripField field) { return Names[static_cast<std::size_t>(field)]; }

/// What a number may be: more than these no school bus takes or drives.
struct NumberRule {
    TripField field;
    double most;
    std::string_view message;
    std::string_view title;
};

constexpr std::array NumberRules{
    NumberRule{TripField::Students, 999,
               "Oops, you have entered an invalid number of passengers.  Please enter a whole "
               "number from 0 to 999.",
               "Invalid Number of Passengers"},
    NumberRule{TripField::LoadTime, 999.99,
               "Oops, you have entered an invalid load time.  Please enter the minutes at the "
               "stop, from 0 to 999.99.",
               "Invalid Load Time"},
    NumberRule{TripField::DriveTime, 999.99,
               "Oops, you have entered an invalid driving time.  Please enter the minutes from the "
               "stop before, from 0 to 999.99.",
               "Invalid Driving Time"},
    NumberRule{TripField::Distance, 999.99,
               "Oops, you have entered an invalid distance.  Please enter the miles from the stop "
               "before, from 0 to 999.99.",
               "Invalid Distance"}};

constexpr auto InvalidTimeText =
    "Oops, you have entered an invalid time at stop.  Please enter the time again, such as "
    "07:05 AM.";
constexpr auto BlankTimeText =
    "Oops, you have taken the time at stop away.  A stop that is on a run and has been timed needs "
    "its time.  Please enter it again, such as 07:05 AM.";
constexpr auto CommentCharactersText =
    "Oops, the comment has characters that are none to read, such as control characters.  Please "
    "type it instead of pasting it.";

std::optional<FieldFault> timeFault(const base::Value& time, bool mayBeBlank) {
    const bool blank = time.isNull();
    if (time.isDate() || (blank && mayBeBlank)) {
        return std::nullopt;
    }
    return FieldFault{TripField::TimeAtStop, blank ? BlankTimeText : InvalidTimeText,
                      blank ? "Blank Time at Stop" : "Invalid Time at Stop"};
}

bool isReadable(std::string_view text) {
    return std::ranges::none_of(text, [](char c) {
        return (static_cast<unsigned char>(c) < ' ' && c != '\n' && c != '\t') || c == '\x7f';
    });
}

std::optional<FieldFault> commentFault(const std::string& comment) {
    if (!isReadable(comment)) {
        return FieldFault{TripField::Comment, CommentCharactersText, "Invalid Comment"};
    }
    const auto fits = base::firstCharacters(comment, MaxCommentCharacters).size();
    if (fits == comment.size()) {
        return std::nullopt;
    }
    return FieldFault{
        TripField::Comment,
        fmt::format("Oops, the comment is too long.  It may have {} characters; "
                    "please leave out the part that begins with \"{}\".",
                    MaxCommentCharacters, base::firstCharacters(comment.substr(fits), 20)),
        "Comment Too Long"};
}

std::string shownText(const base::Value& value) {
    if (value.isNull() || value == base::Value("")) {
        return "nothing";
    }
    if (value.isYesNo()) {
        return value.asBoolean() ? "yes" : "no";
    }
    return value.isText() ? fmt::format("\"{}\"", value.heldText()) : value.asText();
}

}  // namespace

std::string_view columnOf(TripField field) { return namesOf(field).column; }

std::optional<FieldFault> findFault(const TripFields& entered, bool timeMayBeBlank) {
    for (const NumberRule& rule : NumberRules) {
        const base::Value& value = entered[rule.field];
        const bool isNumber = value.isInteger() || value.isDouble();
        if (!isNumber || !(value.asNumber() >= 0 && value.asNumber() <= rule.most)) {
            return FieldFault{rule.field, std::string(rule.message), std::string(rule.title)};
        }
    }
    if (auto fault = timeFault(entered[TripField::TimeAtStop], timeMayBeBlank)) {
        return fault;
    }
    return commentFault(entered[TripField::Comment].heldText());
}

std::string changesByOthers(const TripFields& held, const TripFields& stored,
                            const TripFields& entered) {
    std::string lines;
    for (const TripField field : AllTripFields) {
        if (stored[field] == held[field]) {
            continue;
        }
        lines +=
            fmt::format("{}{}: now {}, it was {}", lines.empty() ? "" : "\n",
                        namesOf(field).caption, shownText(stored[field]), shownText(held[field]));
        if (entered[field] != held[field] && entered[field] != stored[field]) {
            lines += fmt::format("; you entered {}", shownText(entered[field]));
        }
    }
    return lines;
}

TripFields merged(const TripFields& held, const TripFields& stored, const TripFields& entered) {
    TripFields result = stored;
    for (const TripField field : AllTripFields) {
        if (entered[field] != held[field]) {
            result[field] = entered[field];
        }
    }
    return result;
}

}  // namespace stops
