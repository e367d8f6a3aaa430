#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace groupops {

/// How a planner is told of an operation.
struct Wording {
    std::string thing;  ///< what it works on, "run"
    std::string done;   ///< what became of one, "changed and saved"
    std::string name;   ///< "the change"
    std::string rest;   ///< how those are that were not reached, a sentence
};

/// How a change of runs is told.
[[nodiscard]] Wording runChangeWording();

inline constexpr auto DeletedMeanwhile = "Deleted by another program meanwhile";

/// A thing that was left as it was.
struct LeftOut {
    std::string why;
    std::string id;
};

/// What an operation on many things has done. Each is either done whole or left as it was.
struct Outcome {
    int asked = 0;
    int done = 0;
    bool stopped = false;    ///< the planner stopped before the last one
    std::string fault = {};  ///< why it could not go on; blank for none
    std::vector<LeftOut> leftOut = {};

    [[nodiscard]] bool complete() const { return done == asked && !stopped && fault.empty(); }
};

/// "1 run", "2 runs".
[[nodiscard]] std::string countOf(std::size_t count, std::string_view thing);
/// "3 runs are selected in the run list."
[[nodiscard]] std::string selectedText(std::size_t count);

/// "2 of 3 runs changed and saved."
[[nodiscard]] std::string howFar(const Outcome& outcome, const Wording& words);
/// What a planner has to know where not everything was done: how far it came, why it came no
/// further, and what was left out for which reason. Empty when all went well.
[[nodiscard]] std::string whatWasLeft(const Outcome& outcome, const Wording& words);

}  // namespace groupops
