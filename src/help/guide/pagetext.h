#pragma once

#include <QString>
#include <vector>

class QTextDocument;

/// Pages of the guide as text. A page is Markdown as code hosts show it, so that the same file is
/// read there and in the program.
namespace help {

/// A heading, and what is written below it up to the next one.
struct Section {
    QString title;
    QString anchor;  ///< by which links name it, "what-will-happen"; unlike any other of its page
    int level = 1;   ///< of the heading, from 1
    QString text;    ///< without any marks
};

/// Where a link leads, as it is written: "bell-times.md#limits".
struct Link {
    QString target;
    QString text;
};

/// Reads a page into a document whose headings are anchors. What it looks like is up to others.
void readPage(QTextDocument& document, const QString& markdown);

/// The parts of such a document in their order. What stands before the first heading has no title.
[[nodiscard]] std::vector<Section> sectionsOf(const QTextDocument& document);

/// Its links and the files of its pictures, in their order.
[[nodiscard]] std::vector<Link> linksOf(const QTextDocument& document);
[[nodiscard]] std::vector<QString> picturesOf(const QTextDocument& document);

}  // namespace help
