#pragma once

#include <compare>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "reports/page/page.h"

/// The text of laid out pages: found, chosen and copied in reading order. What is repeated on every
/// page is no part of it. Pages, boxes and bytes count from 0.
namespace reports {

/// A byte of a box's text, at the beginning of a letter.
struct TextPlace {
    std::size_t page = 0;
    std::size_t box = 0;
    std::size_t byte = 0;

    friend auto operator<=>(const TextPlace&, const TextPlace&) = default;
};

/// From one place to just before another; over several boxes and pages where they lie apart.
struct TextRange {
    TextPlace from;
    TextPlace to;

    [[nodiscard]] bool isEmpty() const { return !(from < to); }
    friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// A rectangle on a page, in points.
struct Area {
    float x = 0, y = 0;
    float width = 0, height = 0;
};

/// Where a text stands on the pages from `firstPage` on, without regard to case. Words that follow
/// one another on a line are found although they are set in several faces; one that goes on in the
/// next line is not.
[[nodiscard]] std::vector<TextRange> findText(const std::vector<Page>& pages, std::string_view text,
                                              std::size_t firstPage = 0);

/// The place nearest to a point of a page.
[[nodiscard]] TextPlace placeAt(const std::vector<Page>& pages, std::size_t page, float x, float y);

/// The word that a place is in.
[[nodiscard]] TextRange wordAt(const std::vector<Page>& pages, TextPlace place);

/// Everything on the pages.
[[nodiscard]] TextRange wholeText(const std::vector<Page>& pages);

/// What of a range lies on a page.
[[nodiscard]] std::vector<Area> areasOf(const std::vector<Page>& pages, const TextRange& range,
                                        std::size_t page);

/// The text of a range as it is copied: a line a row, its columns apart by tabs.
[[nodiscard]] std::string textBetween(const std::vector<Page>& pages, const TextRange& range);

}  // namespace reports
