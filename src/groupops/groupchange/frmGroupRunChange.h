#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "groupops/base/runselection.h"
#include "groupops/groupchange/runsnow.h"
#include "platform/controls/notebox.h"
#include "platform/forms/operation.h"
#include "startup/forms/trappedform.h"

class QCheckBox;
class QWidget;

namespace Ui {
class frmGroupRunChange;
}

namespace groupops {

/// Sets one or more attributes to the same value on every run that is selected in the run list;
/// shows what the runs have now, and says before what will happen. The list must outlive the
/// form.
class frmGroupRunChange : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit frmGroupRunChange(RunSelection& selection, forms::Form* owner = nullptr);
    ~frmGroupRunChange() override;

    void ChangeRunFamily_Click() { tick(); }
    void ChangeLocation_Click() { tick(); }
    void ChangeSchool_Click() { tick(); }
    void ChangeTripType_Click() { tick(); }
    void ChangeVehType_Click() { tick(); }
    void ChangeCapacity_Click() { tick(); }
    void ChangeOverfill_Click() { tick(); }
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
        controls::NoteBox* now;  ///< what the runs have
        const char* column;
        const char* name;  ///< for messages
        const char* procedure;
        void (frmGroupRunChange::*click)();
    };

    [[nodiscard]] std::vector<Attribute> attributes() const;
    void tick();
    void enableTicked();
    [[nodiscard]] static std::optional<base::Value> valueOf(const Attribute& attribute);
    [[nodiscard]] std::optional<std::vector<RunChange>> changes();
    void refuse(const Attribute& attribute);
    void change(const std::vector<std::string>& runs, const std::vector<RunChange>& changes);
    void showSelected();
    void readRuns();
    void showNow(const Attribute& attribute) const;
    void showWhatWillHappen();
    /// The ticked attributes with the values that are fit to be written.
    [[nodiscard]] std::vector<RunChange> enteredChanges() const;

    RunSelection& selection_;
    std::unique_ptr<Ui::frmGroupRunChange> ui_;
    std::unique_ptr<RunsNow> runs_;
    forms::Timer* Timer1;
    forms::OperationPanel panel_;
};

}  // namespace groupops
