#pragma once

#include <QString>
#include <vector>

namespace help {

/// One thing to know about the running program, such as {"District", "Sample"}.
struct Fact {
    QString name;
    QString value;
};

/// What the user, and whoever helps, wants to know of the program that runs and the district that
/// is open. Holds nothing of students and no passwords.
[[nodiscard]] std::vector<Fact> programFacts();

/// The same with what matters to support only, such as screen and font, as lines of plain text.
[[nodiscard]] QString supportText();

}  // namespace help
