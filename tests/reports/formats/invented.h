#pragma once

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "reports/page/invented.h"
#include "support/commandoutput.h"
#include "support/temporaryfolder.h"

namespace reports {

inline Column column(const char* field, CellKind kind, Total total = Total::None) {
    Column made;
    made.field = field;
    made.caption = std::string(field).substr(0, 1) + " & " + field;
    made.kind = kind;
    made.width = 60;
    made.grows = kind == CellKind::Text;
    made.total = total;
    return made;
}

inline const std::vector<std::string>& nastyTexts() {
    static const std::vector<std::string> texts = [] {
        std::istringstream all(
            "O'Brien & Sons <b>\"x\"</b>; a,b|François, Łódź|גן ילדים, רחוב 5|"
            "شارع المدرسة at 5th Avenue|🚌 bus 👩‍👧, 学校|line one\r\nline "
            "two\rthree|=1+1|+4|-x|"
            "@home|'quoted'|tab\there \x01 bell|back\\slash {brace} \\u8|  blanks  |"
            "not \xff utf|107-1");
        std::vector<std::string> parts;
        for (std::string text; std::getline(all, text, '|');) {
            parts.push_back(text);
        }
        parts.emplace_back(200, 'W');
        return parts;
    }();
    return texts;
}

/// A group with a row of each nasty text, its totals, the report's totals.
inline Invented nastyList() {
    Report report;
    report.title = "Run list";
    report.columns = {column("RUN", CellKind::Text),
                      column("START", CellKind::Time),
                      column("DAY", CellKind::Date),
                      column("STOPS", CellKind::Whole, Total::Sum),
                      column("MILES", CellKind::Decimal, Total::Greatest),
                      column("COST", CellKind::Money),
                      column("LOAD", CellKind::Load, Total::Ratio)};
    report.columns.back().ratioOf = "STOPS";
    report.columns.back().ratioTo = "MILES";
    Group school;
    school.field = "SCHOOL";
    school.title = "SCHOOLNAME";
    report.groups = {school};
    std::vector<Item> items = {GroupHead{0, "École <1>", "2 runs", false}};
    for (const std::string& text : nastyTexts()) {
        items.emplace_back(Row{{text, base::Date::timeOfDay(0, 0), base::Date::of(2026, 1, 5), 1234,
                                13.14, 1204.5, 117}});
    }
    items.emplace_back(GroupHead{0, "Zweite", "1 run", true});
    items.emplace_back(Row{{"last", base::Date::timeOfDay(17, 31), {}, {}, {}, {}, {}}});
    items.emplace_back(Remark{"Too <many>\nriders"});
    items.emplace_back(Totals{0, "Zweite, total", {{}, {}, {}, 0, 0.0, {}, {}}});
    const auto stops = static_cast<int>(1234 * nastyTexts().size());
    items.emplace_back(Totals{{}, "All", {{}, {}, {}, stops, 13.14, {}, 117}});
    return {std::move(report), std::move(items)};
}

using support::outputOf;

using Rows = std::vector<std::vector<std::string>>;

/// A file's rows as another program reads them.
inline Rows readBack(const std::string& file, const std::string& what = "") {
    Rows rows;
    std::istringstream all(outputOf("/usr/bin/python3 '" VIREO_SOURCE_DIR
                                    "/tests/reports/formats/readback.py' '" +
                                    file + "' " + what));
    for (std::string row; std::getline(all, row, '\x1e');) {
        auto& cells = rows.emplace_back();
        std::istringstream line(row + '\x1f');
        for (std::string cell; std::getline(line, cell, '\x1f');) {
            cells.push_back(cell);
        }
    }
    return rows;
}

}  // namespace reports
