#include <array>

#include "platform/base/text.h"
#include "reports/formats/export.h"

namespace reports {

namespace {

struct Named {
    Format format;
    std::string_view name;
    std::string_view extension;
};

constexpr std::array Formats = {
    Named{Format::Pdf, "PDF", ".pdf"},    Named{Format::Rtf, "RTF", ".rtf"},
    Named{Format::Html, "HTML", ".html"}, Named{Format::Excel, "Excel", ".xlsx"},
    Named{Format::Text, "text", ".txt"},  Named{Format::Tiff, "TIFF", ".tiff"},
    Named{Format::Csv, "CSV", ".csv"},
};

}  // namespace

std::string_view nameOf(Format format) { return Formats[static_cast<std::size_t>(format)].name; }

std::string_view extensionOf(Format format) {
    return Formats[static_cast<std::size_t>(format)].extension;
}

std::optional<Format> formatOf(std::string_view text) {
    for (const Named& known : Formats) {
        if (base::equalsNoCase(text, known.name) || base::equalsNoCase(text, known.extension) ||
            base::equalsNoCase(text, known.extension.substr(1))) {
            return known.format;
        }
    }
    return std::nullopt;
}

}  // namespace reports
