#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QString>
#include <vector>

#include "platform/base/notcopied.h"
#include "platform/base/ports.h"
#include "platform/forms/form.h"

class QAbstractButton;
class QLabel;
class QProgressBar;

namespace forms {

class Timer;

/// How long a piece of work goes on before the event loop gets its turn. It starts with its making.
class WorkSlice {
public:
    explicit WorkSlice(int milliseconds) : milliseconds_(milliseconds) { clock_.start(); }
    [[nodiscard]] bool isOver() const;
    void restart() { clock_.start(); }

    /// Every slice is over at once, so that a test meets each turn however fast the machine is.
    static void endAllAtOnce(bool atOnce);

private:
    int milliseconds_;
    QElapsedTimer clock_;
};

/// Shows the busy cursor while it lives.
class BusyCursor : private base::NotCopied {
public:
    BusyCursor();
    ~BusyCursor();
};

/// The part of a form that shows a long operation and stops it; a form may lack any of it.
struct OperationPanel {
    std::vector<QProgressBar*> bars = {};  ///< the first one shows the percentage done
    QLabel* status = nullptr;
    QAbstractButton* stop = nullptr;  ///< Escape presses it; idle, it is hidden or disabled
    Timer* timer = nullptr;           ///< clear() is its tick's
    int clearAfterMs = 0;             ///< how long the last status is to be read
    QString idleText = {};            ///< of the status

    /// Hides bars and status and stops the timer.
    void clear() const;
};

/// A long operation of a form, shown on its panel from 0 on. Its controls are disabled but for the
/// one that stops it, and so are the forms that could be used beside it: those it owns, and its
/// owners unless it is modal to them. At its end everything is as before, the last status stands
/// until the panel's timer clears it. See Form::isBusy().
class Form::Operation : public base::ProgressPort, private base::NotCopied {
public:
    explicit Operation(Form& form, OperationPanel panel = {});
    ~Operation() override;

    void progress(double percent) override;
    void status(const std::string& text) override;
    /// Cheap to call often: the event loop gets its turn some 30 times a second.
    bool yield() override;

private:
    void show();
    void disable(QWidget* control);
    void disableAround();
    void showIdle();

    QPointer<Form> form_;
    OperationPanel panel_;
    bool hidesStop_ = false;
    QAbstractButton* cancel_ = nullptr;
    bool stopped_ = false;
    WorkSlice untilYield_;
    std::vector<QPointer<QWidget>> focused_;
    std::vector<QPointer<QWidget>> disabled_;
    BusyCursor cursor_;
    QObject context_;
};

/// Hides a control whose place in the layout stays empty, so that nothing jumps when it is shown.
void hideInPlace(QWidget& control);

}  // namespace forms
