#include "platform/forms/flowrow.h"

#include <QLabel>
#include <QWidget>
#include <algorithm>

namespace forms {

void FlowRow::in(QHBoxLayout& row) {
    auto* flow = new FlowRow;
    flow->setSpacing(row.spacing());
    while (row.count() > 0) {
        const int stretch = row.stretch(0);
        row.setStretch(0, 0);
        flow->parts_.push_back({std::unique_ptr<QLayoutItem>(row.takeAt(0)), stretch});
    }
    row.addLayout(flow, 1);
    for (const Part& part : flow->parts_) {
        if (QLayout* inner = part.item->layout()) {
            flow->addChildLayout(inner);
        }
    }
}

FlowRow::~FlowRow() = default;

void FlowRow::addItem(QLayoutItem* item) { parts_.push_back({std::unique_ptr<QLayoutItem>(item)}); }

int FlowRow::count() const { return static_cast<int>(parts_.size()); }

QLayoutItem* FlowRow::itemAt(int index) const {
    return index >= 0 && index < count() ? parts_[static_cast<std::size_t>(index)].item.get()
                                         : nullptr;
}

QLayoutItem* FlowRow::takeAt(int index) {
    if (itemAt(index) == nullptr) {
        return nullptr;
    }
    QLayoutItem* item = parts_[static_cast<std::size_t>(index)].item.release();
    parts_.erase(parts_.begin() + index);
    return item;
}

/// A caption and what it is of, a label and the field that its letter leads to, a sign and what it
/// is about.
bool FlowRow::isWithNext(std::size_t part) const {
    const auto* label = qobject_cast<const QLabel*>(parts_[part].item->widget());
    if (label == nullptr || part + 1 >= parts_.size()) {
        return false;
    }
    return !label->pixmap().isNull() || label->text().endsWith(':') ||
           (label->buddy() != nullptr && parts_[part + 1].item->widget() == label->buddy());
}

int FlowRow::least(const Part& part) const {
    return part.item->isEmpty() ? 0 : part.item->minimumSize().width();
}

int FlowRow::wanted(const Part& part) const {
    const QWidget* widget = part.item->widget();
    const bool mayEnd =
        widget != nullptr && widget->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored;
    return part.item->isEmpty() || mayEnd ? least(part) : part.item->sizeHint().width();
}

int FlowRow::widthOf(const Line& line, int (FlowRow::*of)(const Part&) const) const {
    int width = 0;
    for (std::size_t part = line.from; part < line.until; ++part) {
        const int own = (this->*of)(parts_[part]);
        width += own + (own > 0 && width > 0 ? spacing() : 0);
    }
    return width;
}

int FlowRow::heightOf(const Line& line) const {
    int height = 0;
    for (std::size_t part = line.from; part < line.until; ++part) {
        if (!parts_[part].item->isEmpty()) {
            height = std::max(height, parts_[part].item->sizeHint().height());
        }
    }
    return height;
}

FlowRow::Line FlowRow::together(std::size_t from) const {
    std::size_t last = from;
    while (isWithNext(last)) {
        ++last;
    }
    return {from, last + 1};
}

std::vector<FlowRow::Line> FlowRow::linesIn(int width) const {
    std::vector<Line> lines;
    for (std::size_t part = 0; part < parts_.size();) {
        const Line next = together(part);
        if (!lines.empty() && widthOf({lines.back().from, next.until}, &FlowRow::wanted) <= width) {
            lines.back().until = next.until;
        } else {
            lines.push_back(next);
        }
        part = next.until;
    }
    return lines;
}

QSize FlowRow::sizeHint() const {
    const Line all{0, parts_.size()};
    return {widthOf(all, &FlowRow::wanted), heightOf(all)};
}

QSize FlowRow::minimumSize() const {
    int width = 0;
    for (std::size_t part = 0; part < parts_.size();) {
        const Line one = together(part);
        width = std::max(width, widthOf(one, &FlowRow::least));
        part = one.until;
    }
    return {width, heightOf({0, parts_.size()})};
}

int FlowRow::heightForWidth(int width) const {
    int height = 0;
    for (const Line& line : linesIn(width)) {
        const int own = heightOf(line);
        height += own + (own > 0 && height > 0 ? spacing() : 0);
    }
    return height;
}

void FlowRow::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    const auto lines = linesIn(rect.width());
    int top = rect.top();
    for (const Line& line : lines) {
        const int height = lines.size() == 1 ? rect.height() : heightOf(line);
        place(line, {rect.left(), top, rect.width(), height});
        top += height > 0 ? height + spacing() : 0;
    }
}

void FlowRow::place(const Line& line, const QRect& rect) const {
    int stretches = 0;
    int expanding = 0;
    for (std::size_t part = line.from; part < line.until; ++part) {
        stretches += parts_[part].stretch;
        expanding += parts_[part].item->expandingDirections().testFlag(Qt::Horizontal) ? 1 : 0;
    }
    const int left = rect.width() - widthOf(line, &FlowRow::wanted);
    int missing = std::max(-left, 0);
    int at = rect.left();
    for (std::size_t part = line.from; part < line.until; ++part) {
        const auto& [item, stretch] = parts_[part];
        const bool expands = item->expandingDirections().testFlag(Qt::Horizontal);
        const int share = left <= 0       ? 0
                          : stretches > 0 ? left * stretch / stretches
                          : expands       ? left / expanding
                                          : 0;
        const int given = std::min(missing, wanted(parts_[part]) - least(parts_[part]));
        const int width =
            std::min(wanted(parts_[part]) - given + share, item->maximumSize().width());
        missing -= given;
        item->setGeometry({at, rect.top(), width, rect.height()});
        at += width + (width > 0 && item->spacerItem() == nullptr ? spacing() : 0);
    }
}

}  // namespace forms
