#pragma once

#include <string>

namespace startup {

/// What a planner reads of an error, in place of its number and the program's own text for it.
struct PlainWords {
    std::string title;
    std::string text;
};

/// Words for a run-time error. `description` is repeated where it says which file is meant.
[[nodiscard]] PlainWords plainWordsFor(int number, const std::string& description);

/// Whether the error that is being handled is a refusal of the store that wrote nothing and that
/// the program outlives: another program holds the file for longer than a connection waits, the
/// disk is full, the file may only be read or is not the one any more that was opened.
[[nodiscard]] bool refusedByStore();

}  // namespace startup
