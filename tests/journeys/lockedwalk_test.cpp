#include <QTimer>
#include <set>

#include "platform/files/files.h"
#include "platform/forms/timer.h"
#include "platform/store/open/open.h"
#include "runedit/map/fakemap.h"
#include "startup/base/mdlGetMapSoftware.h"
#include "support/storewatch.h"
#include "walk.h"

namespace {

using support::ControlsOf;
using walk::Station;
using walk::Stations;

/// Where a planner is told of the lock, or stops an operation that waits for its end; and in how
/// many transactions the same press writes once the lock is gone.
constexpr auto ToldAt =
    "Add_Remove_Stops.AddStop 1 Add_Remove_Stops.DelStop 1 Add_Remove_Stops.ExitAddRun 2 "
    "Add_Remove_Stops.MoveDown 1 Add_Remove_Stops.MoveUp 1 Add_Remove_Stops.Move_To_Top 1 "
    "Add_Remove_Stops.Move_to_Bottom 1 Add_Remove_Stops.lstSTOP_TRIPTYPE 1 "
    "BellTimeChange.ChangeBell 6 Group_Run_Solve.ChangeIt 3 MergeRun.Merge 2 Run.CalcTimes 2 "
    "Run.Exit_Run 2 Run.MapIt 3 Run.NextRun 2 Run.OK 2 Run.PreviousRun 2 Run.Remove 1 "
    "frmCalcDeadHead.Calculate 4 frmGroupRunChange.ChangeIt 1 frmSelStops.cmdChoose 1 "
    "frmSelStops.lstSTOP_TRIPTYPE 1 frmStopTripType.CalcTimes 3 frmStopTripType.Exit_StopTrip 2 "
    "frmStopTripType.NextStop 2 frmStopTripType.OK 2 frmStopTripType.PreviousStop 2 "
    "frmTarn.Delete 1";

const std::set<std::string> NotPressed{"frmTarn.Exit", "frmTarn.chkNew", "Run.chkNew",
                                       "Run.Closed_Browse", "frmRunSchdl.PrintIt"};

/// The program on a district whose routing file another program holds at each press of a button.
class LockedWalk : public walk::Walk {
protected:
    LockedWalk() {
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
        Walk::TearDown();
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
            const auto before = version();
            // A bell change that was stopped shows its groups anew.
            if (station.form == std::string("BellTimeChange")) {
                ControlsOf again(open(station));
                prepare(again, station);
            }
            agree(action);
            support::StoreWatch::commits = 0;
            act(*opened(station.form));
            toldAt.insert(name + " " + std::to_string(support::StoreWatch::commits));
            EXPECT_FALSE(wasToldOfALock());
            EXPECT_NE(version(), before) << "nothing is written after the lock is gone";
            closeOthers(station);
        }
    }
    void press(const Station& station) {
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
        press(station);
        closeOthers(stationOf("frmTarn"));
        if (HasFatalFailure()) {
            break;
        }
    }
    EXPECT_GT(presses, 80);
    EXPECT_EQ(support::joined({toldAt.begin(), toldAt.end()}), ToldAt);
}

}  // namespace
