#include "startup/base/mdlNONULL.h"

#include <exception>

#include "platform/base/text.h"
#include "startup/base/trap.h"

namespace startup {

namespace {

bool isBlank(const base::Value& value) {
    return value.isNull() || (value.isText() && base::trim(value.heldText()).empty());
}

bool hasNumber(const base::Value& value) {
    if (value.isInteger() || value.isDouble()) {
        return value.asNumber() != 0;
    }
    return !value.isNull() && base::leadingNumber(value.asText()) != 0;
}

}  // namespace

base::Value NoNullString(base::Value value) {
    return trapped("NoNullString", "mdlNONULL", [&]() -> base::Value {
        return isBlank(value) ? base::Value(" ") : std::move(value);
    });
}

base::Value NoNullNumber(base::Value value) {
    try {
        return hasNumber(value) ? std::move(value) : base::Value(0);
    } catch (const std::exception&) {
        return 0;
    }
}

bool SetBoolean(int checkBoxValue) { return checkBoxValue == 1; }

int SetCheckBox(bool flag) { return flag ? 1 : 0; }

}  // namespace startup
