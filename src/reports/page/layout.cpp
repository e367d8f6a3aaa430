#include "reports/page/layout.h"

#include <algorithm>

#include <fmt/format.h>

#include "reports/page/pagemaking.h"

namespace reports {

namespace {

constexpr Style NumberStyle{Face::Bold, 10, 0, Role::Artifact};

std::unique_ptr<PageMaking> makingOf(Content& content) {
    return content.report().form == Form::Sheet ? makeSheets(content) : makeList(content);
}

/// How much is done, from what has been read: a page shows as many rows as the one before.
double doneOf(const Pages& pages, std::size_t rows) {
    std::uint32_t last = 0;
    for (const Box& box : pages.pages.back().boxes) {
        last = std::max(last, box.row);
    }
    return rows == 0 ? 0 : std::min(1.0, static_cast<double>(last) / static_cast<double>(rows));
}

}  // namespace

PageMaking::PageMaking(Content& content) : content_(content) {
    pages.size = sizeOf(content.options());
    pages.heading = content.heading();
}

const Item* PageMaking::look() {
    if (!looked_ && !isRead_) {
        looked_ = content_.next();
        isRead_ = !looked_;
    }
    return looked_ ? &*looked_ : nullptr;
}

std::optional<Item> PageMaking::take() {
    look();
    return std::exchange(looked_, std::nullopt);
}

void PageMaking::addPage(Page page, std::size_t number, float numberRight, float numberBaseline) {
    put(page, NumberStyle, fmt::format("Page {}", number), numberRight, numberBaseline,
        Align::Right);
    page.boxes.shrink_to_fit();
    page.shapes.shrink_to_fit();
    page.marks.shrink_to_fit();
    pages.pages.push_back(std::move(page));
}

void PageMaking::numberPages(std::size_t first) {
    const std::size_t count = pages.pages.size() - first;
    for (std::size_t at = 0; at < count; ++at) {
        Page& page = pages.pages[first + at];
        const Box open = page.boxes.back();
        page.boxes.pop_back();
        page.text.resize(open.at);
        put(page, NumberStyle, fmt::format("Page {} of {}", at + 1, count), open.x + open.width,
            open.baseline, Align::Right);
        page.text.shrink_to_fit();
    }
}

Layout::Layout(Content& content) : making_(makingOf(content)) {}
Layout::~Layout() = default;

bool Layout::layPage() { return making_->layPage(); }
const Pages& Layout::pages() const { return making_->pages; }
Pages Layout::take() { return std::move(making_->pages); }

Pages layOut(Content& content, const KeepGoing& keepGoing) {
    Layout layout(content);
    while (layout.layPage() && (!keepGoing || keepGoing(doneOf(layout.pages(), content.size())))) {
    }
    return layout.take();
}

}  // namespace reports
