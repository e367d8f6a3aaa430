#pragma once

#include <memory>

#include "platform/base/notcopied.h"
#include "reports/page/layout.h"
#include "reports/page/piece.h"

namespace reports {

/// What makes the pages of one form of report.
class PageMaking : private base::NotCopied {
public:
    explicit PageMaking(Content& content);
    virtual ~PageMaking() = default;

    /// As Layout::layPage().
    virtual bool layPage() = 0;

    Pages pages;

protected:
    /// The next item; the one that was looked at first.
    std::optional<Item> take();
    /// The next item, which stays; null at the end.
    const Item* look();
    [[nodiscard]] const Content& content() const { return content_; }

    /// Ends a page whose foot is placed: its number is put, what it does not need is given back.
    void addPage(Page page, std::size_t number, float numberRight, float numberBaseline);
    /// Writes into all pages from one on of how many they are.
    void numberPages(std::size_t first);

private:
    Content& content_;
    std::optional<Item> looked_;
    bool isRead_ = false;
};

/// A list: head, captions, groups, rows, totals.
std::unique_ptr<PageMaking> makeList(Content& content);
/// A sheet a run for its driver.
std::unique_ptr<PageMaking> makeSheets(Content& content);

}  // namespace reports
