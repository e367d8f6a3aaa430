#include "reports/formats/flatrows.h"

#include <algorithm>
#include <utility>

#include "platform/base/text.h"
#include "reports/formats/texts.h"

namespace reports {

namespace {

/// "SCHOOLNAME" and "SCHOOLTITLE" as "School".
std::string captionOfField(std::string_view field) {
    for (const std::string_view ending : {"NAME", "TITLE"}) {
        if (field.size() > ending.size() && field.ends_with(ending)) {
            field.remove_suffix(ending.size());
        }
    }
    std::string caption = base::lowered(field);
    if (!caption.empty()) {
        caption.front() = base::uppered(caption.front());
    }
    return caption;
}

Column textColumn(std::string field, std::string caption, double width) {
    Column column;
    column.field = std::move(field);
    column.caption = std::move(caption);
    column.width = width;
    column.grows = true;
    return column;
}

}  // namespace

FlatRows::FlatRows(const KnownContent& content, OnRow onRow)
    : onRow_(std::move(onRow)), hasRemarks_(content.hasRemarks()) {
    const Report& report = content.report();
    for (const Group& group : report.groups) {
        const bool isColumn =
            std::ranges::find(report.columns, group.title, &Column::field) != report.columns.end();
        columnOfGroup_.push_back(isColumn ? std::nullopt : std::optional(first_++));
        if (!isColumn) {
            columns_.push_back(textColumn(group.title, captionOfField(group.title), 120));
        }
    }
    titles_.resize(first_);
    columns_.insert(columns_.end(), report.columns.begin(), report.columns.end());
    if (hasRemarks_) {
        columns_.push_back(textColumn("", "Remarks", 200));
    }
}

void FlatRows::take(const Item& item) {
    std::visit([this](const auto& known) { put(known); }, item);
}

void FlatRows::put(const GroupHead& head) {
    flush();
    for (std::size_t level = head.level; level < columnOfGroup_.size(); ++level) {
        if (const auto column = columnOfGroup_[level]) {
            titles_[*column] = level == head.level ? base::Value(head.title) : base::Value();
        }
    }
}

void FlatRows::put(const Row& row) {
    if (row_) {
        flush();
    }
    row_ = row;
}

void FlatRows::put(const Remark& remark) { remarks_.push_back(remark.text); }

void FlatRows::flush() {
    if (!row_ && remarks_.empty()) {
        return;
    }
    std::vector<base::Value> cells = titles_;
    if (const auto row = std::exchange(row_, std::nullopt)) {
        cells.insert(cells.end(), row->cells.begin(), row->cells.end());
    }
    cells.resize(columns_.size() - static_cast<std::size_t>(hasRemarks_));
    // A remark that comes where none was expected stands behind the last column all the same.
    if (hasRemarks_ || !remarks_.empty()) {
        cells.emplace_back(joined(std::exchange(remarks_, {}), "\n"));
    }
    onRow_(cells);
}

}  // namespace reports
