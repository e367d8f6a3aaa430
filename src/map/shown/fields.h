#pragma once

#include <optional>
#include <string>

#include "platform/ado/recordset.h"
#include "platform/base/date.h"
#include "platform/base/text.h"
#include "platform/geo/projection.h"

/// A field's value as one of C++; Null is empty, 0 or No.
namespace map {

inline std::string textOf(const ado::Field& field) {
    return std::string(base::trim(field.textView()));
}
inline double numberOf(const ado::Field& field) { return field.isNull() ? 0 : field.asNumber(); }
inline int wholeOf(const ado::Field& field) { return static_cast<int>(numberOf(field)); }
inline bool flagOf(const ado::Field& field) { return !field.isNull() && field.asBoolean(); }
inline std::optional<base::Date> timeOf(const ado::Field& field) {
    const auto date = base::Date::fromIso(field.textView());
    return date ? std::optional(date->timeValue()) : std::nullopt;
}
inline geo::Feet placeOf(ado::Recordset& row) {
    return {numberOf(row["XPOS"]), numberOf(row["YPOS"])};
}

}  // namespace map
