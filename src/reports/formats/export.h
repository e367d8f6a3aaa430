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
///
/// PDF, TIFF, RTF and HTML look as the report does. A workbook, a text and a CSV are tables; a sheet
/// for a driver becomes a row a stop there. In a workbook and a CSV a row has the titles of its
/// groups in columns before its cells, so that it can be sorted and filtered; totals of groups are
/// on a second sheet, a CSV has none. In a CSV a text that begins with "=", "+", "-" or "@" gets an
/// apostrophe before it, because a spreadsheet would take it for a formula; in a workbook a text is
/// a text.
bool exportReport(Content& content, Format format, const std::string& path,
                  const KeepGoing& keepGoing);

}  // namespace reports
