#pragma once

#include <QTabWidget>
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "platform/controls/grid.h"
#include "platform/forms/filedialog.h"
#include "reports/printing/printservice.h"
#include "runedit/map/maphandoff.h"
#include "runsearch/search/frmTarn.h"
#include "startup/base/session.h"
#include "support/formtest.h"
#include "support/runbuilder.h"

namespace walk {

using support::ControlsOf;

inline void fillForWalk(const support::TestDistrict& district) {
    fillSmall(district);
    district.sql(data::DatabaseFile::Routing,
                 "INSERT INTO StartEnd(StartorEnd, Run) VALUES (' ', ' ')");
    support::RunBuilder("WALK")
        .with("DESCRIPTION", "on the walk")
        .with("TimeToUse", "Start Time")
        .school("OAK")
        .starts("7:10")
        .ends("7:50")
        .bell("8:00")
        .stop("W1", {.load = 1, .drive = 0})
        .stop("W2", {.load = 1, .drive = 5})
        .stop("W3", {.load = 1, .drive = 5})
        .stop("W4", {.load = 1, .drive = 5})
        .into(district);
    district.sql(data::DatabaseFile::Routing, "UPDATE STOP SET XPOS=1, YPOS=1");
    district.sql(data::DatabaseFile::Routing, "UPDATE RUN SET SCHOOL='OAK' WHERE RUN='102-AM'");
    support::RunBuilder("NO STOPS").with("DESCRIPTION", "of no stops").into(district);
    support::RunBuilder("").stop("FREE1").stop("FREE2").stop("FREE3").into(district);
}

struct Station {
    const char* form;
    const char* opener;  ///< the form and its button that open it
    const char* button;
    const char* box;                   ///< a box that the planner has typed into
    std::string typed;                 ///< with "#", another text each time
    std::vector<std::string> leaves;   ///< buttons that close the form
    std::vector<std::string> empties;  ///< buttons made for emptying what was typed
};

inline const std::vector<Station> Stations{
    {"frmTarn", "", "", "RunDesc", "o", {}, {"cmdReset"}},
    {"Run", "frmTarn", "Edit", "Comment", "typed #", {"Exit_Run"}, {}},
    {"frmStopTripType", "Run", "StopEdit", "TIME_AT_STOP", "07:2# AM", {"Exit_StopTrip"}, {}},
    {"Add_Remove_Stops", "Run", "AddStops", "Zip", "", {"ExitAddRun"}, {}},
    {"frmSelStops", "Run", "GetStops", "Zip", "", {"Exit", "cmdChoose", "lstSTOP_TRIPTYPE"}, {}},
    {"RunLogInquiry", "Run", "Log", "cmbActivityCode", "1", {"Exit"}, {}},
    {"BellTimeChange", "frmTarn", "ChangeBell", "SetTime", "07:50 AM", {"Exit_Change"}, {}},
    {"frmGroupRunChange", "frmTarn", "GroupChange", "OverFill", "3", {"CloseIt"}, {}},
    {"Group_Run_Solve", "frmTarn", "GroupSolve", nullptr, "", {"CloseIt"}, {}},
    {"MergeRun", "frmTarn", "MergeRuns", "cmbRUN", "102-AM", {"Exit"}, {}},
    {"frmRunSchdl", "frmTarn", "TimeLine", nullptr, "", {"Exit"}, {}},
    {"frmCalcDeadHead", "frmTarn", "DeadHead", nullptr, "", {"CloseIt"}, {}},
    {"ReportSelection", "frmTarn", "PrintIt", nullptr, "", {"Exit"}, {}},
    {"ReportPreview", "ReportSelection", "Preview", "PageNumber", "1", {"Exit"}, {}},
};

/// A planner who opens one form of the program after the other.
class Walk : public support::FormTest<> {
protected:
    Walk() : FormTest(fillForWalk) {
        startup::gCommandLine = "ANN";
        forms::setFileChooser([](const auto&) { return QString(); });
        printing::setService({[] { return std::nullopt; }, [](const auto&) { return "none"; }});
    }
    ~Walk() override {
        forms::setFileChooser({});
        printing::setService({});
    }
    runsearch::frmTarn& form() override { return loaded<runsearch::frmTarn>(); }

    static const Station& stationOf(const std::string& form) {
        return *std::ranges::find_if(Stations,
                                     [&](const auto& station) { return station.form == form; });
    }
    /// The form of a station, opened the planner's way where it is not.
    forms::Form& open(const Station& station) {
        if (auto* there = opened(station.form)) {
            return *there;
        }
        if (station.opener == std::string()) {
            form().showForm();
            return form();
        }
        ControlsOf opener(open(stationOf(station.opener)));
        prepare(opener, stationOf(station.opener));
        opener.click(station.button);
        auto* there = opened(station.form);
        if (there == nullptr) {
            throw std::runtime_error(std::string(station.form) + " did not open: " + lastText());
        }
        return *there;
    }
    /// What a planner does before the press: types, finds, selects.
    void prepare(support::Controls& on, const Station& station, const char* run = "WALK") {
        runedit::deleteMapFiles("WALK");
        if (station.box != nullptr) {
            typed = station.typed;
            std::ranges::replace(typed, '#', static_cast<char>('1' + ++times % 9));
            on.type(station.box, typed);
        }
        if (auto* search = on.form().findChild<QAbstractButton*>("cmdSearch")) {
            search->click();
        }
        for (auto* grid : on.form().findChildren<controls::Grid*>("BellTimeGrid")) {
            grid->selectAllRows();
            grid->setCellText(1, 3, "08:15 AM");
        }
        for (auto* list : on.form().findChildren<controls::MultiColumnList*>()) {
            if (!list->objectName().startsWith("lst") || on.form().objectName() != "frmTarn") {
                choose(*list, run);
            }
        }
        for (const char* box : {"ChangeOverfill", "ResetDeadHead"}) {
            if (auto* check = on.form().findChild<QAbstractButton*>(box)) {
                check->setChecked(true);
            }
        }
    }
    /// The row of that run; of a list without it the second row, which can go up and down.
    static void choose(controls::MultiColumnList& list, const std::string& run) {
        int row = std::min(1, list.rows() - 1);
        for (int i = 0; i < list.rows(); ++i) {
            row = list.cellText(i, 0) == run ? i : row;
        }
        if (row >= 0) {
            list.choose(row);
            emit list.rowClicked(row);
        }
    }
    void closeOthers(const Station& station) {
        for (auto* other : forms::FormRegistry::instance().loaded()) {
            const bool isBelow = other->name() == "frmTarn" || other->name() == station.form ||
                                 other->name() == station.opener;
            if (!isBelow && other->isLoaded()) {
                other->unload();
            }
        }
        forms::Application::instance().yield();
    }

    static void settle() {
        for (int turn = 0; turn < 5; ++turn) {
            forms::Application::instance().yield();
        }
    }
    /// Turns to each page of a form in turn; the form itself is page 0 where it has none.
    static void onEachPage(const forms::Form& form, const std::function<void(int page)>& look) {
        auto* tabs = form.findChild<QTabWidget*>();
        for (int page = 0; page < (tabs == nullptr ? 1 : tabs->count()); ++page) {
            if (tabs != nullptr) {
                tabs->setCurrentIndex(page);
            }
            settle();
            look(page);
        }
    }

    std::string typed;
    int times = 0;
};

}  // namespace walk
