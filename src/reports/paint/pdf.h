#pragma once

#include <string>

#include "reports/base/content.h"
#include "reports/page/layout.h"

namespace reports {

/// Writes pages as PDF, over a file of that name: with text that can be searched and copied in the
/// order of its letters, a bookmark for each mark, rows tagged in reading order and the title.
/// Returns false, with no file left, where `keepGoing` said no after a page. Raises "Path/File
/// access error" (75) with the system's reason, with no file left either.
bool paintPdf(const Pages& pages, const std::string& path, const KeepGoing& keepGoing = {});

}  // namespace reports
