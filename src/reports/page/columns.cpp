#include "reports/page/columns.h"

#include <algorithm>
#include <iterator>
#include <numeric>

#include "platform/base/fold.h"

namespace reports {

namespace {

constexpr float LeastShare = 0.62F;  ///< of its wish that a column keeps while there is another way
constexpr Style NarrowLabel{Face::CondensedBold, 6.5F, LabelInk, Role::Artifact, 0.2F};

/// One way of setting a table, the best first.
struct Setting {
    float scale;
    bool breaksCaptions;
    bool isNarrow;

    [[nodiscard]] Style caption() const { return isNarrow ? NarrowLabel : LabelStyle; }
    [[nodiscard]] float gap() const { return isNarrow ? 6 : 9; }
};

constexpr Setting Settings[] = {
    {1, false, false},    {1, true, false},    {0.95F, true, false}, {0.9F, true, false},
    {0.85F, true, false}, {0.8F, true, false}, {0.8F, true, true},
};

bool endsAtRight(CellKind kind) { return kind != CellKind::Text && kind != CellKind::Days; }

Face faceOf(const Column& column, const Setting& setting) {
    return setting.isNarrow ? (column.strong ? Face::CondensedBold : Face::Condensed)
                            : (column.strong ? Face::Bold : Face::Regular);
}

/// The widest value that a kind usually has.
float usualWidth(const Column& column, const Setting& setting) {
    const float size = 10 * setting.scale;
    const Face face = faceOf(column, setting);
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
            return widthOf(face, size, "12:58 AM");
        case CellKind::Date:
            return widthOf(face, size, "12/28/2028");
        case CellKind::DateTime:
            return widthOf(face, size, "12/28/2028 12:58 AM");
        case CellKind::Load:
            break;
    }
    return LoadBar + 12 + widthOf(setting.isNarrow ? Face::CondensedBold : Face::Bold, size, "188");
}

std::vector<std::string> captionLines(const std::string& caption, const Setting& setting) {
    const std::string capitals = base::upperCase(caption);
    if (!setting.breaksCaptions) {
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

float widest(const std::vector<std::string>& lines, const Style& style) {
    float width = 0;
    for (const std::string& line : lines) {
        width = std::max(width, widthOf(style, line));
    }
    return width;
}

/// Lines that a column is too narrow for are broken once more.
std::vector<std::string> partsOf(const std::vector<std::string>& lines, const Style& style,
                                 float width) {
    std::vector<std::string> fitted;
    for (const std::string& line : lines) {
        if (widthOf(style, line) <= width + 0.01F) {
            fitted.push_back(line);
            continue;
        }
        for (const Line& part : wrapped(style.face, style.size * 1.15F, line, width)) {
            fitted.emplace_back(part.text);
        }
    }
    return fitted;
}

/// A caption in as few lines as its column allows.
std::vector<std::string> fittedLines(const std::string& caption, const Setting& setting,
                                     float width) {
    const Setting whole{setting.scale, false, setting.isNarrow};
    const auto line = captionLines(caption, whole);
    return widest(line, setting.caption()) <= width
               ? line
               : partsOf(captionLines(caption, setting), setting.caption(), width);
}

/// Widths of all columns, gaps included, at one size of type.
class Sharing {
public:
    Sharing(const std::vector<Column>& columns, const Setting& setting) {
        const float scale = setting.scale;
        const float gap = setting.gap();
        for (const Column& column : columns) {
            const auto lines = captionLines(column.caption, setting);
            const float caption = widest(lines, setting.caption()) + gap;
            const float usual = usualWidth(column, setting) + gap;
            const bool gives = column.grows || column.condensed;
            const float asked = static_cast<float>(column.width) * scale;
            const float unbroken =
                widthOf(faceOf(column, setting), 10 * scale, column.unbroken) + gap;
            const float wish = std::max({asked, caption, usual, unbroken});
            wishes.push_back(wish);
            least_.push_back(gives ? std::max({caption, usual, asked * LeastShare, unbroken})
                                   : wish);
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

Table placed(const std::vector<Column>& columns, const Sharing& sharing, float left,
             const Setting& setting) {
    Table table;
    table.scale = setting.scale;
    table.narrow = setting.isNarrow;
    table.caption = setting.caption();
    for (std::size_t at = 0; at < columns.size(); ++at) {
        const float width = sharing.wishes[at];
        const float right = left + width - std::min(setting.gap(), width / 3);
        table.columns.push_back({left, right, endsAtRight(columns[at].kind),
                                 fittedLines(columns[at].caption, setting, right - left)});
        left += width;
    }
    return table;
}

}  // namespace

Table tableOf(const std::vector<Column>& columns, float left, float right) {
    const Setting* setting = std::begin(Settings);
    for (;; ++setting) {
        const float room = right - left + setting->gap();
        Sharing sharing(columns, *setting);
        const bool fits = sharing.shrinkTo(room);
        if (!fits && setting + 1 == std::end(Settings)) {
            sharing.squeezeTo(room);
        } else if (!fits) {
            continue;
        }
        sharing.growTo(room);
        return placed(columns, sharing, left, *setting);
    }
}

}  // namespace reports
