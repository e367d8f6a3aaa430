#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/ports.h"

namespace script {

/// A message box that was shown, and what it was answered.
struct ShownBox {
    base::MsgRequest request;
    base::MsgAnswer answer = base::MsgAnswer::Ok;
    bool asPlanned = false;  ///< the answer came from the script
    bool expected = false;   ///< the script answered it, listed it or expected it
};

/// Message boxes that the script answers: with the answers given beforehand, else with their
/// default.
class ScriptedBoxes : public base::MsgBoxPort {
public:
    base::MsgAnswer show(const base::MsgRequest& request) override;

    void plan(base::MsgAnswer answer) { planned_.push_back(answer); }
    void forgetAnswers() { planned_.clear(); }
    [[nodiscard]] std::size_t answersLeft() const { return planned_.size(); }

    /// The boxes since the last call; all of them count as expected from now on.
    std::vector<ShownBox> take();
    /// Takes the first box of that title; nothing if there is none.
    std::optional<ShownBox> take(const std::string& title);
    /// The first box that nobody answered, listed or expected; null if there is none.
    [[nodiscard]] const ShownBox* unexpected() const;

private:
    std::deque<base::MsgAnswer> planned_;
    std::deque<ShownBox> boxes_;
};

[[nodiscard]] base::MsgAnswer answerNamed(const std::string& name);
[[nodiscard]] std::string nameOf(base::MsgAnswer answer);
/// `[Question] "Title": Text (Yes, No) -> Yes`, the text on lines of its own where it has several.
[[nodiscard]] std::string described(const ShownBox& box);

}  // namespace script
