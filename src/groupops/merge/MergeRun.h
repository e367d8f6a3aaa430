#pragma once

#include <memory>
#include <optional>
#include <string>

#include "groupops/merge/mergecomparison.h"
#include "platform/forms/operation.h"
#include "startup/forms/trappedform.h"

namespace Ui {
class MergeRun;
}

namespace groupops {

/// Moves all stops of a run that the planner chooses onto the end of the run it was opened for, and
/// shows both side by side before. Merge is the default button only where they are alike.
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
    void showBoth();
    void showLines();
    void showUnlike();
    void showAfter();
    [[nodiscard]] RunMerge asked() const;
    bool refuse(const RunMerge& merge);
    [[nodiscard]] bool isMeant(const RunMerge& merge) const;
    void merge(const RunMerge& merge);

    std::unique_ptr<Ui::MergeRun> ui_;
    std::optional<MergeComparison> both_;  ///< nothing while no source is chosen
    forms::Timer* Timer1;
    forms::OperationPanel panel_;
};

}  // namespace groupops
