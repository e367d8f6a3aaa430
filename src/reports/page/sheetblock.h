#pragma once

#include <optional>
#include <vector>

#include "reports/base/content.h"
#include "reports/page/flow.h"

namespace reports {

/// The lines of a sheet, in points from the left edge of the paper.
struct SheetGrid {
    explicit SheetGrid(const PageSize& size) : right(size.width - Margin) {}

    static constexpr float Margin = 45;
    static constexpr float Hang = 5;  ///< of bands and rules
    float left = Margin;
    float right;
    float timeEnd = Margin + 52;
    float way = Margin + 72;  ///< the line that ties the stops together
    float words = Margin + 92;
    float directions = Margin + 112;
    [[nodiscard]] float students() const { return right - 104; }
    [[nodiscard]] float onBus() const { return right - 58; }
    [[nodiscard]] float hungLeft() const { return left - Hang; }
    [[nodiscard]] float hungWidth() const { return right - left + 2 * Hang; }
};

/// How close the lines of a sheet stand: at first loosely, closed up where that saves a page.
struct Density {
    float band;
    float above;  ///< a band
    float below;
    float way;  ///< from line to line of the directions
};
inline constexpr Density Loose{26, 5.5F, 4, 15.5F};
inline constexpr Density Close{24, 2, 2, 14.2F};

/// Where the way line touches a block.
struct Node {
    SheetStop::Kind kind = SheetStop::Kind::Stop;
    int number = 0;
    float y = 0;  ///< its middle, from the block's top
};

/// One line of a sheet, or a band; never broken.
struct SheetBlock {
    Page piece;       ///< from its own top
    float above = 0;  ///< left free above it, but not at the top of a page
    float height = 0;
    bool withNext = false;  ///< stays on one page with what follows
    std::optional<Node> node;
};

/// Makes the lines of a sheet's items.
class SheetBlockMaker {
public:
    SheetBlockMaker(const SheetGrid& grid, const Density& density)
        : grid_(grid), density_(density) {}

    /// Adds what an item needs; `row` is its number in the report.
    void add(const SheetStop& stop, std::uint32_t row);
    void add(const SheetWay& way, std::uint32_t row);
    void add(const SheetRemark& remark, std::uint32_t row);

    [[nodiscard]] std::vector<SheetBlock> take() { return std::move(blocks_); }

private:
    SheetBlock& addBlock(float height, float above, bool withNext);
    void addBand(const SheetStop& stop, std::uint32_t row);
    void addEmpty(const SheetStop& stop, std::uint32_t row);
    void addLines(const std::vector<FlowLine>& lines, float x, float pitch, bool withNext,
                  std::uint32_t row);
    void addNames(const std::vector<std::string>& names, std::uint32_t row);
    void addNote(const std::string& note, std::uint32_t row);
    void time(Page& page, const base::Value& time, float size, float baseline, std::uint8_t ink,
              std::uint32_t row) const;
    float figures(Page& page, const SheetStop& stop, float baseline, std::uint32_t row) const;
    void leftSide(SheetBlock& block, float x, float room, float baseline) const;

    SheetGrid grid_;
    Density density_;
    std::vector<SheetBlock> blocks_;
    bool isBehindBand_ = false;
};

/// The parts of a line of directions as spans of one size.
[[nodiscard]] std::vector<Span> spansOf(const std::vector<SheetWay::Piece>& pieces,
                                        const Style& style);

}  // namespace reports
