#pragma once

#include <memory>
#include <vector>

#include "platform/base/notcopied.h"
#include "reports/base/content.h"
#include "reports/page/page.h"

namespace reports {

/// All pages of a report.
struct Pages {
    PageSize size;
    Heading heading;
    std::vector<Page> pages;
};

class PageMaking;

/// Lays a report out page by page. Until its end a page says "Page 3", then "Page 3 of 12".
class Layout : private base::NotCopied {
public:
    /// Takes what it needs of the content, which must outlive it.
    explicit Layout(Content& content);
    ~Layout();

    /// Lays out until another page is full; false at the report's end, when the last page and the
    /// numbers of all pages are written.
    bool layPage();
    [[nodiscard]] const Pages& pages() const;
    [[nodiscard]] Pages take();

private:
    std::unique_ptr<PageMaking> making_;
};

/// The whole report at once; what is done so far where `keepGoing` says no.
[[nodiscard]] Pages layOut(Content& content, const KeepGoing& keepGoing = {});

}  // namespace reports
