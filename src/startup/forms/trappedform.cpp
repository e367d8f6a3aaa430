#include "startup/forms/trappedform.h"

#include <fmt/format.h>

#include "platform/base/ports.h"
#include "startup/base/mdlDBConnection.h"

namespace startup {

namespace {

constexpr auto NothingLost = "What you have entered is not lost.";

/// What is said of the refusal that is being handled; `locked` of a lock.
PlainWords refusalWords(const PlainWords& locked) {
    if (lockedElsewhere()) {
        return locked;
    }
    const CurrentError error = currentError();
    PlainWords words = plainWordsFor(error.number, error.description);
    return {words.title, words.text + "  " + NothingLost};
}

}  // namespace

TrappedForm::TrappedForm(const char* name, forms::Form* owner, AfterError afterError)
    : forms::Form(name, owner), afterError_(afterError) {}

TrappedForm::Message TrappedForm::lockedMessage() const {
    return {"Database in Use",
            "Oops, another program is writing to the database just now.  Nothing you typed is "
            "lost.  Please wait a moment and try again."};
}

bool TrappedForm::unlessLocked(const Message& message, const std::function<void()>& part) {
    try {
        part();
        return true;
    } catch (const std::exception&) {
        if (!refusedByStore()) {
            throw;
        }
        tell({message.title, refusalWords(message).text}, name());
        return false;
    }
}

void TrappedForm::tell(const Message& words, const std::string& where) {
    const CurrentError error = currentError();
    base::MsgBox({.text = words.text,
                  .title = words.title,
                  .icon = base::MsgIcon::Exclamation,
                  .details = fmt::format("{}\n\nError ({}) {}{}", where, error.number,
                                         error.description, statementDetail(error))});
}

/// A form that could not be filled because the store refused has nothing to show.
void TrappedForm::formLoad() {
    loadFailed_ = true;
    enter(Refusal::Told, "Form_Load", [this] {
        Form_Load();
        loadFailed_ = false;
    });
    if (loadFailed_ && afterError_ == AfterError::ProgramEnds) {
        unload();
    }
}

void TrappedForm::formActivate() {
    enter(Refusal::Told, "Form_Activate", &TrappedForm::Form_Activate);
}

bool TrappedForm::formQueryUnload() {
    return enter(Refusal::Told, "Form_QueryUnload", &TrappedForm::Form_QueryUnload);
}

void TrappedForm::formUnload() { enter(Refusal::Told, "Form_Unload", &TrappedForm::Form_Unload); }

void TrappedForm::failed(Refusal refusal, const char* procedure) {
    if (refusedByStore()) {
        if (refusal == Refusal::Passes) {
            throw;
        }
        tell(refusalWords(lockedMessage()), operationName(procedure, name()));
        return;
    }
    report(procedure, name(), afterError_);
    if (afterError_ == AfterError::ProgramEnds) {
        ShutDown(1);
    }
}

}  // namespace startup
