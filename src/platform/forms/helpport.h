#pragma once

#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace forms {

class Form;

/// What tells users how a form is used.
struct HelpPort {
    /// Shows what is known of a form; `parts` are the names of what holds the focus, from within.
    std::function<void(const std::string& form, const std::vector<std::string>& parts)> show;
    /// Says of the fields of a form what they mean; called when it is loaded.
    std::function<void(Form&)> describe;
};

/// The one in force. Without one F1 does nothing.
[[nodiscard]] HelpPort& helpPort();

/// Shows what is known of the form that a control belongs to; of a box or dialog it is the form
/// below. False where nobody knows anything.
bool askForHelp(const QWidget& control);

/// Says what the control means that has the focus; where there is nothing to say, a click on
/// another one asks.
void askWhatThisIs(QWidget& control);

}  // namespace forms
