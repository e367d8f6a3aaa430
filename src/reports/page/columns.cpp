#include "reports/page/columns.h"

#include <algorithm>
#include <numeric>

#include "platform/base/fold.h"

namespace reports {

namespace {

constexpr float Gap = 9;
constexpr float LeastFlexible = 34;

bool endsAtRight(CellKind kind) { return kind != CellKind::Text && kind != CellKind::Days; }

/// The widest value that a kind usually has.
float usualWidth(const Column& column, float size) {
    const Face face = column.strong ? Face::Bold : Face::Regular;
    switch (column.kind) {
        case CellKind::Text:
            return 0;
        case CellKind::Days:
            return 4.6F * size;
        case CellKind::Whole:
            return widthOf(face, size, "888");
        case CellKind::Decimal:
            return widthOf(face, size, "888.8");
        case CellKind::Money:
            return widthOf(face, size, "8,888.88");
        case CellKind::Time:
            return widthOf(face, size, "12:58 PM");
        case CellKind::Date:
            return widthOf(face, size, "12/28/2028");
        case CellKind::DateTime:
            return widthOf(face, size, "12/28/2028 12:58 PM");
        case CellKind::Load:
            break;
    }
    return LoadBar + 12 + widthOf(Face::Bold, size, "188");
}

std::vector<std::string> captionLines(const std::string& caption, bool isBroken) {
    const std::string capitals = base::upperCase(caption);
    if (!isBroken) {
        return {capitals};
    }
    std::vector<std::string> lines;
    for (std::size_t at = 0; at <= capitals.size();) {
        const auto end = std::min(capitals.find(' ', at), capitals.size());
        lines.push_back(capitals.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

float widest(const std::vector<std::string>& lines) {
    float width = 0;
    for (const std::string& line : lines) {
        width = std::max(width, widthOf(LabelStyle, line));
    }
    return width;
}

/// Lines that a column is too narrow for are broken once more.
std::vector<std::string> fittedLines(const std::vector<std::string>& lines, float width) {
    std::vector<std::string> fitted;
    for (const std::string& line : lines) {
        if (widthOf(LabelStyle, line) <= width + 0.01F) {
            fitted.push_back(line);
            continue;
        }
        for (const Line& part : wrapped(LabelStyle.face, LabelStyle.size * 1.15F, line, width)) {
            fitted.emplace_back(part.text);
        }
    }
    return fitted;
}

/// Widths of all columns, gaps included, at one size of type.
class Sharing {
public:
    Sharing(const std::vector<Column>& columns, float scale, bool breakCaptions) {
        for (const Column& column : columns) {
            const float caption = widest(captionLines(column.caption, breakCaptions)) + Gap;
            const float usual = usualWidth(column, 10 * scale) + Gap;
            const bool gives = column.grows || column.condensed;
            const float asked = static_cast<float>(column.width) * scale;
            const float wish = std::max({asked, caption, usual});
            wishes.push_back(wish);
            least_.push_back(gives ? std::max({caption, usual, LeastFlexible * scale}) : wish);
            grows_.push_back(column.grows);
        }
    }

    [[nodiscard]] float sum() const { return total(wishes); }
    /// Takes from those that give until all fit; false where they cannot.
    bool shrinkTo(float room);
    void growTo(float room);
    void squeezeTo(float room);

    std::vector<float> wishes;

private:
    static float total(const std::vector<float>& widths) {
        return std::accumulate(widths.begin(), widths.end(), 0.0F);
    }

    std::vector<float> least_;
    std::vector<bool> grows_;
};

bool Sharing::shrinkTo(float room) {
    const float short_ = sum() - room;
    const float slack = sum() - total(least_);
    if (short_ <= 0) {
        return true;
    }
    if (slack < short_) {
        return false;
    }
    for (std::size_t at = 0; at < wishes.size(); ++at) {
        wishes[at] -= (wishes[at] - least_[at]) * short_ / slack;
    }
    return true;
}

void Sharing::growTo(float room) {
    const float rest = room - sum();
    float growing = 0;
    for (std::size_t at = 0; at < wishes.size(); ++at) {
        growing += grows_[at] ? wishes[at] : 0;
    }
    for (std::size_t at = 0; at < wishes.size() && rest > 0; ++at) {
        wishes[at] += grows_[at] ? wishes[at] * rest / growing : 0;
    }
}

void Sharing::squeezeTo(float room) {
    const float scale = room / sum();
    for (float& width : wishes) {
        width *= scale;
    }
}

Table placed(const std::vector<Column>& columns, const Sharing& sharing, float left, float scale,
             bool breakCaptions) {
    Table table;
    table.scale = scale;
    for (std::size_t at = 0; at < columns.size(); ++at) {
        const float width = sharing.wishes[at];
        const float right = left + width - std::min(Gap, width / 3);
        table.columns.push_back(
            {left, right, endsAtRight(columns[at].kind),
             fittedLines(captionLines(columns[at].caption, breakCaptions), right - left)});
        left += width;
    }
    return table;
}

}  // namespace

Table tableOf(const std::vector<Column>& columns, float left, float right) {
    const float room = right - left + Gap;
    for (const float scale : {1.0F, 0.95F, 0.9F, 0.85F, 0.8F}) {
        for (const bool breakCaptions : {false, true}) {
            Sharing sharing(columns, scale, breakCaptions);
            if (sharing.shrinkTo(room)) {
                sharing.growTo(room);
                return placed(columns, sharing, left, scale, breakCaptions);
            }
        }
    }
    Sharing sharing(columns, 0.8F, true);
    sharing.squeezeTo(room);
    return placed(columns, sharing, left, 0.8F, true);
}

}  // namespace reports
