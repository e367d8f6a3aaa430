#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "help/guide/guide.h"

namespace help {

/// A part of the guide that holds what was sought.
struct Hit {
    Place place;
    QString page;     ///< the page's title
    QString title;    ///< of the part; empty where that is the page's
    QString snippet;  ///< its text around the first words sought
    /// What was found in the snippet: where it begins and how long it is, in characters.
    std::vector<std::pair<int, int>> marks;
};

struct Found {
    std::vector<Hit> hits;
    bool holdAll = true;  ///< all words; otherwise there was none, and these hold some of them
};

/// The parts that hold the words sought, in any order and without regard to case and to a plural
/// "s"; what a part lacks may stand in its page's title. Words count from their beginning, several
/// between double quotes as one. The best come first: words in titles before words in texts, whole
/// words before beginnings, early pages before late ones; the last chapter, which is for reference,
/// counts little.
[[nodiscard]] Found searchGuide(const Guide& guide, const QString& words, std::size_t most = 40);

/// Where the words of a search stand in a text: beginning and length, in characters.
[[nodiscard]] std::vector<std::pair<int, int>> placesOf(const QString& text, const QString& words);

}  // namespace help
