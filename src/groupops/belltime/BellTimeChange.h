#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "groupops/base/runselection.h"
#include "groupops/belltime/bellchange.h"
#include "groupops/belltime/bellforecast.h"
#include "groupops/belltime/belloutlook.h"
#include "platform/forms/operation.h"
#include "startup/forms/trappedform.h"

namespace Ui {
class BellTimeChange;
}

namespace groupops {

/// Changes the bell times of the runs that the last search found, by school and bell time, and with
/// them the times of the runs; shows before what will come of it. The run list must outlive the
/// form. Where the runs are more than it holds, it says so and does not open.
class BellTimeChange : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit BellTimeChange(RunSelection& selection, forms::Form* owner = nullptr);
    ~BellTimeChange() override;

    void Build_Time_List();

    void SetTimes_Click();
    void AddMin_Click();
    void ChangeBell_Click();
    void Change_Run_Time_Click();
    void FixedMinutes_Click();
    void SameGap_Click();
    void Exit_Change_Click();
    void Timer1_Timer();

protected:
    void Form_Load() override;
    void formDress() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    using NewBells = std::vector<std::optional<base::Date>>;

    void wire();

    void BellTimeGrid_AfterEdit(int row);
    void showSelected();
    void setNewBell(int row, base::Date time);
    /// The selected rows; tells the planner where there are none.
    [[nodiscard]] std::vector<int> rowsToSet();

    /// Nothing where the planner, told what is wrong, has to enter something else.
    [[nodiscard]] std::optional<NewBells> newBells();
    [[nodiscard]] std::optional<BellMethod> method();
    void refuseNewBell(int row);

    Outcome change(const BellChange& change);
    void calculateDeadHead();
    void tellWhatWasLeft(const Outcome& outcome, bool deadHeadIsDue);

    void makeRoom();
    void arrange();
    bool buildIfItFits(const char* whatIsWritten);
    void rebuild(const BellChange& change, bool stopped);

    /// As far as it is entered and needs no message.
    [[nodiscard]] NewBells enteredBells() const;
    [[nodiscard]] std::optional<BellMethod> enteredMethod() const;
    void showOutlook();
    void showWarnings(const std::vector<BellWarning>& warnings);
    void showJudgements(const std::vector<GroupForecast>& groups);
    void showChosen(const std::vector<GroupForecast>& groups, const NewBells& bells);

    RunSelection& selection_;
    std::unique_ptr<Ui::BellTimeChange> ui_;
    forms::Timer* Timer1;
    forms::OperationPanel panel_;
    std::unique_ptr<BellGroups> groups_;
    std::unique_ptr<BellForecaster> forecaster_;
    bool lean_ = false;  ///< the grid stands above what is done to it
    bool narrow_ = false;
    std::map<int, int> changed_;  ///< by row, how many of its runs the last change has moved there
};

}  // namespace groupops
