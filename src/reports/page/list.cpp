#include <algorithm>
#include <deque>

#include "reports/page/listblock.h"
#include "reports/page/pagemaking.h"

namespace reports {

namespace {

constexpr std::size_t Ahead = 24;  ///< blocks that a page's end is decided by
constexpr std::size_t RowsAfterHead = 3;
constexpr std::uint8_t BandInk = 241;

using Kind = Block::Kind;

class ListMaking : public PageMaking {
public:
    explicit ListMaking(Content& content)
        : PageMaking(content),
          columns_(content.report().columns),
          table_(tableOf(columns_, ListMargin, pages.size.width - ListMargin)),
          frame_(frameOf(pages.size, pages.heading, columns_, table_)),
          maker_(columns_, table_, frame_.left, frame_.right) {}

    bool layPage() override;

private:
    void readAhead();
    Block next();
    Block nextRow(const Row& row);

    [[nodiscard]] bool isKind(std::size_t at, Kind kind) const {
        return at < ahead_.size() && ahead_[at].kind == kind;
    }
    [[nodiscard]] float heightTogether(std::size_t count) const;
    [[nodiscard]] std::size_t withTotals(std::size_t from) const;
    [[nodiscard]] std::size_t together() const;
    [[nodiscard]] bool endsPage() const;

    void beginPage(const Block* first);
    void continueHeads(const Block& first);
    void placeLines(const Block& block, int from, int count);
    void placeSplit(const Block& block);
    void place(const Block& block);
    void follow(const Block& block);
    void endPage();

    std::vector<Column> columns_;
    Table table_;
    PageFrame frame_;
    BlockMaker maker_;
    std::deque<Block> ahead_;
    struct Open {
        std::size_t level;
        std::string title;
    };
    std::vector<Open> open_;
    Page page_;
    float y_ = 0;
    bool isFresh_ = true;  ///< nothing of the report stands on the page
    bool hasHeadsOnly_ = false;
    bool isBegun_ = false;
    bool isDone_ = false;
    std::uint32_t rows_ = 0;
    std::size_t inGroup_ = 0;
};

Block ListMaking::nextRow(const Row& row) {
    Block block = maker_.row(row, ++rows_);
    while (look() != nullptr && std::holds_alternative<Remark>(*look())) {
        maker_.addRemark(block, std::get<Remark>(*take()), rows_);
    }
    return block;
}

Block ListMaking::next() {
    const Item item = *take();
    if (const auto* head = std::get_if<GroupHead>(&item)) {
        return maker_.head(*head);
    }
    if (const auto* totals = std::get_if<Totals>(&item)) {
        return maker_.totals(*totals);
    }
    if (const auto* row = std::get_if<Row>(&item)) {
        return nextRow(*row);
    }
    const auto* remark = std::get_if<Remark>(&item);
    return maker_.remark(remark != nullptr ? *remark : Remark{});
}

void ListMaking::readAhead() {
    while (ahead_.size() < Ahead && look() != nullptr) {
        ahead_.push_back(next());
    }
    if (ahead_.empty() && !isBegun_) {
        ahead_.push_back(maker_.nothing());
    }
}

float ListMaking::heightTogether(std::size_t count) const {
    float height = 0;
    for (std::size_t at = 0; at < std::min(count, ahead_.size()); ++at) {
        height += ahead_[at].above + ahead_[at].height();
    }
    return height;
}

/// One behind the totals that begin there.
std::size_t ListMaking::withTotals(std::size_t from) const {
    while (isKind(from, Kind::Totals)) {
        ++from;
    }
    return from;
}

/// How many blocks must stand on one page with the next one.
std::size_t ListMaking::together() const {
    std::size_t at = 0;
    if (isKind(0, Kind::Head)) {
        while (isKind(at, Kind::Head)) {
            ++at;
        }
        for (std::size_t row = 0; row < RowsAfterHead && isKind(at, Kind::Row); ++row) {
            ++at;
        }
        return withTotals(at);
    }
    // At least two rows stay with what ends their group.
    const bool isNextLast = isKind(0, Kind::Row) && isKind(1, Kind::Row) && !isKind(2, Kind::Row);
    return withTotals(isNextLast ? 2 : 1);
}

bool ListMaking::endsPage() const {
    const Block& block = ahead_.front();
    if (isFresh_ || (hasHeadsOnly_ && block.kind == Kind::Row)) {
        return false;
    }
    return block.newPage || y_ + heightTogether(together()) > frame_.bottom;
}

void ListMaking::beginPage(const Block* first) {
    page_ = frame_.piece;
    y_ = frame_.top;
    inGroup_ = 0;
    isFresh_ = true;
    isBegun_ = true;
    if (first != nullptr) {
        continueHeads(*first);
    }
}

void ListMaking::continueHeads(const Block& first) {
    for (const Open& open : open_) {
        const bool isOver = first.kind != Kind::Row && (!first.level || open.level >= *first.level);
        if (!isOver || (first.kind == Kind::Totals && first.level == open.level)) {
            const Block head = maker_.continued(open.level, open.title);
            reports::place(page_, head.piece, y_);
            y_ += head.height();
        }
    }
}

void ListMaking::placeLines(const Block& block, int from, int count) {
    const float height = block.heightOf(count);
    if (block.isBanded && inGroup_ % 2 == 0) {
        rectangle(page_, frame_.left - Hang, y_, frame_.right - frame_.left + 2 * Hang, height,
                  BandInk);
    }
    reports::place(
        page_, from == 0 && count == block.lines ? block.piece : linesOf(block, from, count), y_);
    y_ += height;
}

/// Lines of a block that no page holds, page by page.
void ListMaking::placeSplit(const Block& block) {
    for (int from = 0; from < block.lines;) {
        const float room = frame_.bottom - y_ - block.first;
        const int fit = 1 + std::max(0, static_cast<int>(room / block.pitch));
        const int count = std::min(fit, block.lines - from);
        placeLines(block, from, count);
        from += count;
        if (from < block.lines) {
            const std::size_t inGroup = inGroup_;
            endPage();
            beginPage(&block);
            inGroup_ = inGroup;
            isFresh_ = false;
        }
    }
}

void ListMaking::follow(const Block& block) {
    if (block.kind == Kind::Row) {
        ++inGroup_;
        return;
    }
    const std::size_t level = block.level.value_or(0);
    std::erase_if(open_, [&](const Open& open) { return open.level >= level; });
    inGroup_ = 0;
    if (block.kind == Kind::Head) {
        open_.push_back({level, block.title});
    }
}

void ListMaking::place(const Block& block) {
    y_ += isFresh_ ? 0 : block.above;
    hasHeadsOnly_ = block.kind == Kind::Head && (isFresh_ || hasHeadsOnly_);
    isFresh_ = false;
    if (y_ + block.height() <= frame_.bottom || block.lines <= 1) {
        placeLines(block, 0, block.lines);
    } else {
        placeSplit(block);
    }
    follow(block);
}

void ListMaking::endPage() {
    addPage(std::move(page_), pages.pages.size() + 1, frame_.right, frame_.numberBaseline);
    page_ = {};
}

bool ListMaking::layPage() {
    if (isDone_) {
        return false;
    }
    readAhead();
    beginPage(ahead_.empty() ? nullptr : &ahead_.front());
    while (!ahead_.empty() && !endsPage()) {
        const Block block = std::move(ahead_.front());
        ahead_.pop_front();
        place(block);
        readAhead();
    }
    endPage();
    isDone_ = ahead_.empty();
    if (isDone_) {
        numberPages(0);
    }
    return !isDone_;
}

}  // namespace

std::unique_ptr<PageMaking> makeList(Content& content) {
    return std::make_unique<ListMaking>(content);
}

}  // namespace reports
