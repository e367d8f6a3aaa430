#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "platform/base/error.h"
#include "platform/table/csv.h"
#include "tools/district/import/source/csv.h"

namespace {

using tools::district::CsvReader;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// What was read, written again: it reads as the same cells.
void readBack(const std::string& written, const std::vector<std::string>& cells) {
    std::istringstream file("first\n" + written + "\n");  // a mark at the beginning would go
    CsvReader reader(file, {});
    require(reader.next() == CsvReader::Item::Record);
    require(reader.next() == CsvReader::Item::Record);
    require(reader.record().fields.size() == cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i) {
        require(reader.record().fields[i].text == cells[i]);
    }
    require(reader.next() == CsvReader::Item::End);
}

}  // namespace

// Any bytes are a file of separated values: each record is text in UTF-8 that can be written and
// read again, lines only go on, and a fault has a place and a reason.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream file(std::string(reinterpret_cast<const char*>(data), size));
    try {
        CsvReader reader(file, tools::district::shapeOf(file));
        std::int64_t line = 0;
        for (auto item = reader.next(); item != CsvReader::Item::End; item = reader.next()) {
            if (item == CsvReader::Item::Fault) {
                const auto& fault = reader.fault();
                require(fault.line >= line && fault.column > 0 && !fault.reason.empty());
                continue;
            }
            const auto& record = reader.record();
            require(record.line > line && !record.fields.empty());
            line = record.line;
            std::ostringstream written;
            table::CsvWriter csv(written);
            std::vector<std::string> cells;
            for (const auto& field : record.fields) {
                require(tools::district::firstInvalid(field.text) == field.text.size());
                csv.text(field.text);
                cells.emplace_back(field.text);
            }
            readBack(written.str(), cells);
        }
    } catch (const base::RunTimeError&) {
        // Refused.
    }
    return 0;
}
