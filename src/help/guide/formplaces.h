#pragma once

#include <span>
#include <string>
#include <string_view>

#include "help/guide/guide.h"

namespace help {

/// Where the guide tells of a form, or of a part of it.
struct FormPlace {
    std::string_view form;  ///< its name
    std::string_view part;  ///< the name of a control that holds the focus or its surroundings;
                            ///< empty is the form itself
    std::string_view page;
    std::string_view anchor;
};

/// Every form of the suite, and the parts of which the guide tells elsewhere.
[[nodiscard]] std::span<const FormPlace> formPlaces();

/// Where the guide tells of a part of a form, or of the form where it does not tell of the part;
/// the contents for a form that nobody knows.
[[nodiscard]] Place placeOf(std::string_view form, std::span<const std::string> parts = {});

}  // namespace help
