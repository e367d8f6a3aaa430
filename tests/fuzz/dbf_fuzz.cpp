#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/base/error.h"
#include "platform/dbf/tablefile.h"
#include "tools/map/solver.h"

// Any bytes are a stop export: they are read as a table whose rows have all columns, which can be
// written again and perhaps solved, or they are refused with an error.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    try {
        const auto table = dbf::tableIn(bytes);
        for (const auto& row : table.rows) {
            if (row.size() != table.columns.size()) {
                std::abort();
            }
        }
        const tools::map::SolvedRun solved(
            {.run = "R1", .startOrEnd = "Start", .startTime = "8:00:00 AM"}, table);
        if (solved.run().visits.size() != table.rows.size()) {
            std::abort();
        }
        static_cast<void>(solved.directions());
        if (dbf::tableIn(dbf::bytesOf(table)).rows.size() != table.rows.size()) {
            std::abort();
        }
    } catch (const base::RunTimeError&) {
        // Refused.
    }
    return 0;
}
