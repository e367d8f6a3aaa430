#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <string>
#include <string_view>

#include "platform/base/error.h"
#include "tools/district/import/feed/schoolruns.h"

namespace {

constexpr const char* Names[] = {"stops.txt",      "routes.txt",     "trips.txt",
                                 "stop_times.txt", "calendar.txt",   "calendar_dates.txt",
                                 "shapes.txt",     "frequencies.txt"};

/// A folder in memory that lasts as long as the process.
const std::filesystem::path& folder() {
    static const std::filesystem::path Made = [] {
        std::string name = "/dev/shm/feed-fuzz-XXXXXX";
        return std::filesystem::path(::mkdtemp(name.data()));
    }();
    return Made;
}

/// The files of a feed, parted by zeros; what is missing is empty.
void writeFiles(std::string_view bytes) {
    for (const char* name : Names) {
        const auto end = std::min(bytes.find('\0'), bytes.size());
        std::ofstream(folder() / name) << bytes.substr(0, end);
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
}

}  // namespace

// Any bytes are a feed: its trips become runs, no more of them than there are trips, each with at
// most a hundred stops, or the feed is refused with an error.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tools::district;
    writeFiles({reinterpret_cast<const char*>(data), size});
    try {
        const auto feed = transit::readFeed(FeedFiles(folder()));
        SchoolTripOptions options;
        options.trips.resize(feed.trips.size());
        std::iota(options.trips.begin(), options.trips.end(), 0);
        const SchoolRuns runs = schoolRunsOf(feed, options);
        const auto lines = std::count(runs.runStops.begin(), runs.runStops.end(), '\r');
        if (runs.count > feed.trips.size() || static_cast<std::size_t>(lines) < runs.count) {
            std::abort();
        }
    } catch (const base::RunTimeError&) {
        // Refused.
    }
    return 0;
}
