#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/base/date.h"
#include "platform/base/notcopied.h"

namespace base {

enum class MsgIcon { None, Critical, Question, Exclamation, Information };
enum class MsgButtons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel };
enum class MsgAnswer { Ok, Cancel, Yes, No, Retry };

/// One message box: plain texts, icon, buttons. Only the text, the title and, mostly, the icon are
/// needed.
struct MsgRequest {
    std::string text = {};
    std::string title = {};
    MsgIcon icon = MsgIcon::None;
    MsgButtons buttons = MsgButtons::Ok;
    /// What the box concerns, shown apart below the text: its name, and on lines of their own what
    /// is to be known of it.
    std::string concerns = {};
    /// What helps those who look after the program: procedure, number, statement. Folded away.
    std::string details = {};
    /// What a planner reads in place of the text, which is folded away with the details then.
    std::string plainWords = {};
    /// The default button, where it is not the first one.
    std::optional<MsgAnswer> preferred = {};

    /// The text, and a blank line below it what it concerns.
    [[nodiscard]] std::string plainText() const;
};

/// Where message boxes go: the desktop, a script, a test.
class MsgBoxPort {
public:
    virtual ~MsgBoxPort() = default;
    /// Shows the box and waits for its answer.
    virtual MsgAnswer show(const MsgRequest& request) = 0;
};

/// The time of day, replaceable in tests and scripts.
class ClockPort {
public:
    virtual ~ClockPort() = default;
    /// The present date and time, local.
    [[nodiscard]] virtual Date now() const = 0;
};

/// What a long operation reports to: percent done, a status text, and a chance to repaint.
class ProgressPort {
public:
    virtual ~ProgressPort() = default;
    /// `percent` is 0 to 100.
    virtual void progress(double percent) = 0;
    virtual void status(const std::string& text) = 0;
    /// Lets the form repaint; true when the user asked to stop.
    virtual bool yield() = 0;
};

/// Tells the user what the program waits for; gone when the wait is over. See Wait.
class WaitBox : private base::NotCopied {
public:
    virtual ~WaitBox() = default;
    /// Handles what the user did; false once they have given up.
    virtual bool goesOn() = 0;
};

/// The loaded forms, as far as those below the forms need them.
class FormRegistryPort {
public:
    virtual ~FormRegistryPort() = default;
    /// Hides every loaded form and releases it once nothing of it is running any more.
    virtual void unloadAll() = 0;
};

/// The ports in force. Each starts with one that works without a display: boxes are written to
/// standard error and answered with their default button, the clock is the system's.
struct Ports {
    MsgBoxPort* msgBox;
    ClockPort* clock;
    FormRegistryPort* forms;
    /// Sounds the bell; does nothing until a desktop sets it.
    std::function<void()> beep;
    /// Lets the forms repaint under a procedure that waits for another program; no key or click is
    /// handled. Does nothing until a desktop sets it.
    std::function<void()> repaint;
    /// Null until a desktop sets it, and where nobody could give up.
    std::function<std::unique_ptr<WaitBox>(const std::string& text)> waitBox;
};

Ports& ports();

/// Shows a message box through the port in force.
MsgAnswer MsgBox(const std::string& text, const std::string& title, MsgIcon icon = MsgIcon::None,
                 MsgButtons buttons = MsgButtons::Ok);

MsgAnswer MsgBox(const MsgRequest& request);

/// Asks, Yes or No, before something is taken away, and names what: the name first, then lines of
/// what is to be known of it. No is the default. True where the answer is Yes.
[[nodiscard]] bool confirmLoss(const std::string& question, const std::string& title,
                               const std::string& concerns);

/// The present date and time through the port in force.
Date Now();

/// The default answer of a set of buttons: its first button.
MsgAnswer defaultAnswer(MsgButtons buttons);
/// The default answer of a box.
MsgAnswer defaultAnswer(const MsgRequest& request);

}  // namespace base
