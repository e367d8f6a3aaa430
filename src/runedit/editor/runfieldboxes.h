#pragma once

#include <array>
#include <string>

#include "runedit/editor/runfields.h"

class QAbstractButton;
class QWidget;

namespace runedit {

/// The controls of the run editor's fields, one each.
class RunFieldBoxes {
public:
    using Controls = std::array<QWidget*, RunTexts::Count>;  ///< in the order of RunField

    /// `dropOff` is the option that is chosen where Pickup is not.
    RunFieldBoxes(const Controls& controls, QAbstractButton& dropOff)
        : controls_(controls), dropOff_(&dropOff) {}

    [[nodiscard]] RunTexts texts() const;
    [[nodiscard]] std::string text(RunField field) const;
    void show(RunField field, const std::string& text);
    void show(const RunTexts& texts);

    /// Paints the field red and puts the cursor there.
    void refuse(RunField field);
    /// No field is red any more.
    void clearRefusals();

private:
    [[nodiscard]] QWidget* control(RunField field) const {
        return controls_[static_cast<std::size_t>(field)];
    }

    Controls controls_;
    QAbstractButton* dropOff_;
};

}  // namespace runedit
