#pragma once

#include <memory>

#include "startup/forms/trappedform.h"

namespace Ui {
class AboutBox;
}

namespace help {

/// Which program this is, and on which district it works.
class AboutBox : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit AboutBox(forms::Form* owner = nullptr);
    ~AboutBox() override;

    void CopyForSupport_Click();

protected:
    void Form_Load() override;

private:
    std::unique_ptr<Ui::AboutBox> ui_;
};

/// Shows it over a form.
void showAbout(forms::Form& over);

}  // namespace help
