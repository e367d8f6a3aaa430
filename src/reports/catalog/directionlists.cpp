#include <string>
#include <string_view>

#include <fmt/format.h>

#include "reports/catalog/definition.h"

namespace reports {

namespace {

using enum CellKind;

constexpr auto VeryBriefLines = " AND L.LINETYPE IN ('Start','Direction','Stop','Total')";
constexpr auto BriefLines = " AND L.LINETYPE IN ('Start','Turn Back','Direction','Stop','Total')";

/// The three styles differ in the lines that are kept and in the pair of texts that is shown.
struct Style {
    const char* id;
    const char* title;
    const char* purpose;
    const char* text;
    const char* figure;
    const char* lines;
};

constexpr Style Styles[]{{"directions", "Directions", "Every line of the way, with landmarks",
                          "L.LINETEXT1", "L.LINETEXT2", ""},
                         {"directions-brief", "Directions, brief", "The way without landmarks",
                          "L.LINETEXT1", "L.LINETEXT2", BriefLines},
                         {"directions-very-brief", "Directions, very brief",
                          "The way in the fewest words, for those who know it", "L.SHORTTEXT",
                          "L.SHORTDIST", VeryBriefLines}};

/// A line that has neither distance nor time says SKIP, which shows blank.
std::string rowsOf(const Style& style) {
    constexpr std::string_view From =
        "SELECT L.*, IIF({}='SKIP',Null,{}) AS FIGURE, {} AS SAID, R.RUN, R.ROUTEID, R.SCHOOLNAME, "
        "R.RUN & ', ' & R.SCHOOLNAME AS RUNTITLE FROM RPT_LINE AS L INNER JOIN RPT_RUN AS R ON "
        "L.RUNID=R.ID WHERE L.SESSION=";
    return fmt::format(From, style.figure, style.figure, style.text) + "{0}" + style.lines;
}

Definition ofLines() {
    return {.report = {.groups = {{"RUNID", "RUNTITLE", "line", false}},
                       .breaks = {PageBreak::None, PageBreak::Run, PageBreak::Route,
                                  PageBreak::School}},
            .ofOneRun = true,
            .fills = {fillDirections},
            .table = "RPT_LINE",
            .alias = "L",
            .order = "L.ID",
            .counts = "line",
            .nothing = "There are no directions: the map has not solved these runs yet."};
}

Definition inStyle(const Style& style) {
    Definition definition = ofLines();
    definition.report.id = style.id;
    definition.report.title = style.title;
    definition.report.purpose = style.purpose;
    definition.report.columns = {growing({"SAID", "Direction", Text, 360}),
                                 {"FIGURE", "Distance or Time", Text, 110}};
    definition.report.groups.front().note.clear();
    definition.rows = rowsOf(style);
    return definition;
}

/// The lines as they came from the map, with all that it said of them.
Definition original() {
    Definition definition = ofLines();
    definition.report.id = "directions-original";
    definition.report.title = "Original directions";
    definition.report.purpose = "The directions exactly as the map delivered them";
    definition.report.columns = {{"LINETYPE", "Line", Text, 56},
                                 {"STOPID", "Stop", Text, 52},
                                 growing({"LINETEXT1", "Text", Text, 230}),
                                 {"LINETEXT2", "Second Text", Text, 76},
                                 growing({"SHORTTEXT", "Short Text", Text, 110}),
                                 {"SHORTDIST", "Short", Text, 34}};
    definition.rows = rowsOf(Styles[0]);
    return definition;
}

}  // namespace

std::vector<Definition> directionLists() {
    std::vector<Definition> all;
    for (const Style& style : Styles) {
        all.push_back(inStyle(style));
    }
    all.push_back(original());
    return all;
}

}  // namespace reports
