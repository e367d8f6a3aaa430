#include "reports/page/flow.h"

#include <algorithm>

#include "reports/page/fonts.h"

namespace reports {

namespace {

/// Bytes of a span.
struct Part {
    std::size_t span;
    std::size_t from;
    std::size_t end;
};

/// Parts that no blank keeps apart.
struct Unit {
    std::vector<Part> parts;
};

std::vector<Unit> unitsOf(const std::vector<Span>& spans) {
    std::vector<Unit> units;
    bool isApart = true;
    for (std::size_t span = 0; span < spans.size(); ++span) {
        const std::string_view text = spans[span].text;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = std::min(text.find(' ', at), text.size());
            if (end == at) {
                isApart = true;
                ++at;
                continue;
            }
            if (isApart) {
                units.emplace_back();
            }
            units.back().parts.push_back({span, at, end});
            isApart = false;
            at = end;
        }
    }
    return units;
}

class Flowing {
public:
    Flowing(const std::vector<Span>& spans, float room) : spans_(spans), room_(room) {}

    void take(const Unit& unit);
    std::vector<FlowLine> finish();

private:
    [[nodiscard]] float widthOf(const Part& part) const {
        const Span& span = spans_[part.span];
        return reports::widthOf(span.style, span.text.substr(part.from, part.end - part.from));
    }
    [[nodiscard]] float widthOf(const std::vector<Part>& parts) const;
    [[nodiscard]] std::vector<Part> with(const Unit& unit) const;
    void breakUnit(const Unit& unit);
    void endLine();

    const std::vector<Span>& spans_;
    float room_;
    std::vector<Part> line_;
    std::vector<FlowLine> lines_;
};

float Flowing::widthOf(const std::vector<Part>& parts) const {
    float width = 0;
    for (const Part& part : parts) {
        width += widthOf(part);
    }
    return width;
}

/// The line with a unit at its end and the blanks between them.
std::vector<Part> Flowing::with(const Unit& unit) const {
    std::vector<Part> longer = line_;
    for (const Part& part : unit.parts) {
        if (!longer.empty() && longer.back().span == part.span) {
            longer.back().end = part.end;
            continue;
        }
        if (!longer.empty()) {
            longer.back().end = spans_[longer.back().span].text.size();
        }
        const bool isFirst = longer.empty();
        longer.push_back({part.span, isFirst ? part.from : 0, part.end});
    }
    return longer;
}

void Flowing::take(const Unit& unit) {
    auto longer = with(unit);
    if (!line_.empty() && widthOf(longer) > room_) {
        endLine();
        longer = with(unit);
    }
    if (widthOf(longer) > room_) {
        breakUnit(unit);
        return;
    }
    line_ = std::move(longer);
}

/// Lines of a unit that is wider than a line.
void Flowing::breakUnit(const Unit& unit) {
    float left = room_;
    for (Part part : unit.parts) {
        const Span& span = spans_[part.span];
        while (widthOf(part) > left) {
            const auto rest = span.text.substr(part.from, part.end - part.from);
            const auto fits = fitting(span.style.face, span.style.size, rest, left);
            const Part first{part.span, part.from, part.from + fits};
            if (widthOf(first) <= left || line_.empty()) {
                line_.push_back(first);
                part.from += fits;
            }
            endLine();
            left = room_;
        }
        if (part.from < part.end) {
            line_.push_back(part);
            left -= widthOf(part);
        }
    }
}

void Flowing::endLine() {
    FlowLine line;
    float x = 0;
    for (const Part& part : line_) {
        const Span& span = spans_[part.span];
        const auto text = span.text.substr(part.from, part.end - part.from);
        const float width = widthOf(part);
        line.push_back({span.style, {text, width, startsRightToLeft(text)}, x});
        x += width;
    }
    lines_.push_back(std::move(line));
    line_.clear();
}

std::vector<FlowLine> Flowing::finish() {
    if (!line_.empty()) {
        endLine();
    }
    return std::move(lines_);
}

}  // namespace

std::vector<FlowLine> flowed(const std::vector<Span>& spans, float width) {
    Flowing flowing(spans, width);
    for (const Unit& unit : unitsOf(spans)) {
        flowing.take(unit);
    }
    return flowing.finish();
}

float widthOf(const FlowLine& line) {
    return line.empty() ? 0 : line.back().x + line.back().line.width;
}

void put(Page& page, const FlowLine& line, float x, float baseline, Place place) {
    for (const FlowPart& part : line) {
        put(page, part.style, part.line, x + part.x, baseline, Align::Left, place);
    }
}

}  // namespace reports
