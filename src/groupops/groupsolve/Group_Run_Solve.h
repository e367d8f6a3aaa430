#pragma once

#include <memory>
#include <set>

#include "groupops/base/runselection.h"
#include "groupops/groupsolve/groupsolve.h"
#include "runedit/map/mapanswer.h"
#include "startup/forms/trappedform.h"

namespace Ui {
class Group_Run_Solve;
}

namespace groupops {

/// Sends the runs that are selected in the run list to the map program, one after another, to be
/// solved again, and shows how far each has come. The list must outlive the form.
class Group_Run_Solve : public startup::TrappedForm, private MapSide {
    Q_OBJECT

public:
    explicit Group_Run_Solve(RunSelection& selection, forms::Form* owner = nullptr);
    ~Group_Run_Solve() override;

    void ChangeIt_Click();
    /// Stops when the run at hand is done; pressed again, without waiting for its answer.
    void StopIt_Click();
    void CloseIt_Click();

protected:
    void Form_Load() override;
    void Form_Activate() override;

private:
    [[nodiscard]] std::vector<std::string> runsToSend() const;
    void showSelected();
    void refuseNothing();
    void solve(const std::vector<std::string>& runs);
    SolveOutcome operate(const std::vector<std::string>& runs);
    void offerTheRest(const SolveOutcome& outcome);
    void tell(const SolveOutcome& outcome);
    void hint(const QString& text);

    void require() override { runedit::requireMapProgram(); }
    std::vector<runedit::UnlistedRun> listRuns(const std::vector<std::string>& runs) override;
    bool cleanUp(std::size_t runs) override;
    bool awaitDatabase(const Outcome& soFar, base::ProgressPort& progress) override;
    void send(const std::string& run) override;
    MapReply awaitReply(const std::string& run) override;
    void showState(const SolveOutcome& outcome, std::size_t at) override;

    bool waitForCleanUp(std::size_t runs);
    [[nodiscard]] bool goOnWaiting(const std::string& run) const;

    RunSelection& selection_;
    std::unique_ptr<Ui::Group_Run_Solve> ui_;
    runedit::MapAnswer answer_;            ///< the form's two timers
    MapReply reply_ = MapReply::MapEnded;  ///< to the run that was sent last
    int stops_ = 0;                        ///< how often Stop was pressed
    std::set<std::string> solved_;
};

}  // namespace groupops
