#include "reports/formats/sheettable.h"

#include <utility>

#include "platform/base/fold.h"
#include "platform/base/text.h"
#include "reports/formats/texts.h"

namespace reports {

namespace {

Column columnOf(const char* field, const char* caption, CellKind kind, double width) {
    Column column;
    column.field = field;
    column.caption = caption;
    column.kind = kind;
    column.width = width;
    column.grows = width >= 90;
    return column;
}

Report tableOf(const Report& sheets) {
    Report table = sheets;
    table.form = Form::List;
    table.columns = {columnOf("RUN", "Run", CellKind::Text, 50),
                     columnOf("TIME", "Time", CellKind::Time, 48),
                     columnOf("STOP", "Stop", CellKind::Whole, 26),
                     columnOf("PLACE", "Place", CellKind::Text, 130),
                     columnOf("CORNER", "Corner", CellKind::Text, 90),
                     columnOf("SIDE", "Side", CellKind::Text, 30),
                     columnOf("STUDENTS", "Students", CellKind::Whole, 44),
                     columnOf("ON_BUS", "On Bus", CellKind::Whole, 40),
                     columnOf("MILES", "Miles", CellKind::Decimal, 36),
                     columnOf("STOPID", "Stop No.", CellKind::Text, 48),
                     columnOf("WAY", "Directions", CellKind::Text, 160),
                     columnOf("NAMES", "Names", CellKind::Text, 100)};
    Group run;
    run.field = "RUN";
    run.title = "RUN";
    run.totals = false;
    table.groups = {run};
    return table;
}

base::Value numberOf(std::optional<int> number) {
    return number ? base::Value(*number) : base::Value();
}

std::string plainWords(const std::vector<SheetWay::Piece>& pieces) {
    std::string words;
    for (const SheetWay::Piece& piece : pieces) {
        words += piece.text;
    }
    return words;
}

std::string sideOf(const SheetStop& stop) {
    if (stop.kind != SheetStop::Kind::Stop) {
        return {};
    }
    return stop.leftSide ? "Left" : "Right";
}

/// "FIRST STOP" as "First stop".
std::string captionOf(const Fact& fact) {
    std::string caption = base::isAscii(fact.label) ? base::lowered(fact.label) : fact.label;
    if (!caption.empty()) {
        caption.front() = base::uppered(caption.front());
    }
    return caption;
}

/// All that the head says, which has no columns.
std::string factsOf(const SheetHead& head) {
    std::vector<std::string> facts = {head.title, head.subtitle, head.right, head.rightSub};
    for (const Fact& fact : head.facts) {
        facts.push_back(captionOf(fact) + ": " + fact.value);
    }
    return joined(facts, "; ");
}

}  // namespace

SheetTable::SheetTable(Content& sheets) : sheets_(sheets), report_(tableOf(sheets.report())) {}

std::optional<Item> SheetTable::next() {
    while (ready_.empty() && !isRead_) {
        if (const auto item = sheets_.next()) {
            std::visit([this](const auto& known) { put(known); }, *item);
        } else {
            isRead_ = true;
            endSheet();
        }
    }
    if (ready_.empty()) {
        return std::nullopt;
    }
    std::optional<Item> item = std::move(ready_.front());
    ready_.pop_front();
    return item;
}

void SheetTable::put(const SheetHead& head) {
    endSheet();
    run_ = head.plate;
    hasStops_ = false;
    ready_.emplace_back(GroupHead{0, head.plate, "", true});
    ready_.emplace_back(Remark{factsOf(head)});
}

void SheetTable::put(const SheetStop& stop) {
    endStop();
    stop_ = stop;
    hasStops_ = true;
}

void SheetTable::put(const SheetWay& way) {
    const std::string miles = cellText(CellKind::Decimal, way.miles);
    way_.push_back(plainWords(way.pieces) + (miles.empty() ? "" : " (" + miles + ")"));
}

void SheetTable::put(const SheetRemark& remark) {
    endStop();
    ready_.emplace_back(Remark{plainWords(remark.pieces)});
}

void SheetTable::endStop() {
    if (!stop_) {
        return;
    }
    const auto stop = *std::exchange(stop_, std::nullopt);
    ready_.emplace_back(
        Row{{run_, stop.time, stop.number > 0 ? stop.number : base::Value(), stop.place,
             stop.corner, sideOf(stop), numberOf(stop.students), numberOf(stop.onBus), stop.miles,
             stop.id, joined(way_, "; "), joined(stop.names, "; ")}});
    way_.clear();
    if (!stop.note.empty()) {
        ready_.emplace_back(Remark{stop.note});
    }
}

void SheetTable::endSheet() {
    endStop();
    if (!hasStops_) {
        ready_.emplace_back(Row{{run_, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}}});
    }
    hasStops_ = true;
}

}  // namespace reports
