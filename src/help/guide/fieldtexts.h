#pragma once

#include <span>
#include <string_view>

namespace help {

/// What a field of a form means beyond its caption: unit, effect, what follows from it.
struct FieldText {
    std::string_view form;
    std::string_view field;  ///< the control's name
    std::string_view text;
};

/// The fields whose meaning is not plain from their captions, form by form.
[[nodiscard]] std::span<const FieldText> fieldTexts();

}  // namespace help
