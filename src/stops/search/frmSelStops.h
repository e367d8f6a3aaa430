#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "startup/forms/trappedform.h"
#include "stops/search/chosenstop.h"

namespace Ui {
class frmSelStops;
}

namespace stops {

/// The stop search as a form of its own: gives the stops that the planner chose to whoever asked.
class frmSelStops : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit frmSelStops(forms::Form* owner = nullptr);
    ~frmSelStops() override;

    /// Called once with the chosen stops, in the order shown, before the form closes; where it
    /// throws, the form stays with its choice. Not called where it is left without one.
    void whenChosen(std::function<void(const std::vector<ChosenStop>&)> taker);
    /// The trip type that the search starts with, free ones only; before the form is loaded.
    void startFrom(const std::string& tripType) { tripType_ = tripType; }

    void cmdChoose_Click();
    void SelectAll_Click();
    void Exit_Click();

protected:
    void Form_Load() override;
    void Form_Unload() override;

private:
    std::unique_ptr<Ui::frmSelStops> ui_;
    std::string tripType_;
    std::function<void(const std::vector<ChosenStop>&)> taker_;
};

}  // namespace stops
