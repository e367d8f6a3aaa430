#include "tools/district/command/call.h"

#include <iostream>

#include <fmt/format.h>

#include "tools/district/base/terminal.h"
#include "tools/district/command/misuse.h"

namespace tools::district {

QString toParser(const std::string& bytes) { return QString::fromLatin1(bytes.c_str()); }
std::string fromParser(const QString& text) { return text.toLatin1().toStdString(); }

bool Call::isTyped() const { return result == nullptr && &in == &std::cin && district::isTyped(); }

void Call::tell(const char* what, const QJsonValue& value) const {
    if (result != nullptr) {
        result->insert(what, value);
    }
}

std::optional<std::string> Call::text(const char* option) const {
    return options.isSet(option) ? std::optional(fromParser(options.value(option))) : std::nullopt;
}

std::optional<std::uint64_t> Call::number(const char* option, std::uint64_t least,
                                          std::uint64_t most) const {
    if (!options.isSet(option)) {
        return std::nullopt;
    }
    bool isNumber = false;
    const QString text = options.value(option);
    const std::uint64_t value = text.toULongLong(&isNumber);
    if (!isNumber || value < least || value > most) {
        throw Misuse{fmt::format("--{} takes a whole number from {} to {}, not \"{}\".", option,
                                 least, most, fromParser(text))};
    }
    return value;
}

}  // namespace tools::district
