#pragma once

#include <string>
#include <vector>

#include "support/rawdatabase.h"

namespace bench {

/// The statements of a calculation of all routes, reset included, through SQLite's own C interface:
/// the same reads, as many travel look-ups, the same columns written by row key, a transaction each
/// route and a checkpoint at the end. Gaps count as hours and minutes of the stored texts.
class RawDeadHead {
public:
    RawDeadHead(const std::string& routing, const std::string& cross);

    /// Returns the number of legs looked up.
    std::int64_t calculate();

private:
    struct Run {
        std::int64_t row, first, last;
        int start, end;  ///< seconds of the day
    };
    struct Travel {
        double minutes = -1, miles = -1;
    };

    void calculate(std::int64_t route, std::int64_t garage);
    Travel travel(std::int64_t a, std::int64_t b);

    RawDatabase routing_;
    RawDatabase cross_;
    std::int64_t legs_ = 0;
    std::vector<Run> runs_;
};

}  // namespace bench
