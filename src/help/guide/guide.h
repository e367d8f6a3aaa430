#pragma once

#include <QUrl>
#include <variant>
#include <vector>

#include "help/guide/pagetext.h"

namespace help {

/// A place of the guide. Without an anchor it is the page's beginning, without a page none.
struct Place {
    QString page;    ///< its file's name without ".md"
    QString anchor;  ///< of a heading

    friend bool operator==(const Place&, const Place&) = default;
};

struct Page {
    QString name;
    std::vector<Section> sections;

    /// The first heading, or the name where there is none.
    [[nodiscard]] QString title() const;
    [[nodiscard]] const Section* section(const QString& anchor) const;
};

/// Pages that the contents list below one heading.
struct Chapter {
    QString title;
    std::vector<QString> pages;
};

/// The guide as it lies in a folder: pages in ".md" files, their pictures below. "README.md" is its
/// contents, a list of links below each of its headings; a page that it does not list comes last.
///
/// A folder that is not there gives a guide without pages.
class Guide {
public:
    static constexpr auto Contents = "README";

    explicit Guide(QString folder);

    [[nodiscard]] const QString& folder() const { return folder_; }
    [[nodiscard]] bool isEmpty() const { return pages_.empty(); }
    [[nodiscard]] const std::vector<Chapter>& chapters() const { return chapters_; }
    /// In the order of the chapters, the contents before them.
    [[nodiscard]] const std::vector<Page>& pages() const { return pages_; }
    /// Null where there is none of that name.
    [[nodiscard]] const Page* page(const QString& name) const;
    /// Whether the page and, where one is named, the anchor are there.
    [[nodiscard]] bool has(const Place& place) const;

    /// The page as it is written; empty where it cannot be read any more.
    [[nodiscard]] QString markdown(const QString& page) const;

    /// Where a link on a page leads: a place of the guide, or an address for the desktop, which is
    /// empty where neither is there.
    using Target = std::variant<Place, QUrl>;
    [[nodiscard]] Target resolve(const QString& link, const QString& page) const;

private:
    void addChapters(const QString& contents);
    void addTheRest();

    QString folder_;
    std::vector<Chapter> chapters_;
    std::vector<Page> pages_;
};

}  // namespace help
