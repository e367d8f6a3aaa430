#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "platform/base/encoding.h"
#include "reports/formats/columnshares.h"
#include "reports/formats/texts.h"
#include "reports/formats/writer.h"
#include "reports/page/fonts.h"
#include "reports/page/page.h"

namespace reports {

namespace {

constexpr int TwipsPerPoint = 20;

long twips(double points) { return std::lround(points * TwipsPerPoint); }

std::string asciiLetter(char c) {
    switch (c) {
        case '\\':
        case '{':
        case '}':
            return std::string{'\\', c};
        case '\n':
            return "\\line ";
        default:
            return std::string(1, c);
    }
}

/// Letters beyond ASCII by their number, and for old readers a question mark, which is written by
/// its number, too: some swallow what stands behind a bare one.
std::string rtfText(std::string_view text) {
    const std::string known = plain(text);
    const std::string units = base::converted(known, "UTF-8", "UTF-16LE");
    std::string result;
    for (std::size_t at = 0; at + 1 < units.size(); at += 2) {
        const auto low = static_cast<unsigned char>(units[at]);
        const auto high = static_cast<unsigned char>(units[at + 1]);
        const auto unit = static_cast<std::int16_t>(static_cast<std::uint16_t>(low | high << 8U));
        result += unit >= 0 && unit < 0x80 ? asciiLetter(static_cast<char>(unit))
                                           : fmt::format("\\u{}\\'3f", unit);
    }
    return result;
}

std::string withMarks(std::string_view marks, std::string_view text) {
    return text.empty() ? std::string() : fmt::format("{{{} {}}}", marks, rtfText(text));
}

std::string paragraph(std::string_view marks, const std::string& content) {
    return fmt::format("\\pard\\plain{} {}\\par\n", marks, content);
}

/// A cell of a table: where it ends, what it looks like, what stands in it.
struct Cell {
    double end = 0;          ///< points from the left margin
    std::string content;     ///< marked and escaped
    std::string_view align;  ///< of its paragraph
    std::string_view look;   ///< of its background and borders
};

std::string rowOf(const std::vector<Cell>& cells, std::string_view rowMarks) {
    std::string row = fmt::format("\\trowd\\trgaph60\\trleft0\\trkeep{}", rowMarks);
    for (const Cell& cell : cells) {
        row += fmt::format("{}\\cellx{}", cell.look, twips(cell.end));
    }
    row += '\n';
    for (const Cell& cell : cells) {
        row += fmt::format("\\pard\\plain\\intbl{} {}\\cell\n", cell.align, cell.content);
    }
    return row + "\\row\n";
}

std::string_view alignOf(std::string_view text, bool toTheRight) {
    if (toTheRight) {
        return "\\qr\\f0\\fs18";
    }
    return startsRightToLeft(text) ? "\\rtlpar\\qr\\f0\\fs18" : "\\ql\\f0\\fs18";
}

std::string rtfWords(const std::vector<SheetWay::Piece>& pieces) {
    std::string words;
    for (const SheetWay::Piece& piece : pieces) {
        words += piece.strong ? withMarks("\\b", piece.text) : rtfText(piece.text);
    }
    return words;
}

constexpr std::string_view Band = "\\clcbpat2";
constexpr std::string_view Dark = "\\clcbpat1";
constexpr std::string_view Below = "\\clbrdrb\\brdrs\\brdrw10";
constexpr std::string_view Above = "\\clbrdrt\\brdrs\\brdrw10";

class Rtf : public Writer {
public:
    Rtf(const KnownContent& content, files::Draft& draft)
        : draft_(draft),
          report_(content.report()),
          heading_(content.heading()),
          width_(textWidth(content.options())) {
        for (const double share : columnShares(report_, content.options())) {
            ends_.push_back((ends_.empty() ? 0 : ends_.back()) + share * width_);
        }
        begin(content.options());
    }

    void take(const Item& item) override {
        std::visit([this](const auto& known) { put(known); }, item);
    }

    void finish() override {
        if (!heading_.foot.empty()) {
            write(paragraph("\\sb200\\f0\\fs16\\cf3", rtfText(heading_.foot)));
        }
        write("}\n");
    }

private:
    void write(std::string_view text) { draft_.write(text); }

    void begin(const Options& options) {
        const PageSize size = sizeOf(options);
        write(
            "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0\n"
            "{\\fonttbl{\\f0\\fswiss\\fcharset0 Roboto{\\*\\falt Arial};}}\n"
            "{\\colortbl;\\red17\\green17\\blue17;\\red236\\green236\\blue236;"
            "\\red85\\green85\\blue85;\\red255\\green255\\blue255;}\n");
        write(
            fmt::format("{{\\info{{\\title {}}}{{\\subject {}}}{{\\author {}}}{{\\company {}}}}}\n",
                        rtfText(heading_.title), rtfText(heading_.selection),
                        rtfText(heading_.user), rtfText(heading_.district)));
        write(fmt::format(
            "\\paperw{}\\paperh{}\\margl{m}\\margr{m}\\margt{m}\\margb{m}{}\n",
            twips(static_cast<double>(size.width)), twips(static_cast<double>(size.height)),
            options.landscape ? "\\landscape\\lndscpsxn" : "", fmt::arg("m", twips(Margin))));
        const std::string confidential =
            heading_.confidential ? withMarks("\\b", ConfidentialText) + "   " : "";
        const std::string tab = fmt::format("\\tqr\\tx{}\\f0\\fs16", twips(width_));
        write(fmt::format("{{\\footer {}}}\n",
                          paragraph(tab, confidential +
                                             rtfText(joined({heading_.district, heading_.title,
                                                             printedLine(heading_)},
                                                            ", ")) +
                                             "\\tab Page {\\field{\\*\\fldinst PAGE}{\\fldrslt 1}}"
                                             " of {\\field{\\*\\fldinst NUMPAGES}{\\fldrslt 1}}")));
        writeHeading();
    }

    void writeHeading() {
        if (heading_.confidential) {
            write(paragraph("\\f0\\fs20", withMarks("\\b\\caps", ConfidentialText)));
        }
        write(paragraph("\\f0\\fs16\\cf3",
                        rtfText(joined({heading_.district, printedLine(heading_)}, " \u00b7 "))));
        write(paragraph("\\sb60\\keepn\\f0\\fs40", withMarks("\\b", heading_.title)));
        if (!heading_.selection.empty()) {
            write(paragraph("\\sa120\\f0\\fs22", rtfText(heading_.selection)));
        }
    }

    /// A mark in the text: not every reader heeds that of a paragraph.
    void breakPage() { write("\\pard\\plain \\page\n"); }

    // ---- A list

    void put(const GroupHead& head) {
        if (head.newPage && hasRows_) {
            breakPage();
        }
        const std::string note =
            head.note.empty() ? "" : "  " + withMarks("\\fs18\\cf3", head.note);
        write(paragraph(
            fmt::format("\\keepn\\sb200\\sa60\\outlinelevel{}{}\\f0\\fs{}", head.level,
                        startsRightToLeft(head.title) ? "\\rtlpar" : "", head.level == 0 ? 26 : 22),
            withMarks("\\b", head.title) + note));
        hasCaptions_ = false;
    }

    void needCaptions() {
        if (std::exchange(hasCaptions_, true)) {
            return;
        }
        std::vector<Cell> cells;
        for (std::size_t i = 0; i < ends_.size(); ++i) {
            const Column& column = report_.columns[i];
            cells.push_back({ends_[i], withMarks("\\fs15\\cf3\\caps", column.caption),
                             alignOf(column.caption, isNumber(column.kind)), Below});
        }
        write(rowOf(cells, "\\trhdr"));
    }

    void put(const Row& row) {
        needCaptions();
        hasRows_ = true;
        std::vector<Cell> cells;
        for (std::size_t i = 0; i < std::min(row.cells.size(), ends_.size()); ++i) {
            const Column& column = report_.columns[i];
            const std::string text = cellText(column.kind, row.cells[i]);
            cells.push_back({ends_[i], column.strong ? withMarks("\\b", text) : rtfText(text),
                             alignOf(text, isNumber(column.kind)), ""});
        }
        write(rowOf(cells, ""));
    }

    void put(const Remark& remark) {
        if (hasCaptions_) {
            write(rowOf(
                {{width_, withMarks("\\cf3", remark.text), alignOf(remark.text, false), ""}}, ""));
        } else {
            write(paragraph("\\f0\\fs18\\cf3", rtfText(remark.text)));
        }
    }

    void put(const Totals& totals) {
        needCaptions();
        std::vector<Cell> cells;
        const auto count = std::min(totals.cells.size(), ends_.size());
        std::size_t at = 0;
        while (at < count && totals.cells[at].isNull()) {
            ++at;
        }
        const std::string_view look = totals.level ? Above : Dark;
        const std::string_view marks = totals.level ? "\\b" : "\\b\\cf4";
        const std::size_t span = std::max<std::size_t>(at, 1);
        cells.push_back({ends_[span - 1], withMarks(totals.level ? "\\i" : marks, totals.title),
                         alignOf(totals.title, false), look});
        for (at = span; at < count; ++at) {
            const CellKind kind = report_.columns[at].kind;
            cells.push_back({ends_[at], withMarks(marks, cellText(kind, totals.cells[at])),
                             alignOf("", isNumber(kind)), look});
        }
        write(rowOf(cells, ""));
    }

    // ---- A sheet

    void put(const SheetHead& head) {
        if (std::exchange(hasRows_, true)) {
            breakPage();
        }
        if (heading_.confidential) {
            write(paragraph("\\keepn\\qr\\f0\\fs18", withMarks("\\b", ConfidentialText)));
        }
        write(paragraph("\\keepn\\sb120\\outlinelevel0\\f0\\fs44",
                        withMarks("\\b\\chcbpat1\\cb1\\cf4", ' ' + head.plate + ' ') + "  " +
                            withMarks("\\b\\fs34", head.title)));
        const std::string tab = fmt::format("\\keepn\\tqr\\tx{}\\f0\\fs24", twips(width_));
        write(paragraph(tab, rtfText(head.subtitle) + "\\tab " + withMarks("\\b", head.right) +
                                 (head.rightSub.empty() ? "" : rtfText(", " + head.rightSub))));
        putFacts(head.facts);
        write(paragraph("\\fs8", ""));
        row({withMarks("\\fs15\\cf3", "TIME"), "",
             withMarks("\\fs15\\cf3", "STOP AND WAY TO THE NEXT"),
             withMarks("\\fs15\\cf3", "STUDENTS"), withMarks("\\fs15\\cf3", "ON BUS"),
             withMarks("\\fs15\\cf3", "MILES")},
            Below, "\\trhdr");
    }

    void putFacts(const std::vector<Fact>& facts) {
        if (facts.empty()) {
            return;
        }
        std::vector<Cell> cells;
        for (const Fact& fact : facts) {
            const auto number = static_cast<double>(cells.size() + 1);
            cells.push_back({width_ * number / static_cast<double>(facts.size()),
                             withMarks("\\fs15\\cf3\\caps", fact.label) + "\\line " +
                                 withMarks("\\b\\fs22", fact.value),
                             alignOf(fact.value, false), Above});
        }
        write(rowOf(cells, ""));
    }

    /// A row of a sheet: time, number, place, students, on the bus, miles.
    void row(const std::vector<std::string>& contents, std::string_view look,
             std::string_view rowMarks) {
        const double place = width_ - 4 * 52;
        const std::vector<double> ends = {58,    84, place + 52, place + 2 * 52, place + 3 * 52,
                                          width_};
        std::vector<Cell> cells;
        for (std::size_t i = 0; i < ends.size(); ++i) {
            cells.push_back({ends[i], contents[i], alignOf("", i != 2), look});
        }
        write(rowOf(cells, rowMarks));
    }

    void put(const SheetStop& stop) {
        const bool isSchool = stop.kind == SheetStop::Kind::School;
        const bool isEmpty = stop.kind == SheetStop::Kind::Empty;
        const std::string colour = isSchool ? "\\cf4" : "";
        const std::string strong = (isEmpty ? "\\i\\fs22" : "\\b\\fs24") + colour;
        const std::string miles = cellText(CellKind::Decimal, stop.miles);
        const bool isRegular = !isSchool && !isEmpty;
        row({withMarks("\\b\\fs24" + colour, cellText(CellKind::Time, stop.time)),
             withMarks("\\b\\fs20" + colour, stop.number > 0 ? std::to_string(stop.number) : ""),
             withMarks(strong, stop.place) +
                 withMarks("\\fs20" + colour, stop.corner.empty() ? "" : ' ' + stop.corner) +
                 withMarks("\\b\\fs18" + colour, stop.leftSide ? "  LEFT SIDE" : ""),
             withMarks("\\b\\fs24" + colour, signedNumber(stop.students)),
             withMarks("\\fs22" + colour, stop.onBus ? std::to_string(*stop.onBus) : ""),
             withMarks("\\fs16" + colour,
                       isRegular && !stop.id.empty() ? "no. " + stop.id : miles)},
            isSchool  ? Dark
            : isEmpty ? std::string_view()
                      : Band,
            "");
        for (const std::string& text : {stop.note, joined(stop.names, "; ")}) {
            if (!text.empty()) {
                row({"", "", withMarks("\\fs20", text), "", "", ""}, "", "");
            }
        }
    }

    void put(const SheetWay& way) {
        row({"", "",
             (way.sign == SheetWay::Sign::Caution ? withMarks("\\b", "! ") : std::string()) +
                 "{\\fs22 " + rtfWords(way.pieces) + '}',
             "", "", withMarks("\\fs20", cellText(CellKind::Decimal, way.miles))},
            "", "");
    }

    void put(const SheetRemark& remark) {
        write(paragraph(remark.quiet ? "\\sb60\\f0\\fs18\\cf3" : "\\sb80\\f0\\fs22",
                        rtfWords(remark.pieces)));
    }

    void put(const SheetMap& /*map*/) {}  // readers of such files draw lines each in their own way

    files::Draft& draft_;
    const Report& report_;
    const Heading& heading_;
    double width_;
    std::vector<double> ends_;
    bool hasCaptions_ = false;
    bool hasRows_ = false;
};

}  // namespace

std::unique_ptr<Writer> rtfWriter(const KnownContent& content, files::Draft& draft) {
    return std::make_unique<Rtf>(content, draft);
}

}  // namespace reports
