#pragma once

#include <cstdint>
#include <string>

#include "platform/ado/recordset.h"
#include "stops/sequence/runstops.h"

namespace stops {

/// Appends a row to RUNLOG for each change to the stops of one run.
class StopLog {
public:
    StopLog(ado::Connection& connection, const EditedRun& run);

    void added(const RunStop& stop);
    void removed(const RunStop& stop);
    /// To the top, and with the very same wording to the bottom: meant as it is.
    void movedToEnd(const RunStop& stop);
    void movedByOne(const RunStop& stop, std::int64_t newSequence, bool up);
    /// Merged into this run; the text names the two runs the wrong way round: meant as it is.
    void merged(const RunStop& stop, const std::string& fromRun, std::int64_t newSequence);

private:
    void append(const RunStop& stop, int activity, const std::string& description);

    const EditedRun& run_;
    ado::Recordset log_;
};

}  // namespace stops
