#pragma once

#include <string>

#include "reports/base/content.h"
#include "reports/page/layout.h"

namespace reports {

/// Writes pages as one TIFF for fax programs, over a file of that name: black and white, 200 dots
/// an inch, Group 4. Returns false, with no file left, where `keepGoing` said no after a page.
/// Raises "Path/File access error" (75) with the system's reason, with no file left either.
bool paintTiff(const Pages& pages, const std::string& path, const KeepGoing& keepGoing = {});

}  // namespace reports
