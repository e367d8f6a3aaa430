#include "reports/catalog/reading.h"

#include <string_view>

#include <fmt/format.h>

#include "platform/base/text.h"

namespace reports {

namespace {

std::string ofSession(const Stored& stored, const std::string& question) {
    return fmt::format(fmt::runtime(question), stored.session, stored.first, stored.last);
}

}  // namespace

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

void StoredContent::open(ado::Recordset& rows, const std::string& question,
                         ado::CursorType cursor) const {
    rows.Open(ofSession(stored_, question), stored_.work, cursor);
}

void countRows(Stored& stored, const std::string& condition) {
    const auto fields = base::joined(stored.report.groups, ", ",
                                     [](const Group& group) { return "Q." + group.field; });
    const auto counted = fmt::format("FROM ({} AND {}) AS Q", stored.definition.rows, condition);
    ado::Recordset rows(
        ofSession(stored, fields.empty() ? "SELECT COUNT(*) AS N " + counted
                                         : fmt::format("SELECT {0}, COUNT(*) AS N {1} GROUP BY {0}",
                                                       fields, counted)),
        stored.work);
    stored.counts.groups.resize(stored.report.groups.size());
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto count = static_cast<std::size_t>(rows["N"].asInteger());
        stored.counts.rows += count;
        std::vector<std::string> values;
        for (auto& level : stored.counts.groups) {
            const auto field = static_cast<int>(values.size());
            values.push_back(base::lowered(wordsOf(rows.Fields(field))));
            level[values] += count;
        }
    }
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
