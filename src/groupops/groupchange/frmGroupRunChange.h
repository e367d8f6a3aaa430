#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "groupops/base/runselection.h"
#include "groupops/groupchange/runchange.h"
#include "platform/forms/operation.h"
#include "startup/forms/trappedform.h"

class QCheckBox;
class QWidget;

namespace Ui {
class frmGroupRunChange;
}

namespace groupops {

/// Sets one or more attributes to the same value on every run that is selected in the run list. The
/// list must outlive the form.
class frmGroupRunChange : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit frmGroupRunChange(RunSelection& selection, forms::Form* owner = nullptr);
    ~frmGroupRunChange() override;

    void ChangeRunFamily_Click() { enableTicked(); }
    void ChangeLocation_Click() { enableTicked(); }
    void ChangeSchool_Click() { enableTicked(); }
    void ChangeTripType_Click() { enableTicked(); }
    void ChangeVehType_Click() { enableTicked(); }
    void ChangeCapacity_Click() { enableTicked(); }
    void ChangeOverfill_Click() { enableTicked(); }
    void ChangeIt_Click();
    void CloseIt_Click();
    void Timer1_Timer();

protected:
    void Form_Load() override;
    void Form_Activate() override;

private:
    /// One line of the form: may the column be changed, and to what.
    struct Attribute {
        QCheckBox* box;
        QWidget* value;
        const char* column;
        const char* name;  ///< for messages
        const char* procedure;
        void (frmGroupRunChange::*click)();
    };

    [[nodiscard]] std::vector<Attribute> attributes() const;
    void enableTicked();
    [[nodiscard]] std::optional<base::Value> valueOf(const Attribute& attribute);
    [[nodiscard]] std::optional<std::vector<RunChange>> changes();
    void refuse(const Attribute& attribute);
    void change(const std::vector<std::string>& runs, const std::vector<RunChange>& changes);
    void showSelected();

    RunSelection& selection_;
    std::unique_ptr<Ui::frmGroupRunChange> ui_;
    forms::Timer* Timer1;
    forms::OperationPanel panel_;
};

}  // namespace groupops
