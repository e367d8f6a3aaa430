#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ado/recordset.h"
#include "stops/sequence/runstops.h"

namespace stops {

/// What the log says of a change to a run's stops, word for word.
[[nodiscard]] std::string addedText(std::string_view stopId, std::int64_t sequence);
[[nodiscard]] std::string removedText(std::string_view stopId, std::int64_t sequence);
/// `way` is "up one", "down one", "up to top", …
[[nodiscard]] std::string movedText(std::string_view stopId, std::string_view way,
                                    std::int64_t oldSequence, std::int64_t newSequence);
[[nodiscard]] std::string mergedText(std::string_view fromRun, std::int64_t sequence,
                                     std::string_view toRun, std::int64_t newSequence);

/// Appends a row to RUNLOG for each change to the stops of one run.
class StopLog {
public:
    StopLog(ado::Connection& connection, const EditedRun& run);

    void added(const RunStop& stop);
    void removed(const RunStop& stop);
    /// To the top, and with the very same wording to the bottom: meant as it is.
    void movedToEnd(const RunStop& stop);
    /// By so many places, up or down.
    void movedBy(const RunStop& stop, std::int64_t newSequence, std::ptrdiff_t places, bool up);
    /// Merged into this run; the text names the two runs the wrong way round: meant as it is.
    void merged(const RunStop& stop, const std::string& fromRun, std::int64_t newSequence);

private:
    void append(const RunStop& stop, int activity, const std::string& description);

    const EditedRun& run_;
    ado::Recordset log_;
};

}  // namespace stops
