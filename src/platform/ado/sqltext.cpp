#include "platform/ado/sqltext.h"

namespace ado {

std::string escaped(std::string_view text) {
    std::string literal;
    for (const char c : text) {
        literal.append(c == '\'' ? 2 : 1, c);
    }
    return literal;
}

void Conditions::append(std::string_view fragment) {
    text_ = base::trim(text_);
    text_ += fragment;
}

void Conditions::add(std::string_view fragment) {
    if (!empty()) {
        append(" AND");
    }
    append(fragment);
}

void Conditions::addFilled(fmt::format_string<std::string_view> fragment, std::string_view value) {
    if (!base::trim(value).empty()) {
        add(fmt::format(fragment, base::trim(value)));
    }
}

}  // namespace ado
