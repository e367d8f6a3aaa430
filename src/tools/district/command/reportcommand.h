#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "reports/base/report.h"
#include "tools/district/base/folders.h"
#include "tools/district/command/answer.h"

namespace tools::district {

/// What a command line asks of a report, as it was typed; empty is what the report itself wants.
struct ReportOptions {
    Folders folders;
    std::string report = {};             ///< its id; lists all reports where it is empty
    std::string runs = {};               ///< ids parted by commas, or a condition on table RUN
    std::string selection = {};          ///< the runs in words
    std::string format = {};             ///< otherwise by the output's extension
    std::string output = {};             ///< otherwise in the folder of reports
    std::string paper = {};              ///< "Letter", "A4"
    std::string orientation = {};        ///< "landscape", "portrait"
    std::string pageBreak = {};          ///< "run", "route", "school"
    std::string changedSince = {};       ///< a date
    std::vector<std::string> sort = {};  ///< fields, each with "DESC" behind it or not
    std::string user = {};               ///< as it is printed; otherwise who uses the computer
    bool names = false;
    bool withoutMaps = false;
    Result result = nullptr;
};

/// Makes a file of a report, or lists what reports there are. Returns false, with a complaint,
/// where a run that is named is not there. Raises Misuse, Interrupted, base::RunTimeError,
/// store::StoreError.
bool runReport(const ReportOptions& options, std::ostream& out, std::ostream& complaints);

}  // namespace tools::district
