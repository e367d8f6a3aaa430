#include "help/guide/pagetext.h"

#include <QMap>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

namespace help {

namespace {

/// As code hosts make it: letters, digits, hyphens and underlines, blanks as hyphens.
QString anchorOf(const QString& title) {
    QString anchor;
    for (const QChar letter : title.trimmed().toLower()) {
        if (letter.isLetterOrNumber() || letter == '-' || letter == '_') {
            anchor += letter;
        } else if (letter == ' ') {
            anchor += '-';
        }
    }
    return anchor;
}

/// Calls `visit` with each piece of a document that looks alike.
template <class Visit>
void forFragments(const QTextDocument& document, Visit visit) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
            visit(piece.fragment());
        }
    }
}

QString plain(QString text) {
    text.replace(QChar::LineSeparator, ' ');
    return text.remove(QChar::ObjectReplacementCharacter);
}

}  // namespace

void readPage(QTextDocument& document, const QString& markdown) {
    // The toolkit takes a lone tag for the beginning of an element.
    document.setMarkdown(QString(markdown).replace("<br>", QString(QChar::LineSeparator)),
                         QTextDocument::MarkdownDialectGitHub);
    QMap<QString, int> taken;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0) {
            continue;
        }
        QString anchor = anchorOf(block.text());
        if (const int before = taken[anchor]++; before > 0) {
            anchor += '-' + QString::number(before);
        }
        QTextCharFormat format;
        format.setAnchor(true);
        format.setAnchorNames({anchor});
        QTextCursor cursor(block);
        cursor.setPosition(block.position() + 1, QTextCursor::KeepAnchor);
        cursor.mergeCharFormat(format);
    }
}

std::vector<Section> sectionsOf(const QTextDocument& document) {
    std::vector<Section> sections;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (const int level = block.blockFormat().headingLevel(); level > 0) {
            const QStringList names = block.begin().fragment().charFormat().anchorNames();
            sections.push_back({plain(block.text()), names.value(0), level, {}});
            continue;
        }
        if (sections.empty()) {
            sections.emplace_back();
        }
        if (const QString text = plain(block.text()).trimmed(); !text.isEmpty()) {
            QString& whole = sections.back().text;
            whole += (whole.isEmpty() ? "" : "\n") + text;
        }
    }
    return sections;
}

std::vector<Link> linksOf(const QTextDocument& document) {
    std::vector<Link> links;
    forFragments(document, [&](const QTextFragment& piece) {
        const QString target = piece.charFormat().anchorHref();
        if (!links.empty() && links.back().target == target) {
            links.back().text += piece.text();  // one that is set in several faces
        } else {
            links.push_back({target, piece.text()});
        }
    });
    std::erase_if(links, [](const Link& link) { return link.target.isEmpty(); });
    return links;
}

std::vector<QString> picturesOf(const QTextDocument& document) {
    std::vector<QString> pictures;
    forFragments(document, [&](const QTextFragment& piece) {
        if (const auto format = piece.charFormat(); format.isImageFormat()) {
            pictures.push_back(format.toImageFormat().name());
        }
    });
    return pictures;
}

}  // namespace help
