#include "help/guide/formplaces.h"

#include <algorithm>
#include <array>

namespace help {

namespace {

constexpr std::array Places{
    FormPlace{"frmTarn", "", "finding-runs", ""},
    FormPlace{"frmTarn", "RunPage", "finding-runs", "run-and-times"},
    FormPlace{"frmTarn", "SchoolPage", "finding-runs", "schools-and-trip-types"},
    FormPlace{"frmTarn", "RoutePage", "finding-runs", "route"},
    FormPlace{"frmTarn", "RunList", "finding-runs", "the-list"},
    FormPlace{"Run", "", "editing-runs", ""},
    FormPlace{"Run", "StopPage", "editing-runs", "stops"},
    FormPlace{"Run", "DirPage", "editing-runs", "directions-special-needs-comment"},
    FormPlace{"Run", "NeedPage", "editing-runs", "directions-special-needs-comment"},
    FormPlace{"Run", "MorePage", "editing-runs", "directions-special-needs-comment"},
    FormPlace{"Run", "WarnPage", "editing-runs", "warnings"},
    FormPlace{"Run", "TimeFields", "editing-runs", "times"},
    FormPlace{"frmStopTripType", "", "stop-times", ""},
    FormPlace{"Add_Remove_Stops", "", "stops-on-a-run", ""},
    FormPlace{"Add_Remove_Stops", "RunSide", "stops-on-a-run", "the-order"},
    FormPlace{"frmSelStops", "", "stops-on-a-run", "the-stop-search-by-itself"},
    FormPlace{"RunLogInquiry", "", "run-log", ""},
    FormPlace{"frmRunSchdl", "", "run-schedule", ""},
    FormPlace{"frmRunSchdl", "SketchBar", "run-schedule", "trying-changes-out"},
    FormPlace{"MapWindow", "", "map", "the-map-window"},
    FormPlace{"BellTimeChange", "", "bell-times", ""},
    FormPlace{"BellTimeChange", "CalcMethod", "bell-times", "how-the-new-times-are-found"},
    FormPlace{"frmGroupRunChange", "", "group-change", ""},
    FormPlace{"Group_Run_Solve", "", "group-solve", ""},
    FormPlace{"MergeRun", "", "merging-runs", ""},
    FormPlace{"frmCalcDeadHead", "", "dead-head", ""},
    FormPlace{"ReportSelection", "", "reports", "making-a-report"},
    FormPlace{"ReportPreview", "", "reports", "on-the-screen"},
    FormPlace{"Districts", "", "first-start", "several-districts"},
    FormPlace{"NewDistrict", "", "first-start", "what-do-you-want-to-start-with"},
    FormPlace{"Logon", "", "districts", "logging-on"},
    FormPlace{"DelWrkFiles", "", "map", "remove-map-work-files"},
    FormPlace{"GuideWindow", "", Guide::Contents, "reading-this-guide"},
    FormPlace{"AboutBox", "", Guide::Contents, "when-you-need-help"},
};

QString text(std::string_view view) {
    return QString::fromUtf8(view.data(), static_cast<qsizetype>(view.size()));
}

const FormPlace* find(std::string_view form, std::string_view part) {
    const auto found = std::ranges::find_if(
        Places, [&](const FormPlace& one) { return one.form == form && one.part == part; });
    return found == Places.end() ? nullptr : &*found;
}

}  // namespace

std::span<const FormPlace> formPlaces() { return Places; }

Place placeOf(std::string_view form, std::span<const std::string> parts) {
    const FormPlace* found = nullptr;
    for (const std::string& part : parts) {
        found = found == nullptr ? find(form, part) : found;
    }
    found = found == nullptr ? find(form, "") : found;
    return found == nullptr ? Place{Guide::Contents, {}}
                            : Place{text(found->page), text(found->anchor)};
}

}  // namespace help
