#pragma once

namespace Ui {
class Run;
}

namespace runedit {

/// How the editor's fields stand, by the room that there is for them.
enum class Arrangement {
    Wide,    ///< three groups beside each other, five lines
    Middle,  ///< the same in six lines
    Narrow,  ///< the times below the others
    Lean,    ///< all groups below each other
};

/// For a form so many characters wide.
[[nodiscard]] Arrangement arrangementFor(int characters);

/// Gives the fields widths that follow the font. Once, after the form is made.
void sizeFields(Ui::Run& ui);
/// Puts the fields where they belong; only they scroll where the form is too low for them.
void arrangeFields(Ui::Run& ui, Arrangement arrangement);

}  // namespace runedit
