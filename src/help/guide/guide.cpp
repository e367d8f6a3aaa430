#include "help/guide/guide.h"

#include <QDir>
#include <QFile>
#include <QTextBlock>
#include <QTextDocument>
#include <algorithm>
#include <utility>

namespace help {

namespace {

constexpr auto Ending = ".md";

QString nameOf(const QString& file) { return QFileInfo(file).completeBaseName(); }

}  // namespace

QString Page::title() const {
    const auto first =
        std::ranges::find_if(sections, [](const auto& one) { return one.level == 1; });
    return first == sections.end() || first->title.isEmpty() ? name : first->title;
}

const Section* Page::section(const QString& anchor) const {
    const auto found = std::ranges::find(sections, anchor, &Section::anchor);
    return found == sections.end() ? nullptr : &*found;
}

Guide::Guide(QString folder) : folder_(std::move(folder)) {
    const auto read = [this](const QString& name) {
        QTextDocument document;
        readPage(document, markdown(name));
        pages_.push_back({name, sectionsOf(document)});
    };
    if (QFile::exists(folder_ + '/' + Contents + Ending)) {
        addChapters(markdown(Contents));
        read(Contents);
    }
    addTheRest();
    for (const Chapter& chapter : chapters_) {
        std::ranges::for_each(chapter.pages, read);
    }
}

void Guide::addChapters(const QString& contents) {
    QTextDocument document;
    readPage(document, contents);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() > 1) {
            chapters_.push_back({block.text(), {}});
        }
        for (auto piece = block.begin(); !chapters_.empty() && !piece.atEnd(); ++piece) {
            const QString target = piece.fragment().charFormat().anchorHref();
            auto& pages = chapters_.back().pages;
            if (target.endsWith(Ending) && QFile::exists(folder_ + '/' + target) &&
                std::ranges::find(pages, nameOf(target)) == pages.end()) {
                pages.push_back(nameOf(target));
            }
        }
    }
    std::erase_if(chapters_, [](const Chapter& chapter) { return chapter.pages.empty(); });
}

void Guide::addTheRest() {
    Chapter rest{QObject::tr("More"), {}};
    const QStringList files =
        QDir(folder_).entryList({QString('*') + Ending}, QDir::Files, QDir::Name);
    for (const QString& file : files) {
        const auto lists = [name = nameOf(file)](const Chapter& chapter) {
            return std::ranges::find(chapter.pages, name) != chapter.pages.end();
        };
        if (nameOf(file) != Contents && std::ranges::none_of(chapters_, lists)) {
            rest.pages.push_back(nameOf(file));
        }
    }
    if (!rest.pages.empty()) {
        chapters_.push_back(std::move(rest));
    }
}

const Page* Guide::page(const QString& name) const {
    const auto found = std::ranges::find(pages_, name, &Page::name);
    return found == pages_.end() ? nullptr : &*found;
}

bool Guide::has(const Place& place) const {
    const Page* there = page(place.page);
    return there != nullptr && (place.anchor.isEmpty() || there->section(place.anchor) != nullptr);
}

QString Guide::markdown(const QString& page) const {
    QFile file(folder_ + '/' + page + Ending);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

Guide::Target Guide::resolve(const QString& link, const QString& page) const {
    const QUrl url(link);
    if (!url.isRelative()) {
        return url;
    }
    const QString path = url.path();
    const Place place{path.isEmpty() ? page : nameOf(path), url.fragment()};
    const bool isPage = path.isEmpty() || (path.endsWith(Ending) && !path.contains('/'));
    if (isPage && this->page(place.page) != nullptr) {
        return has(place) ? place : Place{place.page, {}};
    }
    const QString file = QDir::cleanPath(folder_ + '/' + path);
    return QFile::exists(file) ? QUrl::fromLocalFile(file) : QUrl();
}

}  // namespace help
