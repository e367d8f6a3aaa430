#include "runedit/validation/finding.h"

#include <fmt/format.h>

#include "platform/ado/sqltext.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"

namespace runedit {

std::string accumulated(const Findings& findings, std::string_view separator) {
    std::string text;
    for (const Finding& finding : findings) {
        text += separator;
        text += base::trim(finding.message);
    }
    return text;
}

std::string onLines(std::string_view accumulated, std::string_view separator) {
    const auto sign = base::trimLeft(separator);
    std::string lines;
    for (auto at = accumulated.find(separator); at != std::string_view::npos;) {
        const auto from = at + separator.size();
        at = accumulated.find(separator, from);
        lines += fmt::format("{}{}{}", lines.empty() ? "" : "\n", sign,
                             base::trim(accumulated.substr(from, at - from)));
    }
    return lines;
}

void addRunWarning(ado::Connection& routing, std::string_view type, const Finding& finding) {
    routing.executeUncounted(
        fmt::format("INSERT INTO RUNWARNING (RUN, WARNINGTYPE, WARNINGDATETIME, WARNINGTEXT) "
                    "VALUES ('{}', '{}', #{}#, '{}')",
                    ado::escaped(base::codeOf(finding.run)), type, base::Now().text(),
                    ado::escaped(finding.message)));
}

}  // namespace runedit
