#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <vector>

#include "platform/base/ports.h"
#include "platform/forms/form.h"

class QAbstractButton;
class QLabel;
class QProgressBar;

namespace forms {

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
class BusyCursor {
public:
    BusyCursor();
    ~BusyCursor();
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

/// A long operation of a form (see Form): its controls are disabled but for the one that stops it.
class Form::Operation {
public:
    explicit Operation(Form& form, QWidget* stop = nullptr);
    ~Operation();
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

private:
    void disable(QWidget* control, const QWidget* stop);

    QPointer<Form> form_;
    QPointer<QWidget> focus_;
    std::vector<QPointer<QWidget>> disabled_;
    BusyCursor cursor_;
};

/// Hides a control whose place in the layout stays empty, so that nothing jumps when it is shown.
void hideInPlace(QWidget& control);

/// Progress of a long operation on a form's own controls; each of them may be null.
class Progress : public base::ProgressPort {
public:
    Progress(QProgressBar* bar, QLabel* status, QAbstractButton* stop = nullptr);

    void progress(double percent) override;
    void status(const std::string& text) override;
    /// Cheap to call often: the event loop gets its turn some 30 times a second.
    bool yield() override;

private:
    QProgressBar* bar_;
    QLabel* status_;
    WorkSlice untilYield_;
    bool stopped_ = false;
    QObject context_;
};

}  // namespace forms
