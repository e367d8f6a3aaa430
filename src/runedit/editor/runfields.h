#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/records/fields.h"

namespace runedit {

/// The fields of the run editor in the order in which they are written, with their rules. A new
/// field is one line of this table and its control.
[[nodiscard]] const data::FieldTable& runFields();

/// What the rules of the keys ask, for who asks several questions at once (ado::ReadAhead).
[[nodiscard]] std::vector<std::string> keyReads(const data::Record& entered);

/// What a new run starts with: active, a pickup run timed from its start, the rest empty.
[[nodiscard]] data::Record newRun();

/// The fault of a new run whose id belongs to a run of that description.
[[nodiscard]] data::Fault conflictingRunId(const std::string& otherDescription);

/// The text in the box of a column.
using TypedText = std::function<std::string(std::string_view column)>;

/// What may be saved and yet looks like a slip: a day without a time of day, an end before the
/// start, a new run for no weekday. Only of what was entered; a line each, "" for nothing.
[[nodiscard]] std::string doubtsAbout(const data::Entries& entries, const TypedText& typed);

/// Whether a run is timed from its start, not from its end.
[[nodiscard]] bool timesFromStart(const data::Record& run);

/// The first time field that the calculation of stop times cannot use: the time it starts from must
/// be one, the bell may be missing.
[[nodiscard]] std::optional<data::Fault> findTimeFault(const data::Record& run);

}  // namespace runedit
