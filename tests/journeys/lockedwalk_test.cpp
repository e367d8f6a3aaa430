#include <QTimer>
#include <map>
#include <set>

#include "platform/controls/grid.h"
#include "platform/files/files.h"
#include "platform/forms/timer.h"
#include "runedit/map/fakemap.h"
#include "runedit/map/maphandoff.h"
#include "runsearch/search/frmTarn.h"
#include "startup/base/mdlGetMapSoftware.h"
#include "startup/base/session.h"
#include "support/formtest.h"
#include "support/runbuilder.h"

namespace {

using support::ControlsOf;

void fillForWalk(const support::TestDistrict& district) {
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

const std::vector<Station> Stations{
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
    {"frmCalcDeadHead", "frmTarn", "DeadHead", nullptr, "", {"CloseIt"}, {}},
};

/// Where a planner is told of the lock, or stops an operation that waits for its end.
constexpr auto ToldAt =
    "Add_Remove_Stops.AddStop Add_Remove_Stops.DelStop Add_Remove_Stops.ExitAddRun "
    "Add_Remove_Stops.MoveDown Add_Remove_Stops.MoveUp Add_Remove_Stops.Move_To_Top "
    "Add_Remove_Stops.Move_to_Bottom Add_Remove_Stops.lstSTOP_TRIPTYPE BellTimeChange.ChangeBell "
    "Group_Run_Solve.ChangeIt MergeRun.Merge Run.CalcTimes Run.Exit_Run Run.MapIt Run.OK "
    "Run.Remove "
    "frmCalcDeadHead.Calculate frmGroupRunChange.ChangeIt frmSelStops.cmdChoose "
    "frmSelStops.lstSTOP_TRIPTYPE frmStopTripType.CalcTimes frmStopTripType.Exit_StopTrip "
    "frmStopTripType.NextStop frmStopTripType.OK frmStopTripType.PreviousStop frmTarn.Delete";

const std::set<std::string> NotPressed{"frmTarn.Exit", "frmTarn.chkNew", "Run.chkNew",
                                       "Run.Closed_Browse"};

/// The program on a district whose routing file another program holds at each press of a button.
class LockedWalk : public support::FormTest<> {
protected:
    LockedWalk() : FormTest(fillForWalk) {
        startup::gCommandLine = "ANN";
        startup::gMapSoftware = startup::ArcView;
        forms::Timer::setSpeed(200);
        // A planner who does not wait presses Stop.
        QObject::connect(&impatience_, &QTimer::timeout, [] {
            for (auto* busy : forms::FormRegistry::instance().loaded()) {
                for (const char* name : {"Stop", "StopIt", "StopChange"}) {
                    auto* stop = busy->findChild<QAbstractButton*>(name);
                    if (busy->isBusy() && stop != nullptr && stop->isEnabled()) {
                        stop->click();
                    }
                }
            }
        });
        map.whenTaken = [this] {
            QTimer::singleShot(5, [this] {
                files::write(district.progPath() + "RunDone.txt", "");
                runedit::deleteMapFiles("WALK");
            });
        };
    }
    void TearDown() override {
        forms::Timer::setSpeed(1);
        FormTest::TearDown();
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
        for (auto* grid : on.form().findChildren<controls::Grid*>()) {
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
    static std::vector<std::string> buttonsOf(const forms::Form& form) {
        std::vector<std::string> names;
        for (auto* button : form.findChildren<QAbstractButton*>()) {
            if (const auto name = button->objectName().toStdString();
                !name.empty() && !name.starts_with("qt_")) {
                names.push_back(name);
            }
        }
        return names;
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
    /// Changes whenever another connection has written.
    std::int64_t version() {
        const auto row = watcher_->prepare("PRAGMA data_version");
        row->step();
        return row->integer(0);
    }
    bool wasToldOfALock() {
        return std::ranges::any_of(texts(), [](const std::string& text) {
            return text.find("another program") != std::string::npos ||
                   text.find("You stopped") != std::string::npos;
        });
    }

    /// A loss is asked about with No as the default.
    void agree(const std::string& action) {
        session.boxes.answers.clear();
        if (action == "Remove" || action == "Delete") {
            answer(base::MsgAnswer::Yes);
        }
    }
    void press(const Station& station, const std::string& action,
               const std::function<void(forms::Form&)>& act) {
        const std::string name = station.form + ("." + action);
        SCOPED_TRACE(name);
        auto& pressed = open(station);
        ControlsOf on(pressed);
        prepare(on, station, action == "Delete" ? "NO STOPS" : "WALK");
        texts();
        {
            const auto held = heldByOthers();
            impatience_.start(20);
            agree(action);
            act(pressed);
            impatience_.stop();
            ASSERT_FALSE(ending()) << lastText();
            closeOthers(station);
        }
        const bool told = wasToldOfALock();
        const bool left = !told && std::ranges::count(station.leaves, action) > 0;
        ASSERT_EQ(opened(station.form) == nullptr, left);
        if (station.box != nullptr && !left && std::ranges::count(station.empties, action) == 0) {
            EXPECT_EQ(on.text(station.box), typed);
        }
        if (told) {
            toldAt.insert(name);
            const auto before = version();
            // A bell change that was stopped shows its groups anew.
            if (station.form == std::string("BellTimeChange")) {
                ControlsOf again(open(station));
                prepare(again, station);
            }
            agree(action);
            act(*opened(station.form));
            EXPECT_FALSE(wasToldOfALock());
            EXPECT_NE(version(), before) << "nothing is written after the lock is gone";
            closeOthers(station);
        }
    }
    void walk(const Station& station) {
        for (const auto& button : buttonsOf(open(station))) {
            if (NotPressed.contains(station.form + ("." + button))) {
                continue;
            }
            press(station, button, [&](forms::Form& on) {
                if (auto* found = on.findChild<QAbstractButton*>(button.c_str());
                    found->isEnabled() && !found->isHidden()) {
                    ++presses;
                    found->click();
                    if (found->isCheckable()) {
                        found->click();
                    }
                }
            });
        }
        for (auto* list : open(station).findChildren<controls::MultiColumnList*>()) {
            const auto name = list->objectName().toStdString();
            press(station, name, [&](forms::Form& on) {
                auto& found = ControlsOf(on).list(name.c_str());
                if (found.rows() > 0) {
                    ++presses;
                    emit found.rowActivated(found.chosenRow());
                }
            });
        }
    }

    std::string typed;
    int times = 0;
    FakeMap map;
    std::set<std::string> toldAt;
    int presses = 0;

private:
    QTimer impatience_;
    std::unique_ptr<store::Database> watcher_ =
        store::open(district.path(data::DatabaseFile::Routing));
};

TEST_F(LockedWalk, NoButtonEndsTheProgramAndWhatWasTypedStands) {
    for (const auto& station : Stations) {
        walk(station);
        closeOthers(stationOf("frmTarn"));
        if (HasFatalFailure()) {
            break;
        }
    }
    EXPECT_GT(presses, 80);
    EXPECT_EQ(support::joined({toldAt.begin(), toldAt.end()}), ToldAt);
}

}  // namespace
