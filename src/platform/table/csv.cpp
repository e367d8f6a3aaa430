#include "platform/table/csv.h"

#include "platform/base/text.h"

namespace table {

namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";

bool needsQuotes(std::string_view text) {
    return text.empty() || text.find_first_of(",\"\r\n") != std::string_view::npos ||
           base::trim(text).size() != text.size();
}

}  // namespace

void CsvWriter::separate() {
    if (!isFirst_) {
        out_ << ',';
    }
    isFirst_ = false;
}

void CsvWriter::text(std::string_view text) {
    separate();
    if (!needsQuotes(text)) {
        out_ << text;
        return;
    }
    out_ << '"';
    for (const char c : text) {
        if (c == '"') {
            out_ << '"';
        }
        out_ << c;
    }
    out_ << '"';
}

void CsvWriter::endRow() {
    out_ << "\r\n";
    isFirst_ = true;
}

bool writeCsv(const Excerpt& excerpt, std::ostream& out,
              const std::function<bool(double)>& keepGoing) {
    CsvWriter csv(out << Utf8Mark);
    for (const std::size_t column : excerpt.columns) {
        csv.text(excerpt.table.columns[column].caption);
    }
    csv.endRow();
    std::size_t done = 0;
    for (const std::size_t row : excerpt.rows) {
        if (keepGoing &&
            !keepGoing(static_cast<double>(done++) / static_cast<double>(excerpt.rows.size()))) {
            return false;
        }
        for (const std::size_t column : excerpt.columns) {
            const std::string text = excerpt.table.text(row, column);
            base::trim(text).empty() ? csv.null() : csv.text(text);
        }
        csv.endRow();
    }
    return true;
}

}  // namespace table
