#include "reports/formats/htmlstyle.h"

#include <string_view>

#include <fmt/format.h>

#include "reports/formats/columnshares.h"
#include "reports/formats/texts.h"

namespace reports {

namespace {

constexpr std::string_view Screen = R"(
:root{color-scheme:light dark;--paper:#fff;--ink:#111;--soft:#555;--band:#f1f1f1;--hair:#bbb;--bar:#b4b4b4}
@media screen and (prefers-color-scheme:dark){:root{--paper:#17191c;--ink:#eceef0;--soft:#a9b0b7;--band:#23272b;--hair:#4a5058;--bar:#6b737b}}
*{box-sizing:border-box}
body{margin:0 auto;padding:1.5rem;max-width:80rem;background:var(--paper);color:var(--ink);font:14px/1.45 Roboto,"Segoe UI",system-ui,"DejaVu Sans",sans-serif;font-variant-numeric:tabular-nums;overflow-wrap:anywhere}
h1,h2,p,ol,ul{margin:0;padding:0}
ol,ul{list-style:none}
.head{display:flex;flex-wrap:wrap;gap:.2rem 1.5rem;align-items:baseline;padding-bottom:.6rem;border-bottom:2px solid var(--ink)}
.head h1{font-size:1.9rem;line-height:1.2}
.selection{font-size:1.05rem;flex:1 1 12rem}
.made{text-align:right;color:var(--soft)}
.made b{color:var(--ink)}
.confidential{display:inline-block;margin-bottom:.6rem;padding:.1rem .6rem;background:var(--ink);color:var(--paper);font-weight:700;letter-spacing:.06em;text-transform:uppercase}
.foot{margin-top:1rem;padding-top:.4rem;border-top:1px solid var(--hair);color:var(--soft)}
.none{margin:1.5rem 0}
.table{overflow-x:auto}
table{width:100%;border-collapse:collapse;table-layout:fixed}
th,td{padding:.2rem .4rem;text-align:left;vertical-align:top}
thead th{padding-top:.6rem;border-bottom:1px solid var(--hair);color:var(--soft);font-size:.72rem;font-weight:500;letter-spacing:.05em;text-transform:uppercase;vertical-align:bottom}
.n{text-align:right}
tbody tr.r:nth-child(even){background:var(--band)}
tr.group th{padding-top:1rem;font-size:1.15rem}
tr.group.l1 th{padding-top:.5rem;font-size:1.02rem}
tr.group small{margin-left:.5rem;color:var(--soft);font-weight:400}
tr.remark td{padding-left:2rem;color:var(--soft)}
tr.sum th{font-weight:400;font-style:italic}
tr.sum td{font-weight:700}
tr.sum th,tr.sum td{border-top:1px solid var(--ink)}
tr.all th,tr.all td{background:var(--ink);color:var(--paper);font-weight:700}
.load{background:linear-gradient(var(--ink),var(--ink)) 2.1em .4em/1px .8em no-repeat,linear-gradient(var(--bar),var(--bar)) .1em .55em/calc(min(var(--load),140)*.02em) .5em no-repeat}
.over{--bar:var(--ink);font-weight:700}
)";

constexpr std::string_view Sheets = R"(
.sheet{margin:2rem auto;max-width:52rem;content-visibility:auto;contain-intrinsic-size:auto 60rem}
.sheet>header{display:flex;flex-wrap:wrap;gap:1rem;align-items:center;padding-bottom:.7rem;border-bottom:2px solid var(--ink)}
.sheet h2{padding:.4rem 1rem;border-radius:.3rem;background:var(--ink);color:var(--paper);font-size:2.1rem;line-height:1.1}
.start{flex:1}
.end{flex:0 1 auto;margin-left:auto;text-align:right}
.big{font-size:1.4rem;font-weight:700}
.facts{display:flex;flex-wrap:wrap;gap:.4rem 1.8rem;padding:.5rem 0;border-bottom:1px solid var(--hair)}
.facts span{display:block;color:var(--soft);font-size:.72rem;letter-spacing:.05em;text-transform:uppercase}
.facts b{font-size:1.05rem}
.band{display:grid;grid-template-columns:5.2rem 2.2rem 1fr 4.8rem 3.8rem 5.6rem;gap:.3rem;align-items:baseline;margin-top:.45rem;padding:.3rem .5rem;border-radius:.2rem;background:var(--band)}
.band>*{text-align:right}
.band .place{text-align:left}
.time{font-size:1.2rem;font-weight:700;white-space:nowrap}
.number{justify-self:center;min-width:1.5rem;border-radius:1rem;line-height:1.5rem;background:var(--ink);color:var(--paper);font-weight:700;text-align:center}
.place b{font-size:1.1rem}
.side{display:inline-block;margin-left:.4rem;padding:0 .4rem;border-radius:.2rem;background:var(--ink);color:var(--paper);font-size:.75rem;font-style:normal;font-weight:700;text-transform:uppercase}
.students{font-size:1.1rem;font-weight:700}
.id{color:var(--soft);font-size:.8rem}
.school>.band{background:var(--ink);color:var(--paper)}
.school .id{color:inherit}
.empty>.band{background:none;font-style:italic}
.labels{background:none;color:var(--soft);font-size:.72rem;text-transform:uppercase}
.names,.note{margin:.15rem .5rem .15rem 8rem}
.names{columns:10rem;font-size:.9rem}
.turns li{display:grid;grid-template-columns:1.3rem 1fr 3rem;gap:.4rem;padding:.1rem .5rem .1rem 8rem}
.turns .miles{text-align:right}
.turns svg{width:1.1rem;height:1.1rem;fill:none;stroke:currentColor;stroke-width:2.2;stroke-linejoin:miter;align-self:center}
.rest{margin:.4rem .5rem 0 8rem}
.quiet{color:var(--soft)}
.running{display:none}
@media screen and (max-width:600px){
.band{grid-template-columns:4.6rem 1.8rem 1fr auto}
.band .bus,.band .id{grid-column:4}
.labels{display:none}
.names,.note,.rest,.turns li{margin-left:0;padding-left:.5rem}
}
@media print{
.sheet{display:table;width:100%;break-before:page;max-width:none;margin:0;content-visibility:visible}
.running{display:table-header-group;break-inside:avoid;color:var(--soft);font-size:8pt}
.sheet:first-of-type{break-before:auto}
.sheet li{break-inside:avoid}
}
)";

constexpr std::string_view OnPaper = R"(
@media print{
body{max-width:none;padding:0;font-size:9.5pt}
*{print-color-adjust:exact;-webkit-print-color-adjust:exact}
thead{display:table-header-group}
tr{break-inside:avoid}
tr.group{break-after:avoid}
tr.sum,tr.all{break-before:avoid}
tbody.page{break-before:page}
.table{overflow:visible}
table{min-width:0}
.confidential{position:fixed;right:0;bottom:0;margin:0}
}
)";

/// A text between double quotes of a style sheet, which no reader of pages takes for a mark.
std::string styleText(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        result += std::string_view("\"\\<>&\n").find(c) == std::string_view::npos
                      ? std::string(1, c)
                      : fmt::format("\\{:x} ", static_cast<unsigned char>(c));
    }
    return result + '"';
}

/// The alignment of the columns, and their captions before the cells where a row is a card.
std::string columnStyle(const Content& content) {
    std::string columns;
    std::string cards =
        "@media screen and (max-width:600px){body{padding:.8rem}.made{text-align:left}"
        "thead,col{display:none}.load{background:none}"
        "table,tbody{display:block;min-width:0}"
        "tr{display:block}tr.r{display:grid;grid-template-columns:1fr 1fr;gap:0 .8rem;"
        "padding:.4rem 0;border-bottom:1px solid var(--hair)}"
        "tr.r>td{display:flex;justify-content:space-between;gap:.6rem}"
        "tr.r>td:empty{display:none}th[colspan],td[colspan]{display:block}"
        "tr.r>td::before{color:var(--soft);font-weight:400;letter-spacing:normal}\n";
    int number = 0;
    for (const Column& column : content.report().columns) {
        ++number;
        if (isNumber(column.kind)) {
            columns += fmt::format("tr.r>td:nth-child({}){{text-align:right}}\n", number);
        }
        if (column.strong) {
            columns += fmt::format("tr.r>td:nth-child({}){{font-weight:700}}\n", number);
        }
        if (column.kind == CellKind::Days) {
            columns += fmt::format("tr.r>td:nth-child({}){{letter-spacing:.2em}}\n", number);
        }
        cards += fmt::format("tr.r>td:nth-child({})::before{{content:{}}}\n", number,
                             styleText(plain(column.caption)));
    }
    return columns + cards + "}\n";
}

}  // namespace

std::string htmlStyle(const Content& content) {
    const Options& options = content.options();
    std::string style = fmt::format("\n@page{{size:{}{};margin:12mm}}",
                                    options.paper == Paper::A4 ? "A4" : "letter",
                                    options.landscape ? " landscape" : "");
    style += Screen;
    if (content.report().form == Form::Sheet) {
        style += Sheets;
    } else {
        style += columnStyle(content);
        style += fmt::format("@media screen and (min-width:601px){{table{{min-width:{:.0f}pt}}}}\n",
                             textWidth(options));
    }
    return style.append(OnPaper);
}

}  // namespace reports
