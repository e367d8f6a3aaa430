#include "runedit/validation/finding.h"

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

}  // namespace runedit
