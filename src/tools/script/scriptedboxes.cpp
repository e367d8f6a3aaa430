#include "tools/script/scriptedboxes.h"

#include <algorithm>
#include <array>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace script {

using base::MsgAnswer;
using base::MsgButtons;

namespace {

constexpr std::array Names{std::pair{MsgAnswer::Ok, "OK"}, std::pair{MsgAnswer::Cancel, "Cancel"},
                           std::pair{MsgAnswer::Yes, "Yes"}, std::pair{MsgAnswer::No, "No"},
                           std::pair{MsgAnswer::Retry, "Retry"}};
constexpr std::array IconNames{"", "Critical", "Question", "Exclamation", "Information"};

std::vector<MsgAnswer> answersOf(MsgButtons buttons) {
    switch (buttons) {
        case MsgButtons::OkCancel:
            return {MsgAnswer::Ok, MsgAnswer::Cancel};
        case MsgButtons::YesNo:
            return {MsgAnswer::Yes, MsgAnswer::No};
        case MsgButtons::YesNoCancel:
            return {MsgAnswer::Yes, MsgAnswer::No, MsgAnswer::Cancel};
        case MsgButtons::RetryCancel:
            return {MsgAnswer::Retry, MsgAnswer::Cancel};
        case MsgButtons::Ok:
            break;
    }
    return {MsgAnswer::Ok};
}

bool offers(MsgButtons buttons, MsgAnswer answer) {
    const std::vector<MsgAnswer> offered = answersOf(buttons);
    return std::find(offered.begin(), offered.end(), answer) != offered.end();
}

}  // namespace

MsgAnswer ScriptedBoxes::show(const base::MsgRequest& request) {
    ShownBox box{request, base::defaultAnswer(request), false, false};
    if (!planned_.empty() && offers(request.buttons, planned_.front())) {
        box.answer = planned_.front();
        box.asPlanned = true;
        box.expected = true;
        planned_.pop_front();
    }
    boxes_.push_back(box);
    return box.answer;
}

std::vector<ShownBox> ScriptedBoxes::take() {
    std::vector<ShownBox> taken(boxes_.begin(), boxes_.end());
    boxes_.clear();
    return taken;
}

std::optional<ShownBox> ScriptedBoxes::take(const std::string& title) {
    const auto found = std::find_if(boxes_.begin(), boxes_.end(), [&](const ShownBox& box) {
        return box.request.title == title;
    });
    if (found == boxes_.end()) {
        return std::nullopt;
    }
    ShownBox box = *found;
    boxes_.erase(found);
    return box;
}

const ShownBox* ScriptedBoxes::unexpected() const {
    const auto found = std::find_if(boxes_.begin(), boxes_.end(),
                                    [](const ShownBox& box) { return !box.expected; });
    return found == boxes_.end() ? nullptr : &*found;
}

MsgAnswer answerNamed(const std::string& name) {
    const auto* found = std::ranges::find(Names, name, [](const auto& one) { return one.second; });
    return found == Names.end() ? MsgAnswer::Ok : found->first;
}

std::string nameOf(MsgAnswer answer) {
    return std::ranges::find(Names, answer, [](const auto& one) { return one.first; })->second;
}

std::string described(const ShownBox& box) {
    std::vector<std::string> buttons;
    for (const MsgAnswer answer : answersOf(box.request.buttons)) {
        buttons.push_back(nameOf(answer));
    }
    const std::string icon = IconNames[static_cast<std::size_t>(box.request.icon)];
    return fmt::format("{}\"{}\" ({}) -> {}{}\n{}", icon.empty() ? "" : "[" + icon + "] ",
                       box.request.title, fmt::join(buttons, ", "), nameOf(box.answer),
                       box.asPlanned ? "" : " (default)", box.request.plainText());
}

}  // namespace script
