#include "help/guide/guidesearch.h"

#include <QRegularExpression>
#include <algorithm>
#include <optional>

namespace help {

namespace {

constexpr int InPageTitle = 60;
constexpr int InTitle = 40;
constexpr int InText = 10;
constexpr int WholeWord = 2;     // times as good
constexpr int MostTimes = 4;     // a word counts so often in a text
constexpr int ForReference = 4;  // times as bad
constexpr int Before = 60;       // characters of a snippet before the first word
constexpr int Longest = 180;

/// What one word sought looks like in a text; its group holds what a longer word has besides.
using Term = QRegularExpression;

std::vector<Term> termsOf(const QString& words) {
    static const QRegularExpression parts("\"([^\"]+)\"?|([^\\s\"]+)");
    std::vector<Term> terms;
    for (auto found = parts.globalMatch(words); found.hasNext();) {
        const auto match = found.next();
        QString word =
            match.captured(1).isEmpty() ? match.captured(2) : match.captured(1).trimmed();
        constexpr int ShortWord = 3;
        if (word.size() > ShortWord && word.endsWith('s', Qt::CaseInsensitive)) {
            word.chop(1);
        }
        if (!word.isEmpty()) {
            const QString rest = word.size() < ShortWord ? "()(?![\\pL\\pN])" : "s?([\\pL\\pN]*)";
            terms.emplace_back("(?<![\\pL\\pN])" + QRegularExpression::escape(word) + rest,
                               QRegularExpression::CaseInsensitiveOption |
                                   QRegularExpression::UseUnicodePropertiesOption);
        }
    }
    return terms;
}

/// How well a text holds a word; 0 where it does not.
int worthIn(const QString& text, const Term& term, int worth) {
    int sum = 0;
    int times = 0;
    for (auto found = term.globalMatch(text); found.hasNext() && times < MostTimes; ++times) {
        const bool isWhole = found.next().captured(1).isEmpty();
        sum += (isWhole ? worth * WholeWord : worth) / (times + 1);
    }
    return sum;
}

/// Nothing where a word is missing, or where some words are enough, all of them.
std::optional<int> worthOf(const Page& page, const Section& section, const std::vector<Term>& terms,
                           bool wantsAll) {
    int sum = 0;
    bool isHere = false;
    const bool isFirst = section.level == 1;
    for (const Term& term : terms) {
        const int own = worthIn(section.title, term, isFirst ? InPageTitle : InTitle) +
                        worthIn(section.text, term, InText);
        const int above = isFirst ? 0 : worthIn(page.title(), term, InText);
        if (wantsAll && own + above == 0) {
            return std::nullopt;
        }
        isHere = isHere || own > 0;
        sum += own + above;
    }
    return isHere ? std::optional(sum) : std::nullopt;
}

/// The text around the first word that is found, cut between words.
QString snippetOf(const QString& text, const std::vector<Term>& terms) {
    auto first = text.size();
    for (const Term& term : terms) {
        if (const auto at = text.indexOf(term); at >= 0) {
            first = std::min(first, at);
        }
    }
    const auto line = first == text.size() ? -1 : text.lastIndexOf('\n', first);
    auto begin = std::max(line + 1, first == text.size() ? 0 : first - Before);
    if (begin > line + 1) {
        begin = text.indexOf(' ', begin) + 1;
    }
    QString snippet = text.mid(begin, Longest);
    if (begin + snippet.size() < text.size()) {
        snippet = snippet.left(std::max<qsizetype>(snippet.lastIndexOf(' '), Before)) + "…";
    }
    return (begin > line + 1 ? "…" : "") + snippet.replace('\n', ' ');
}

std::vector<std::pair<int, int>> marksIn(const QString& snippet, const std::vector<Term>& terms) {
    std::vector<std::pair<int, int>> marks;
    for (const Term& term : terms) {
        for (auto found = term.globalMatch(snippet); found.hasNext();) {
            const auto match = found.next();
            marks.emplace_back(match.capturedStart(), match.capturedLength());
        }
    }
    std::ranges::sort(marks);
    return marks;
}

bool isForReference(const Guide& guide, const Page& page) {
    const auto& pages = guide.chapters().back().pages;
    return std::ranges::find(pages, page.name) != pages.end();
}

using Weighed = std::pair<int, Hit>;

Hit hitOf(const Page& page, const Section& section, const std::vector<Term>& terms) {
    const bool isFirst = section.level == 1;
    Hit hit{{page.name, isFirst ? QString() : section.anchor},
            page.title(),
            isFirst ? QString() : section.title,
            snippetOf(section.text, terms),
            {}};
    hit.marks = marksIn(hit.snippet, terms);
    return hit;
}

std::vector<Weighed> hitsOf(const Guide& guide, const std::vector<Term>& terms, bool wantsAll) {
    std::vector<Weighed> hits;
    for (const Page& page : guide.pages()) {
        const int share = isForReference(guide, page) ? ForReference : 1;
        for (const Section& section : page.sections) {
            const auto worth = terms.empty() || page.name == Guide::Contents
                                   ? std::nullopt
                                   : worthOf(page, section, terms, wantsAll);
            if (worth) {
                hits.emplace_back(*worth / share, hitOf(page, section, terms));
            }
        }
    }
    return hits;
}

std::vector<Hit> best(std::vector<Weighed> weighed, std::size_t most) {
    std::ranges::stable_sort(weighed, std::ranges::greater(), &Weighed::first);
    std::vector<Hit> hits;
    for (auto& [worth, hit] : weighed) {
        if (hits.size() < most) {
            hits.push_back(std::move(hit));
        }
    }
    return hits;
}

}  // namespace

std::vector<std::pair<int, int>> placesOf(const QString& text, const QString& words) {
    return marksIn(text, termsOf(words));
}

Found searchGuide(const Guide& guide, const QString& words, std::size_t most) {
    const std::vector<Term> terms = termsOf(words);
    Found found{best(hitsOf(guide, terms, true), most), true};
    if (found.hits.empty() && terms.size() > 1) {
        found = {best(hitsOf(guide, terms, false), most), false};
    }
    return found;
}

}  // namespace help
