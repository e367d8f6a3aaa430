#pragma once

#include <optional>

#include "reports/base/content.h"
#include "reports/page/pagehead.h"

namespace reports {

/// A head, a row with its remarks or totals, ready to be placed.
struct Block {
    enum class Kind { Head, Row, Totals };
    Kind kind = Kind::Row;
    Page piece;       ///< from its own top
    float above = 0;  ///< left free above it, but not at the top of a page
    float first = 0;  ///< height with one line
    float pitch = 0;  ///< of each further line
    int lines = 1;
    std::optional<std::size_t> level;  ///< of a head or of totals
    std::string title;                 ///< of a head
    bool newPage = false;
    bool isBanded = false;  ///< may stand on grey

    [[nodiscard]] float heightOf(int count) const {
        return first + pitch * static_cast<float>(count - 1);
    }
    [[nodiscard]] float height() const { return heightOf(lines); }
};

/// The lines of a block from `from` on, `count` of them, as a piece of their own.
[[nodiscard]] Page linesOf(const Block& block, int from, int count);

/// Makes the blocks of a list's items.
class BlockMaker {
public:
    BlockMaker(const std::vector<Column>& columns, const Table& table, float left, float right);

    [[nodiscard]] Block head(const GroupHead& head) const;
    /// The head again on the next page.
    [[nodiscard]] Block continued(std::size_t level, const std::string& title) const;
    [[nodiscard]] Block row(const Row& row, std::uint32_t number) const;
    /// A remark that belongs to no row.
    [[nodiscard]] Block remark(const Remark& remark) const;
    void addRemark(Block& block, const Remark& remark, std::uint32_t number) const;
    [[nodiscard]] Block totals(const Totals& totals) const;
    [[nodiscard]] Block nothing() const;

private:
    void cell(Block& block, std::size_t column, const base::Value& value, Style style,
              std::uint32_t row) const;
    void number(Block& block, std::size_t column, const std::string& text, Style style,
                std::uint32_t row) const;
    void days(Block& block, std::size_t column, const std::string& text, Style style,
              std::uint32_t row) const;
    void load(Block& block, std::size_t column, double percent) const;
    void totalsTitle(Block& block, const Totals& totals, const Style& style, float baseline) const;
    [[nodiscard]] Style rowStyle(std::size_t column) const;
    [[nodiscard]] float rowBaseline() const { return 10.6F * table_.scale; }
    [[nodiscard]] Face boldFace() const { return table_.narrow ? Face::CondensedBold : Face::Bold; }
    [[nodiscard]] Block headBlock(std::size_t level, const std::string& title,
                                  const std::string& note, Role role) const;

    const std::vector<Column>& columns_;
    const Table& table_;
    float left_;
    float right_;
    std::size_t firstStrong_ = 0;
};

}  // namespace reports
