#include "reports/catalog/reading.h"

#include <string_view>

#include <fmt/format.h>

#include "platform/base/text.h"

namespace reports {

std::optional<Item> StoredContent::next() {
    while (waiting_.empty()) {
        if (!readOn()) {
            return std::nullopt;
        }
    }
    std::optional<Item> item(std::move(waiting_.front()));
    waiting_.pop_front();
    return item;
}

void StoredContent::open(ado::Recordset& rows, const std::string& question) const {
    rows.Open(fmt::format(fmt::runtime(question), stored_.session), stored_.work);
}

std::size_t StoredContent::counted(const std::string& question) const {
    ado::Recordset rows;
    open(rows, fmt::format("SELECT COUNT(*) AS N FROM ({}) AS Q", question));
    return static_cast<std::size_t>(rows["N"].asInteger());
}

std::string wordsOf(const ado::Field& field) {
    return field.isNull() ? std::string() : std::string(base::trim(field.asText()));
}

std::optional<double> figureOf(const ado::Field& field) {
    return field.isNull() ? std::nullopt : std::optional(field.asNumber());
}

std::string countOf(std::size_t count, const std::string& noun) {
    const auto number = cellText(CellKind::Whole, static_cast<std::int64_t>(count));
    if (count == 1) {
        return fmt::format("{} {}", number, noun);
    }
    return noun.ends_with('y')
               ? fmt::format("{} {}ies", number, std::string_view(noun).substr(0, noun.size() - 1))
               : fmt::format("{} {}s", number, noun);
}

bool PageBreaks::isDue(ado::Recordset& row) {
    if (wanted_ == PageBreak::None) {
        return false;
    }
    const char* field = wanted_ == PageBreak::Run     ? "RUN"
                        : wanted_ == PageBreak::Route ? "ROUTEID"
                                                      : "SCHOOLNAME";
    auto now = base::lowered(wordsOf(row[field]));
    const bool isDue = last_.has_value() && *last_ != now;
    last_ = std::move(now);
    return isDue;
}

}  // namespace reports
