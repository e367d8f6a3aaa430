#pragma once

#include <memory>

#include "platform/forms/form.h"

class QCheckBox;

namespace forms {
class Timer;
}

namespace Ui {
class frmCalcDeadHead;
}

namespace groupops {

/// Calculates the dead-head of all routes and lists what could not be calculated.
class frmCalcDeadHead : public forms::Form {
    Q_OBJECT

public:
    explicit frmCalcDeadHead(forms::Form* owner = nullptr);
    ~frmCalcDeadHead() override;

    void Calculate_Click();
    void CloseIt_Click();

    /// Whether all runs are marked as not calculated first. Ticked at first.
    [[nodiscard]] QCheckBox& ResetDeadHead() const;

protected:
    void formLoad() override { Form_Load(); }

private:
    void Form_Load();
    void Timer1_Timer();

    void calculate();

    std::unique_ptr<Ui::frmCalcDeadHead> ui_;
    forms::Timer* Timer1;
};

}  // namespace groupops
