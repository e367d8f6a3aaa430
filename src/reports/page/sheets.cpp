#include <algorithm>
#include <deque>
#include <memory>
#include <utility>

#include "reports/page/characters.h"
#include "reports/page/pagemaking.h"
#include "reports/page/sheetblock.h"
#include "reports/page/sheetframe.h"

namespace reports {

namespace {

using Kind = SheetStop::Kind;

constexpr float DiscSize = 16;
constexpr float SquareSize = 8.5F;
constexpr float NotesLeast = 44;  ///< a lower box of notes is left out
constexpr float NotesPitch = 27;
constexpr float MapLeast = 150;  ///< a lower one goes to a page of its own
constexpr float MapMost = 290;
constexpr float MapAbove = 13;
constexpr Style CreditStyle{Face::Regular, 7.5F, QuietInk, Role::Artifact};
constexpr float CreditHeight = 11;

/// Places the lines of one sheet on its pages.
class SheetPaging {
public:
    SheetPaging(const PageSize& size, const Heading& heading, const SheetHead& head,
                std::shared_ptr<const Drawable> map)
        : grid_(size),
          map_(std::move(map)),
          first_(sheetFrame(size, heading, head, true)),
          other_(sheetFrame(size, heading, head, false)) {}

    [[nodiscard]] std::size_t count(const std::vector<SheetBlock>& blocks) {
        return paged(blocks).size();
    }
    [[nodiscard]] std::deque<Page> paged(const std::vector<SheetBlock>& blocks);
    [[nodiscard]] const SheetFrame& first() const { return first_; }

private:
    struct Touched {
        Kind kind;
        float lower;  ///< where the way line goes on
    };

    void begin(const SheetFrame& frame);
    void endPage();
    [[nodiscard]] bool endsPage(const std::vector<SheetBlock>& blocks, std::size_t at) const;
    void placeBlock(const SheetBlock& block);
    void placeNode(const Node& node);
    void wayLine(float from, float to, bool isEmpty);
    void placeMap();
    void notes();

    SheetGrid grid_;
    std::shared_ptr<const Drawable> map_;
    SheetFrame first_;
    SheetFrame other_;
    const SheetFrame* frame_ = nullptr;
    std::deque<Page> pages_;
    Page page_;
    float y_ = 0;
    bool isFresh_ = true;
    std::optional<Touched> touched_;
};

float halfOf(Kind kind) { return (kind == Kind::Empty ? SquareSize : DiscSize) / 2; }

void SheetPaging::begin(const SheetFrame& frame) {
    frame_ = &frame;
    page_ = frame.piece;
    y_ = frame.top;
    isFresh_ = true;
    if (touched_) {
        touched_->lower = y_ - 3;
    }
}

void SheetPaging::endPage() {
    if (touched_) {
        wayLine(touched_->lower, y_ + 2, touched_->kind == Kind::Empty);
    }
    pages_.push_back(std::exchange(page_, {}));
}

bool SheetPaging::endsPage(const std::vector<SheetBlock>& blocks, std::size_t at) const {
    float height = blocks[at].above + blocks[at].height;
    while (blocks[at].withNext && at + 1 < blocks.size()) {
        ++at;
        height += blocks[at].above + blocks[at].height;
    }
    const bool fitsNext = other_.top + height <= other_.bottom;
    const float least = fitsNext ? height : blocks[at].height;
    return !isFresh_ && y_ + least > frame_->bottom;
}

void SheetPaging::wayLine(float from, float to, bool isEmpty) {
    if (to <= from) {
        return;
    }
    Shape& shape = line(page_, grid_.way, from, 0, to - from, 2.2F);
    shape.dash = isEmpty ? 2.2F : 0;
}

void SheetPaging::placeNode(const Node& node) {
    const float y = y_ + node.y;
    if (touched_) {
        wayLine(touched_->lower, y - halfOf(node.kind),
                node.kind == Kind::Empty || touched_->kind == Kind::Empty);
    }
    if (node.kind == Kind::Empty) {
        Shape& square = rectangle(page_, grid_.way - SquareSize / 2, y - SquareSize / 2, SquareSize,
                                  SquareSize, 0);
        square.filled = false;
        square.thick = 1.4F;
    } else {
        const bool isSchool = node.kind == Kind::School;
        disc(page_, grid_.way, y, DiscSize, isSchool ? White : 0);
        if (isSchool || node.number == 0) {
            disc(page_, grid_.way, y, DiscSize / 2, isSchool ? 0 : White);
        }
    }
    touched_ = Touched{node.kind, y + halfOf(node.kind)};
}

void SheetPaging::placeBlock(const SheetBlock& block) {
    y_ += isFresh_ ? 0 : block.above;
    isFresh_ = false;
    reports::place(page_, block.piece, y_);
    if (block.node) {
        placeNode(*block.node);
    }
    y_ += block.height;
}

/// In what the run leaves of its last page, or on the next one.
void SheetPaging::placeMap() {
    const float credit = map_->attribution().empty() ? 0 : CreditHeight;
    if (y_ + MapAbove + MapLeast + credit > frame_->bottom) {
        endPage();
        begin(other_);
    }
    y_ += isFresh_ ? 0 : MapAbove;
    const float height = std::min(frame_->bottom - 1 - y_ - credit, MapMost);
    page_.pictures.push_back({grid_.hungLeft(), y_, grid_.hungWidth(), height, map_});
    y_ += height;
    if (credit > 0) {
        put(page_, CreditStyle, map_->attribution(), grid_.right + SheetGrid::Hang, y_ + 9,
            Align::Right);
    }
    y_ += credit;
}

/// What the run leaves of its last page is the driver's.
void SheetPaging::notes() {
    const float top = y_ + 13;
    const float height = frame_->bottom - 1 - top;
    if (height < NotesLeast) {
        return;
    }
    Shape& box = rectangle(page_, grid_.hungLeft(), top, grid_.hungWidth(), height, 90);
    box.filled = false;
    box.thick = 0.6F;
    put(page_, LabelStyle, "NOTES", grid_.hungLeft() + 8, top + 12);
    const int lines = static_cast<int>((height - 42) / NotesPitch) + 1;
    for (int at = 0; at < lines; ++at) {
        const float y = top + 34 + NotesPitch * static_cast<float>(at);
        line(page_, grid_.hungLeft() + 8, y, grid_.hungWidth() - 16, 0, 0.8F, 170).dash = 1.2F;
    }
}

std::deque<Page> SheetPaging::paged(const std::vector<SheetBlock>& blocks) {
    pages_.clear();
    touched_.reset();
    begin(first_);
    for (std::size_t at = 0; at < blocks.size(); ++at) {
        if (endsPage(blocks, at)) {
            endPage();
            begin(other_);
        }
        placeBlock(blocks[at]);
    }
    touched_.reset();
    if (map_) {
        placeMap();
    }
    notes();
    endPage();
    return std::move(pages_);
}

/// Null where the sheet has none.
std::shared_ptr<const Drawable> mapOf(const std::vector<Item>& items) {
    for (const Item& item : items) {
        if (const auto* map = std::get_if<SheetMap>(&item)) {
            return map->find();
        }
    }
    return nullptr;
}

class SheetMaking : public PageMaking {
public:
    using PageMaking::PageMaking;

    bool layPage() override;

private:
    void laySheet();
    std::vector<SheetBlock> blocksOf(const std::vector<Item>& items, const Density& density);
    void layNothing();

    std::deque<Page> laid_;  ///< pages of the sheet that are still to be given
    std::size_t firstOfSheet_ = 0;
    float numberBaseline_ = 0;
    std::uint32_t rows_ = 0;
};

std::vector<SheetBlock> SheetMaking::blocksOf(const std::vector<Item>& items,
                                              const Density& density) {
    SheetBlockMaker maker(SheetGrid(pages.size), density);
    std::uint32_t row = rows_;
    for (const Item& item : items) {
        ++row;
        if (const auto* stop = std::get_if<SheetStop>(&item)) {
            maker.add(*stop, row);
        } else if (const auto* way = std::get_if<SheetWay>(&item)) {
            maker.add(*way, row);
        } else if (const auto* remark = std::get_if<SheetRemark>(&item)) {
            maker.add(*remark, row);
        }
    }
    return maker.take();
}

void SheetMaking::laySheet() {
    const Item first = *take();
    const auto* named = std::get_if<SheetHead>(&first);
    const SheetHead head = named != nullptr ? *named : SheetHead{};
    std::vector<Item> items;
    if (named == nullptr) {
        items.push_back(first);
    }
    while (look() != nullptr && !std::holds_alternative<SheetHead>(*look())) {
        items.push_back(*take());
    }
    SheetPaging paging(pages.size, pages.heading, head, mapOf(items));
    const auto loose = blocksOf(items, Loose);
    const auto close = blocksOf(items, Close);
    const bool isLong = paging.count(loose) > paging.count(close);
    laid_ = paging.paged(isLong ? close : loose);
    laid_.front().marks.push_back(
        {0, cleaned(head.plate + (head.title.empty() ? "" : "  " + head.title)), 0});
    rows_ += static_cast<std::uint32_t>(items.size());
    numberBaseline_ = paging.first().numberBaseline;
    firstOfSheet_ = pages.pages.size();
}

void SheetMaking::layNothing() {
    const SheetFrame frame = sheetFrame(pages.size, pages.heading, {}, true);
    Page page = frame.piece;
    put(page, {Face::Italic, 12, QuietInk}, "Nothing found.", SheetGrid::Margin, frame.top + 20);
    laid_.push_back(std::move(page));
    numberBaseline_ = frame.numberBaseline;
}

bool SheetMaking::layPage() {
    if (laid_.empty() && look() != nullptr) {
        laySheet();
    } else if (laid_.empty() && pages.pages.empty()) {
        layNothing();
    }
    if (laid_.empty()) {
        return false;
    }
    addPage(std::move(laid_.front()), pages.pages.size() - firstOfSheet_ + 1,
            pages.size.width - SheetGrid::Margin, numberBaseline_);
    laid_.pop_front();
    if (laid_.empty()) {
        numberPages(firstOfSheet_);
    }
    return !laid_.empty() || look() != nullptr;
}

}  // namespace

std::unique_ptr<PageMaking> makeSheets(Content& content) {
    return std::make_unique<SheetMaking>(content);
}

}  // namespace reports
