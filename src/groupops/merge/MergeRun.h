#pragma once

#include <memory>
#include <string>

#include "groupops/merge/runmerge.h"
#include "platform/forms/operation.h"
#include "startup/forms/trappedform.h"

namespace Ui {
class MergeRun;
}

namespace groupops {

/// Moves all stops of a run that the planner chooses onto the end of the run it was opened for.
class MergeRun : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit MergeRun(forms::Form* owner = nullptr);
    ~MergeRun() override;

    /// The run that gets the stops.
    void receive(const std::string& run);

    void Merge_Click();
    void Exit_Click();

protected:
    void Form_Load() override;

private:
    void Timer1_Timer();

    void showRuns();
    void showSource();
    [[nodiscard]] RunMerge asked() const;
    bool refuse(const RunMerge& merge);
    void merge(const RunMerge& merge);

    std::unique_ptr<Ui::MergeRun> ui_;
    forms::Timer* Timer1;
    forms::OperationPanel panel_;
};

}  // namespace groupops
