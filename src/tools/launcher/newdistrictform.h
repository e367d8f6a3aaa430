#pragma once

#include <memory>
#include <string>

#include "startup/forms/trappedform.h"
#include "tools/launcher/newdistrict.h"

class QLineEdit;

namespace Ui {
class NewDistrict;
}

namespace tools::launcher {

/// What a desktop starts with: makes the sample district or an empty one, or takes one that is
/// there, and has it opened. Stop, or a failure, leaves nothing half made.
class NewDistrictForm : public startup::TrappedForm {
    Q_OBJECT

public:
    /// Over the list of districts where that is open.
    explicit NewDistrictForm(forms::Form* owner = nullptr);
    ~NewDistrictForm() override;

private:
    void showKind();
    void suggestFolder();
    void Browse_Click();
    void Start_Click();
    void takeExisting();
    void make(const NewDistrict& wanted);
    void openInstead(const std::string& folder);
    void refuse(const Objection& objection);
    void takeRefusalBack();
    [[nodiscard]] NewDistrict wanted() const;
    [[nodiscard]] QLineEdit* fieldOf(Objection::Part part) const;

    std::unique_ptr<Ui::NewDistrict> ui_;
    std::string suggested_;  ///< as long as it stands in the box, it follows the name
};

}  // namespace tools::launcher
