#pragma once

#include <exception>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>

#include "platform/forms/form.h"
#include "startup/base/trap.h"

namespace startup {

/// A form whose procedures run under the error trap, each under its name, in the form's module,
/// which is called like the form:
///
///     on(ui_->CloseIt, &QPushButton::clicked, "CloseIt_Click", &MergeRun::CloseIt_Click);
///
/// With gErrorHandling on, an error is reported by gErrHandler as "CloseIt_Click of Module:
/// MergeRun." and the program shut down, unless the form stays. With gErrorHandling off, errors
/// pass to the caller. A database that another program keeps locked, a full disk, a file that may
/// only be read are no errors, whatever the switch says: the planner is told in plain words,
/// nothing typed is lost, and the same button works again.
class TrappedForm : public forms::Form {
    Q_OBJECT

protected:
    explicit TrappedForm(const char* name, forms::Form* owner = nullptr,
                         AfterError afterError = AfterError::ProgramEnds);

    virtual void Form_Load() {}
    virtual void Form_Activate() {}
    virtual bool Form_QueryUnload() { return true; }
    virtual void Form_Unload() {}

    using Message = PlainWords;
    /// What the planner reads where another program holds the database.
    [[nodiscard]] virtual Message lockedMessage() const;

    /// Connects a control's signal with a procedure of this form: a member function or a callable,
    /// which takes the signal's arguments or none.
    template <class Sender, class Signal, class Handler>
    void on(Sender* sender, Signal signal, const char* procedure, Handler handler) {
        Form::on(sender, signal, [this, procedure, handler](auto&&... arguments) mutable {
            this->enter(Refusal::Told, procedure, handler, arguments...);
        });
    }

    /// Runs a procedure of this form that another one calls, under its own name. Where it fails and
    /// the program goes on, it answers with its type's default; a refusal of the store ends the
    /// other one, too.
    template <class Handler, class... Arguments>
    auto trap(const char* procedure, Handler&& handler, Arguments&&... arguments) {
        return enter(DoorOfForm::isOpen() ? Refusal::Passes : Refusal::Told, procedure,
                     std::forward<Handler>(handler), std::forward<Arguments>(arguments)...);
    }

    /// Runs a part of a procedure that has words of its own for a lock, and their title for any
    /// other refusal of the store; false where they were told.
    [[nodiscard]] bool unlessLocked(const Message& message, const std::function<void()>& part);

private:
    enum class Refusal { Told, Passes };

    template <class Handler, class... Arguments>
    auto enter(Refusal refusal, const char* procedure, Handler&& handler,
               Arguments&&... arguments) {
        auto bound = bind(std::forward<Handler>(handler));
        using Result = decltype(forms::callWith(bound, arguments...));
        const DoorOfForm door;
        try {
            return forms::callWith(bound, arguments...);
        } catch (const std::exception&) {
            failed(refusal, procedure);
        }
        if constexpr (!std::is_void_v<Result>) {
            return Result{};
        }
    }

    void formLoad() final;
    void formActivate() final;
    bool formQueryUnload() final;
    void formUnload() final;

    /// Tells of the refusal that is being handled, and in the details where it was met.
    static void tell(const Message& words, const std::string& where);
    /// Deals with the error that is being handled.
    void failed(Refusal refusal, const char* procedure);

    template <class Handler>
    auto bind(Handler handler) {
        return handler;
    }
    template <class Owner, class Result, class... Parameters>
    auto bind(Result (Owner::*handler)(Parameters...)) {
        return [form = static_cast<Owner*>(this), handler](Parameters... parameters) {
            return (form->*handler)(std::forward<Parameters>(parameters)...);
        };
    }

    AfterError afterError_;
    bool loadFailed_ = false;
};

}  // namespace startup
