#include "startup/base/fieldvalues.h"

#include "platform/base/text.h"
#include "startup/base/mdlNONULL.h"

namespace startup {

std::string textOf(const ado::Field& field) { return NoNullString(field.Value()).asText(); }

double numberOf(const ado::Field& field) { return NoNullNumber(field.Value()).asNumber(); }

std::int64_t wholeOf(const ado::Field& field) { return NoNullNumber(field.Value()).asInteger(); }

std::optional<base::Date> timeOf(const ado::Field& field) {
    const auto value = field.Value();
    const bool blank = value.isNull() || (value.isText() && base::trim(value.heldText()).empty());
    return blank ? std::nullopt : std::optional(value.asDate());
}

bool yesNoOf(const ado::Field& field) { return !field.isNull() && field.asBoolean(); }

}  // namespace startup
