#include "startup/forms/trappedform.h"

#include "platform/base/ports.h"
#include "startup/base/mdlDBConnection.h"

namespace startup {

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
        if (!lockedElsewhere()) {
            throw;
        }
    }
    tell(message);
    return false;
}

void TrappedForm::tell(const Message& message) {
    base::MsgBox(message.text, message.title, base::MsgIcon::Exclamation);
}

/// A form that could not be filled because of a lock has nothing to show.
void TrappedForm::formLoad() {
    loadFailed_ = true;
    enter(Lock::Told, "Form_Load", [this] {
        Form_Load();
        loadFailed_ = false;
    });
    if (loadFailed_ && afterError_ == AfterError::ProgramEnds) {
        unload();
    }
}

void TrappedForm::formActivate() {
    enter(Lock::Told, "Form_Activate", &TrappedForm::Form_Activate);
}

bool TrappedForm::formQueryUnload() {
    return enter(Lock::Told, "Form_QueryUnload", &TrappedForm::Form_QueryUnload);
}

void TrappedForm::formUnload() { enter(Lock::Told, "Form_Unload", &TrappedForm::Form_Unload); }

void TrappedForm::failed(Lock lock, const char* procedure) {
    if (lockedElsewhere()) {
        if (lock == Lock::Passes) {
            throw;
        }
        tell(lockedMessage());
        return;
    }
    report(procedure, name());
    if (afterError_ == AfterError::ProgramEnds) {
        ShutDown(1);
    }
}

}  // namespace startup
