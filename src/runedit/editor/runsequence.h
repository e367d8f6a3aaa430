#pragma once

#include <string>

namespace runedit {

/// The runs that a planner goes through in the editor one after the other: those of a list, in the
/// order shown there.
class RunSequence {
public:
    virtual ~RunSequence() = default;

    /// 1-based place of the run among the listed runs, 0 when it is not listed.
    [[nodiscard]] virtual int placeOf(const std::string& run) const = 0;
    [[nodiscard]] virtual int count() const = 0;
    /// The run at a 1-based place; chooses it in the list too.
    virtual std::string choose(int place) = 0;
};

}  // namespace runedit
