#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string_view>

#include "platform/base/error.h"
#include "tools/district/import/map/binding.h"
#include "tools/district/import/map/mapfile.h"

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

}  // namespace

// Any bytes are a map file: each section is of a known kind and names fields of it, and reads any
// line, or the map is refused with the line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tools::district;
    try {
        for (const MapSection& section :
             readMap(std::string_view(reinterpret_cast<const char*>(data), size))) {
            require(section.kind != nullptr && section.line > 0);
            std::istringstream file("a,b,School\n1, x ,\"\"\n");
            CsvReader reader(file, {});
            reader.next();
            Binding binding(*section.kind, section.hasHeader ? &reader.record() : nullptr,
                            &section);
            reader.next();
            for (const auto& [field, how] : section.fields) {
                require(section.kind->find(field) != nullptr);
                if (const int place = binding.placeOf(field); place >= 0) {
                    const BoundCell cell = binding.cell(place, reader.record());
                    require(!cell.isNull || cell.text.empty());
                }
            }
        }
    } catch (const base::RunTimeError&) {
        // Refused.
    }
    return 0;
}
