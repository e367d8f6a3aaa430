#include <algorithm>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "platform/base/fold.h"
#include "platform/base/lookup.h"
#include "reports/formats/columnshares.h"
#include "reports/formats/htmlstyle.h"
#include "reports/formats/svg.h"
#include "reports/formats/texts.h"
#include "reports/formats/writer.h"

namespace reports {

namespace {

constexpr std::string_view Signs = R"(<svg width="0" height="0" aria-hidden="true">
<symbol id="straight" viewBox="0 0 16 16"><path d="M8 15V3M4 7L8 2L12 7"/></symbol>
<symbol id="left" viewBox="0 0 16 16"><path d="M13 15V6H3M7 2L2 6L7 10"/></symbol>
<symbol id="right" viewBox="0 0 16 16"><path d="M3 15V6H13M9 2L14 6L9 10"/></symbol>
<symbol id="back" viewBox="0 0 16 16"><path d="M13 15V4H4V13M1 9L4 14L7 9"/></symbol>
<symbol id="caution" viewBox="0 0 16 16"><path d="M8 2L15 14H1ZM8 6V10M8 11V13"/></symbol>
</svg>
)";

std::string_view signName(SheetWay::Sign sign) {
    static constexpr std::pair<SheetWay::Sign, std::string_view> Names[] = {
        {SheetWay::Sign::Straight, "straight"},
        {SheetWay::Sign::Left, "left"},
        {SheetWay::Sign::Right, "right"},
        {SheetWay::Sign::Back, "back"},
        {SheetWay::Sign::Caution, "caution"}};
    return base::lookUp(Names, sign, "");
}

std::string_view kindName(SheetStop::Kind kind) {
    return kind == SheetStop::Kind::School  ? "school"
           : kind == SheetStop::Kind::Empty ? "empty"
                                            : "stop";
}

/// A text with its line ends.
std::string marked(std::string_view text) {
    std::string result;
    for (const char c : htmlText(plain(text))) {
        result += c == '\n' ? "<br/>" : std::string(1, c);
    }
    return result;
}

/// An attribute for what may be written from right to left.
std::string_view direction(std::string_view text) {
    return base::isAscii(text) ? "" : " dir=\"auto\"";
}

std::string element(std::string_view name, std::string_view kind, std::string_view text) {
    if (text.empty()) {
        return {};
    }
    const std::string attribute = kind.empty() ? "" : fmt::format(" class=\"{}\"", kind);
    return fmt::format("<{0}{1}{2}>{3}</{0}>", name, attribute, direction(text), marked(text));
}

/// What is not there without contents.
std::string block(std::string_view kind, const std::string& contents) {
    return contents.empty() ? contents : fmt::format("<div class=\"{}\">{}</div>", kind, contents);
}

/// One that stands in a grid, where its place must not go to the next one.
std::string placed(std::string_view kind, std::string_view text) {
    return text.empty() ? fmt::format("<span class=\"{}\">&#160;</span>", kind)
                        : element("span", kind, text);
}

std::string markedWords(const std::vector<SheetWay::Piece>& pieces) {
    std::string words;
    for (const SheetWay::Piece& piece : pieces) {
        words += piece.strong ? element("b", "", piece.text) : marked(piece.text);
    }
    return words;
}

class Html : public Writer {
public:
    Html(const KnownContent& content, files::Draft& draft)
        : draft_(draft), report_(content.report()), heading_(content.heading()) {
        begin(content);
        if (report_.form == Form::List) {
            beginTable(content);
        } else {
            draft_.write(Signs);
        }
    }

    void take(const Item& item) override {
        isEmpty_ = false;
        std::visit([this](const auto& known) { put(known); }, item);
    }

    void finish() override {
        if (report_.form == Form::List) {
            end(body_, "</tbody>\n");
            write("</table></div>\n");
        } else {
            endSheet();
        }
        if (isEmpty_) {
            write("<p class=\"none\">No rows.</p>\n");
        }
        write(element("p", "foot", heading_.foot) + "\n</main>\n</body>\n</html>\n");
    }

private:
    void write(std::string_view text) { draft_.write(text); }

    void begin(const Content& content) {
        const std::string title = marked(joined({heading_.title, heading_.selection}, " – "));
        write(fmt::format(
            "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\"/>\n"
            "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n"
            "<title>{}</title>\n<style>{}</style>\n</head>\n<body>\n",
            title.empty() ? "Report" : title, htmlStyle(content)));
        if (heading_.confidential) {
            write(element("p", "confidential", ConfidentialText) + '\n');
        }
        write(fmt::format(
            "<main>\n<header class=\"head\">{}{}<p class=\"made\">{}<br/>{}</p>"
            "</header>\n",
            element("h1", "", heading_.title), element("p", "selection", heading_.selection),
            element("b", "", heading_.district), marked(printedLine(heading_))));
    }

    void beginTable(const Content& content) {
        write("<div class=\"table\"><table>\n<colgroup>");
        for (const double share : columnShares(report_, content.options())) {
            write(fmt::format("<col style=\"width:{:.2f}%\"/>", share * 100));
        }
        write("</colgroup>\n<thead><tr>");
        for (const Column& column : report_.columns) {
            write(fmt::format("<th scope=\"col\"{}>{}</th>",
                              isNumber(column.kind) ? " class=\"n\"" : "", marked(column.caption)));
        }
        write("</tr></thead>\n");
    }

    void end(bool& isOpen, std::string_view mark) {
        if (std::exchange(isOpen, false)) {
            write(mark);
        }
    }

    void needBody() {
        if (!std::exchange(body_, true)) {
            write("<tbody>\n");
        }
    }

    void put(const GroupHead& head) {
        end(body_, "</tbody>\n");
        body_ = true;
        write(fmt::format(
            "<tbody{}>\n<tr class=\"group l{}\"><th scope=\"rowgroup\" "
            "colspan=\"{}\"{}>{}{}</th></tr>\n",
            head.newPage && hasRows_ ? " class=\"page\"" : "", head.level, report_.columns.size(),
            direction(head.title), marked(head.title), element("small", "", head.note)));
    }

    void put(const Row& row) {
        needBody();
        hasRows_ = true;
        std::string line = "<tr class=\"r\">";
        for (std::size_t i = 0; i < std::min(row.cells.size(), report_.columns.size()); ++i) {
            line += cell(report_.columns[i].kind, row.cells[i]);
        }
        write(line + "</tr>\n");
    }

    static std::string cell(CellKind kind, const base::Value& value) {
        const std::string text = cellText(kind, value);
        if (kind == CellKind::Load && !value.isNull()) {
            return fmt::format("<td class=\"load{}\" style=\"--load:{:.0f}\">{}</td>",
                               value.asNumber() > 100 ? " over" : "", value.asNumber(), text);
        }
        return fmt::format("<td{}>{}</td>", direction(text), marked(text));
    }

    void put(const Remark& remark) {
        needBody();
        write(fmt::format("<tr class=\"remark\"><td colspan=\"{}\"{}>{}</td></tr>\n",
                          report_.columns.size(), direction(remark.text), marked(remark.text)));
    }

    void put(const Totals& totals) {
        needBody();
        const auto count = std::min(totals.cells.size(), report_.columns.size());
        std::size_t at = 0;
        while (at < count && totals.cells[at].isNull()) {
            ++at;
        }
        std::string line = totals.level ? "<tr class=\"sum\">" : "<tr class=\"all\">";
        const std::size_t span = std::max<std::size_t>(at, 1);
        line += fmt::format("<th scope=\"row\" colspan=\"{}\"{}>{}</th>", span,
                            direction(totals.title), marked(totals.title));
        for (at = span; at < count; ++at) {
            const CellKind kind = report_.columns[at].kind;
            line += fmt::format("<td{}>{}</td>", isNumber(kind) ? " class=\"n\"" : "",
                                marked(cellText(kind, totals.cells[at])));
        }
        write(line + "</tr>\n");
    }

    void put(const SheetHead& head) {
        endSheet();
        sheet_ = true;
        write("<article class=\"sheet\">\n" +
              element("p", "running", joined({head.plate, head.title}, " – ")) + "<header>" +
              element("h2", "", head.plate) +
              block("start", element("p", "big", head.title) + element("p", "", head.subtitle)) +
              block("end", element("p", "big", head.right) + element("p", "", head.rightSub)) +
              "</header>\n");
        writeFacts(head.facts);
        write(
            "<div class=\"band labels\"><span>Time</span><span>&#160;</span>"
            "<span class=\"place\">Stop and way to the next</span><span>Students</span>"
            "<span>On bus</span><span>Miles</span></div>\n");
    }

    void writeFacts(const std::vector<Fact>& facts) {
        if (facts.empty()) {
            return;
        }
        write("<ul class=\"facts\">");
        for (const Fact& fact : facts) {
            write("<li>" + element("span", "", fact.label) + ' ' + element("b", "", fact.value) +
                  "</li>");
        }
        write("</ul>\n");
    }

    void put(const SheetStop& stop) {
        endStop();
        if (!std::exchange(way_, true)) {
            write("<ol>\n");
        }
        stop_ = true;
        const std::string place =
            element("b", "", stop.place) +
            (stop.corner.empty() ? "" : ' ' + element("span", "", stop.corner)) +
            (stop.leftSide ? " <em class=\"side\">Left side</em>" : "");
        const std::string miles = cellText(CellKind::Decimal, stop.miles);
        const bool isRegular = stop.kind == SheetStop::Kind::Stop;
        write(fmt::format(
            "<li class=\"{}\"><div class=\"band\">{}{}<span "
            "class=\"place\">{}</span>{}{}{}</div>\n",
            kindName(stop.kind), placed("time", cellText(CellKind::Time, stop.time)),
            stop.number > 0 ? placed("number", std::to_string(stop.number)) : "<span>&#160;</span>",
            place, placed("students", signedNumber(stop.students)),
            placed("bus", stop.onBus ? std::to_string(*stop.onBus) : ""),
            placed("id", isRegular && !stop.id.empty() ? "no. " + stop.id : miles)));
        write(element("p", "note", stop.note));
        putNames(stop.names);
    }

    void putNames(const std::vector<std::string>& names) {
        if (names.empty()) {
            return;
        }
        write("<ul class=\"names\">");
        for (const std::string& name : names) {
            write(element("li", "", name));
        }
        write("</ul>\n");
    }

    void put(const SheetWay& way) {
        if (!stop_) {
            SheetStop nowhere;
            nowhere.kind = SheetStop::Kind::Empty;
            put(nowhere);
        }
        if (!std::exchange(turns_, true)) {
            write("<ul class=\"turns\">\n");
        }
        const std::string_view sign = signName(way.sign);
        write(fmt::format(
            "<li>{}<span>{}</span>{}</li>\n",
            sign.empty()
                ? std::string("<span>&#160;</span>")
                : fmt::format(
                      "<svg role=\"img\" aria-label=\"{0}\"><use href=\"#{0}\"></use></svg>", sign),
            markedWords(way.pieces), placed("miles", cellText(CellKind::Decimal, way.miles))));
    }

    void put(const SheetRemark& remark) {
        endWay();
        write(fmt::format("<p class=\"rest{}\">{}</p>\n", remark.quiet ? " quiet" : "",
                          markedWords(remark.pieces)));
    }

    void put(const SheetMap& map) {
        constexpr float Width = 720, Height = 380;
        endWay();
        if (const auto found = map.find()) {
            // With its own style: a page without a map has none of it.
            write(
                fmt::format("<figure style=\"margin:1rem 0 0;break-inside:avoid;font-size:.72rem;"
                            "text-align:right\">{}{}</figure>\n",
                            svgOf(found->drawn(Width, Height), plain(found->told())),
                            element("figcaption", "", found->attribution())));
        }
    }

    void endStop() {
        end(turns_, "</ul>\n");
        end(stop_, "</li>\n");
    }
    void endWay() {
        endStop();
        end(way_, "</ol>\n");
    }
    void endSheet() {
        endWay();
        end(sheet_, "</article>\n");
    }

    files::Draft& draft_;
    const Report& report_;
    const Heading& heading_;
    bool isEmpty_ = true;
    bool hasRows_ = false;
    // What is begun and not ended.
    bool body_ = false;
    bool sheet_ = false;
    bool way_ = false;
    bool stop_ = false;
    bool turns_ = false;
};

}  // namespace

std::unique_ptr<Writer> htmlWriter(const KnownContent& content, files::Draft& draft) {
    return std::make_unique<Html>(content, draft);
}

}  // namespace reports
