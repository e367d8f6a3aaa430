#pragma once

#include <QApplication>
#include <exception>
#include <functional>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/base/error.h"
#include "platform/base/notcopied.h"
#include "platform/base/ports.h"

namespace forms {

/// The toolkit's application with the ways in and out that the program needs: everything that the
/// toolkit calls runs through guarded(), which no exception leaves, and base::EndProgram ends the
/// loop instead of unwinding through it.
///
/// While it lives, message boxes, the bell and the form registry are the desktop's.
class Application : public QApplication {
    Q_OBJECT

public:
    Application(int& argc, char** argv);
    ~Application() override;
    static Application& instance();

    /// Runs the event loop until the program ends, then destroys the forms; returns the exit code.
    /// An end that was asked for earlier is not lost.
    int run();

    /// Runs a piece of the program for the toolkit. EndProgram ends the program; an error that
    /// nobody trapped is shown and ends it too. Does nothing once the program is ending.
    template <class Procedure>
    void guarded(Procedure&& procedure) noexcept {
        if (ending()) {
            return;
        }
        const Entry entry(*this);
        try {
            std::forward<Procedure>(procedure)();
        } catch (const base::EndProgram& end) {
            endProgram(end.exitCode);
        } catch (const std::exception& error) {
            endByError(error);
        }
    }

    /// Lets the toolkit handle what waits, then throws EndProgram if that ended the program. The
    /// only way for a running procedure to keep the forms alive.
    void yield();
    /// Throws EndProgram if the program has ended meanwhile; call it after any nested loop.
    void throwIfEnding() const;

    /// Asks the loop to exit, at once or as soon as it starts.
    void endProgram(int exitCode);
    [[nodiscard]] bool ending() const { return exitCode_.has_value(); }
    [[nodiscard]] int exitCode() const { return exitCode_.value_or(0); }
    /// Takes an end back, to run the program's start again in the same process.
    void startAfresh();

    /// Whether any procedure of the program is running, yielding ones included.
    [[nodiscard]] bool inProcedure() const { return depth_ > 0; }
    /// Runs something from the event loop once no procedure is running any more.
    void whenIdle(std::function<void()> task);

    bool notify(QObject* receiver, QEvent* event) override;

private:
    class Entry : private base::NotCopied {
    public:
        explicit Entry(Application& application) : application_(application) {
            ++application_.depth_;
        }
        ~Entry() { application_.leave(); }

    private:
        Application& application_;
    };

    void leave() noexcept;
    void runIdleTasks();
    void exitLoop();
    void endByError(const std::exception& error) noexcept;

    base::Ports formerPorts_;
    std::optional<int> exitCode_;
    bool looping_ = false;
    int depth_ = 0;
    std::vector<std::function<void()>> whenIdle_;
};

/// Calls a procedure with a signal's arguments, or without any where it takes none.
template <class Procedure, class... Arguments>
auto callWith(Procedure& procedure, Arguments&&... arguments) {
    if constexpr (std::is_invocable_v<Procedure&, Arguments...>) {
        return procedure(std::forward<Arguments>(arguments)...);
    } else {
        return procedure();
    }
}

/// Connects a signal with a piece of the program, guarded, for as long as `context` lives.
template <class Sender, class Signal, class Procedure>
QMetaObject::Connection on(Sender* sender, Signal signal, QObject* context, Procedure procedure) {
    return QObject::connect(sender, signal, context, [procedure](auto&&... arguments) mutable {
        Application::instance().guarded([&] { callWith(procedure, arguments...); });
    });
}

}  // namespace forms
