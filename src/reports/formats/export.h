#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "reports/base/content.h"

namespace reports {

/// The kinds of file that a report is exported to.
enum class Format { Pdf, Rtf, Html, Excel, Text, Tiff, Csv };
inline constexpr Format AllFormats[] = {Format::Pdf,  Format::Rtf,  Format::Html, Format::Excel,
                                        Format::Text, Format::Tiff, Format::Csv};

/// "PDF"; what a planner chooses.
[[nodiscard]] std::string_view nameOf(Format format);
/// ".pdf"
[[nodiscard]] std::string_view extensionOf(Format format);
/// By name or extension, without regard to case and a leading dot.
[[nodiscard]] std::optional<Format> formatOf(std::string_view text);

/// Makes a file of a report, readable as its folder is and by nobody more. It is written beside and
/// gets its name at the end, so that a file of that name stays as it is until then. Returns false,
/// with nothing left behind, where `keepGoing` said no. Raises "Path/File access error" (75) with
/// the system's reason.
bool exportReport(Content& content, Format format, const std::string& path,
                  const KeepGoing& keepGoing);

}  // namespace reports
