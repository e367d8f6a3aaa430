#pragma once

#include <memory>

#include "platform/forms/operation.h"
#include "startup/forms/trappedform.h"

class QCheckBox;

namespace Ui {
class frmCalcDeadHead;
}

namespace groupops {

/// Calculates the dead-head of all routes and lists what could not be calculated.
class frmCalcDeadHead : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit frmCalcDeadHead(forms::Form* owner = nullptr);
    ~frmCalcDeadHead() override;

    void Calculate_Click();
    void CloseIt_Click();

    /// Whether all runs are marked as not calculated first. Ticked at first.
    [[nodiscard]] QCheckBox& ResetDeadHead() const;

protected:
    void Form_Load() override;

private:
    void Timer1_Timer();
    void showOutlook();

    std::unique_ptr<Ui::frmCalcDeadHead> ui_;
    forms::Timer* Timer1;
    forms::OperationPanel panel_;
};

}  // namespace groupops
