#pragma once

#include <functional>
#include <optional>
#include <string>

#include "runedit/editor/runfields.h"

namespace runedit {

/// A field that cannot be saved as it is.
struct FieldFault {
    RunField field;
    /// Small and not 0. An illegal character in the run's id and an unknown vehicle type have the
    /// same one, 7: meant as it is.
    int code = 0;
    std::string title;
    std::string text;
};

/// Codes of the checks that the suite's other programs do not know.
namespace faultcode {
inline constexpr int OverFill = 9;
inline constexpr int TooLong = 10;
}  // namespace faultcode

/// The longest texts that are saved, in characters. A run's id names files of the map software.
inline constexpr std::size_t MaxRunIdLength = 30;
inline constexpr std::size_t MaxTextLength = 255;
inline constexpr std::size_t MaxCommentLength = 4000;
inline constexpr int MaxOverFill = 999;

/// Questions by key; each answers with a description, or with "NOT FOUND".
struct KeyQuestions {
    using Question = std::function<std::string(const std::string& key)>;
    Question run;
    Question runFamily;
    Question school;
    Question tripType;
    Question locCode;
    Question vehType;
};

/// The first field that cannot be saved; nothing where all can. A new run must not have the id of
/// another one. A key with an apostrophe is refused without a question, which it would break.
[[nodiscard]] std::optional<FieldFault> findFault(const RunTexts& texts, bool isNew,
                                                  const KeyQuestions& questions);

/// The fault of a new run whose id belongs to a run of that description.
[[nodiscard]] FieldFault conflictingRunId(const std::string& otherDescription);

/// The first time field that the calculation of stop times cannot use: the time it starts from must
/// be one, the bell may be missing.
[[nodiscard]] std::optional<FieldFault> findTimeFault(const RunTexts& texts);

/// The time in a field; nothing for a text that is none.
[[nodiscard]] std::optional<base::Date> timeIn(const RunTexts& texts, RunField field);

}  // namespace runedit
