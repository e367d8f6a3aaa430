#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data/records/recordboxes.h"
#include "data/records/records.h"
#include "map/small/runmap.h"
#include "platform/base/date.h"
#include "platform/forms/timer.h"
#include "runedit/editor/fieldarrangement.h"
#include "runedit/editor/runsequence.h"
#include "runedit/editor/stoptotals.h"
#include "runedit/map/mapanswer.h"
#include "runedit/validation/checkedrun.h"
#include "runedit/validation/mdlValidate_Runs.h"
#include "startup/forms/changednote.h"
#include "startup/forms/changewatch.h"
#include "startup/forms/trappedform.h"
#include "stops/sequence/runstops.h"

namespace Ui {
class Run;
}
namespace controls {
class MultiColumnCombo;
}

namespace runedit {

class CrowdedDelegate;

/// The run editor: one run's fields, its stops, directions, warnings and special needs. OK checks
/// the fields, saves, validates and stays. What another program changes meanwhile is told before
/// anything is overwritten.
class Run : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit Run(forms::Form* owner = nullptr);
    ~Run() override;

    /// Which run to show, or a new one; before the form is loaded, or later on. A run that is not
    /// there is told, and the form is not shown.
    void edit(const std::string& run);
    void editNew();
    /// The list that the next and the previous run come from; it outlives the form.
    void follow(RunSequence& runs) { runs_ = &runs; }

    void OK_Click();
    /// 0 where all fields can be saved, otherwise the code of the first that cannot.
    int Check_For_Error();
    void CalcTimes_Click();
    void Command1_Click();
    void MapIt_Click();
    void AddStops_Click();
    void GetStops_Click();
    void StopEdit_Click();
    void Remove_Click();
    void Merge_Click();
    void Log_Click();
    void Closed_Browse_Click();
    void Clear_Closed_Click();
    void PrintStops_Click();
    void PrintDir_Click();
    void PrintOrg_Click();
    void PrintWarn_Click();
    void NextRun_Click();
    void PreviousRun_Click();
    void GoToStop_Click();
    void GoToField_Click();
    void Exit_Run_Click();
    void Timer3_Timer();

    void Build_StopList();
    void Build_DirList();
    void Build_WarnList();
    void Build_SpecialNeedsList();

protected:
    void Form_Load() override;
    void Form_Activate() override;
    bool Form_QueryUnload() override;
    void Form_Unload() override;
    [[nodiscard]] Message lockedMessage() const override;
    void formDress() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    static constexpr auto Module = "Run";  ///< what the error trap calls it

    bool Check_Run_EarlyBellTime(base::Date bell);
    bool Check_Run_LateBellTime(base::Date bell);

    void dress();
    void wireFields();
    void wireLists();
    void wireButtons();
    void wireButtonKeys();
    void wireMap();
    /// On its page only; elsewhere the map is not looked at.
    void showSmallMap();

    void begin(const std::string& run, bool isNew);
    void walk(int step);
    void tellNotFound(const std::string& run);
    void startEditing();
    void openStored();
    void openNew();
    void fill(const data::Record& run);
    void present(const data::Record& run);
    void refresh();
    void watchOthers();
    /// Says in a line of the form where it shows something else than what others have stored.
    void lookAtOthers(const store::Changes& changes);
    void showHead();
    void showNames();
    void showAudit(const data::Record& run);
    void showButtons();
    void showPlace();
    void seatsChanged();
    void showTotals();
    [[nodiscard]] RunReads readsOf(const std::string& run) const;
    [[nodiscard]] static ado::ReadAhead askTogether(const RunReads& reads);
    [[nodiscard]] std::string level() const;
    void readVehicle();
    [[nodiscard]] std::string routeVehType() const;
    [[nodiscard]] RunReads likelyReads() const;
    [[nodiscard]] RunReads vehicleAndSeatsReads() const;
    void arrange();
    void refuseUnknownKey(controls::MultiColumnCombo* combo);
    void showStatus(const QString& text, bool green = false);
    void hideSaved();
    void buildLists();
    [[nodiscard]] std::string chosenStopTrip() const;
    void chooseStopTrip(const std::string& id);
    [[nodiscard]] int rowOfStop(const std::string& stopId) const;
    void goToStop(const std::string& stopId);
    void showWarning(int row);
    void showUnplaced(const std::vector<std::size_t>& rows);

    [[nodiscard]] bool isNew() const;
    [[nodiscard]] std::string run() const;
    /// Its row as it is stored now; nothing where there is none.
    [[nodiscard]] std::optional<data::Record> storedRun() const;
    [[nodiscard]] data::Entries entries() const;
    /// Asks about what is not saved; `toDo` comes next.
    bool mayLeave(const char* toDo);

    bool save();
    bool checkAndSave() { return Check_For_Error() == 0 && confirmDoubts() && save(); }
    bool confirmDoubts();
    void afterSaving(const data::Record& stored);
    bool askAboutDeletion();
    void checkBell(const data::Record& entered);
    void tellNoMinutes(const std::string& stop);
    void sendToMap();
    void printReport(const std::string& report);

    [[nodiscard]] stops::EditedRun runOfStops() const;
    void addToRun(const std::vector<stops::ChosenStop>& chosen);
    template <class Change>
    void changeStops(Change change);

    std::unique_ptr<Ui::Run> ui_;
    std::unique_ptr<data::RecordBoxes> boxes_;
    MapAnswer answer_;
    map::RunMaps maps_;
    forms::Timer Timer3;  ///< hides the status
    startup::ChangedNote* changed_;
    std::optional<data::Record> seen_;  ///< the run as it was read last
    RunSequence* runs_ = nullptr;
    std::string toEdit_;  ///< the run asked for; blank for a new one
    CrowdedDelegate* onTheBus_ = nullptr;
    std::optional<Arrangement> arrangement_;
    bool isFilling_ = false;  ///< the lists follow, and the totals with them
    StopTotals totals_;       ///< of the list of stops
    CheckedRun vehicle_;      ///< the run with its route's vehicle as they were found last
    bool allPlaced_ = true;
    bool saysSaved_ = false;  ///< the status tells of the last saving
    bool activatedBefore_ = false;
};

}  // namespace runedit
