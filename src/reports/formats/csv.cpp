#include <string_view>

#include <fmt/format.h>

#include "reports/formats/flatrows.h"
#include "reports/formats/texts.h"

namespace reports {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

std::string csvText(std::string_view text) {
    if (text.find_first_of(",;\"\n\t") == std::string_view::npos && !text.starts_with(' ') &&
        !text.ends_with(' ')) {
        return std::string(text);
    }
    std::string result = "\"";
    for (const char c : text) {
        result += c == '"' ? "\"\"" : std::string(1, c);
    }
    return result + '"';
}

/// A text that a spreadsheet would take for a formula becomes one by no means.
std::string harmless(std::string text) {
    return !text.empty() && std::string_view("=+-@").find(text.front()) != std::string_view::npos
               ? '\'' + text
               : text;
}

/// As lists show and export it, whatever the page has; without thousands apart, which not every
/// reader knows.
std::string cellOf(CellKind kind, const base::Value& value) {
    if (value.isNull()) {
        return {};
    }
    switch (kind) {
        case CellKind::Whole:
        case CellKind::Load:
            return fmt::format("{:.0f}", value.asNumber());
        case CellKind::Decimal:
        case CellKind::Money:
            return fmt::format("{:.2f}", value.asNumber());
        case CellKind::Time:
            return value.asDate().hhmm();
        case CellKind::Date:
        case CellKind::DateTime:
            return cellText(kind, value);
        case CellKind::Text:
        case CellKind::Days:
            break;
    }
    return csvText(harmless(plainCell(kind, value)));
}

/// What a file without a head says of itself in each row.
std::string originOf(const Heading& heading) {
    return joined({heading.confidential ? std::string(ConfidentialText) : "", heading.title,
                   heading.selection, heading.district, printedLine(heading)},
                  "; ");
}

class Csv : public Writer {
public:
    Csv(const KnownContent& content, files::Draft& draft)
        : draft_(draft),
          origin_(csvText(harmless(plain(originOf(content.heading()))))),
          rows_(content, [this](const auto& cells) { write(cells); }) {
        draft_.write(ByteOrderMark);
        for (const Column& column : rows_.columns()) {
            draft_.write(csvText(plain(column.caption)) + ',');
        }
        draft_.write("Report\r\n");
    }

    void take(const Item& item) override { rows_.take(item); }
    void finish() override { rows_.finish(); }

private:
    void write(const std::vector<base::Value>& cells) {
        std::string line;
        const std::vector<Column>& columns = rows_.columns();
        for (std::size_t i = 0; i < cells.size(); ++i) {
            line += cellOf(i < columns.size() ? columns[i].kind : CellKind::Text, cells[i]) + ',';
        }
        draft_.write(line + origin_ + "\r\n");
    }

    files::Draft& draft_;
    std::string origin_;
    FlatRows rows_;
};

}  // namespace

std::unique_ptr<Writer> csvWriter(const KnownContent& content, files::Draft& draft) {
    return std::make_unique<Csv>(content, draft);
}

}  // namespace reports
