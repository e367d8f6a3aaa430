#pragma once

#include <QDialog>
#include <string>
#include <vector>

#include "platform/forms/application.h"

class QAbstractButton;
class QKeySequence;
class QTabWidget;

namespace forms {

/// A top-level form. It is made and loaded once, shown and hidden at will, and unloaded when it is
/// closed; its object lives on until nothing of it is running any more.
///
/// It is always on its screen, title bar and buttons included: what does not fit scrolls. It and
/// its headings grow with the font, and no limit of its .ui file cuts what a control needs.
///
/// A form class has Q_OBJECT and passes the name that the program knows it by. Events are wired in
/// its constructor with on(), never by name.
class Form : public QDialog {
    Q_OBJECT

public:
    explicit Form(const char* name, Form* owner = nullptr);
    ~Form() override;

    [[nodiscard]] std::string name() const { return objectName().toStdString(); }

    /// Runs formLoad() unless the form is loaded already. An error there gives the form up; a form
    /// that unloads itself there is not shown.
    void load();
    /// Loads, shows and activates the form, in the place and size it had last as far as they are on
    /// the screen.
    void showForm();
    /// Hides and unloads the form, and those it owns, without asking; the form that owns it becomes
    /// active again.
    void unload();
    [[nodiscard]] bool isLoaded() const { return state_ == State::Loaded; }
    /// Unloaded by the user's closing, unless a long operation runs or formQueryUnload() refuses.
    /// True when the form is gone.
    bool closeForm();

    class Operation;
    /// Whether an Operation of this form, of one that it owns or of one that owns it is running,
    /// however far up or down. A busy form is not closed, and another Operation of it throws
    /// std::logic_error.
    [[nodiscard]] bool isBusy() const;

protected:
    /// Gives the form what it draws in the colours and the font of the moment: before it is filled,
    /// and again whenever they change.
    virtual void formDress() {}
    /// Fills the form, before it is first shown.
    virtual void formLoad() {}
    /// The form has become the active one after another form was (or first of all); the closing of
    /// a message box does not count, and a busy form is not told.
    virtual void formActivate() {}
    /// Whether the user may close the form now.
    virtual bool formQueryUnload() { return true; }
    virtual void formUnload() {}

    /// Connects a control's signal with a procedure of this form: guarded, and silent once the form
    /// is unloaded.
    template <class Sender, class Signal, class Procedure>
    void on(Sender* sender, Signal signal, Procedure procedure) {
        QObject::connect(sender, signal, this, [this, procedure](auto&&... arguments) mutable {
            if (state_ == State::Unloaded) {
                return;
            }
            Application::instance().guarded([&] { callWith(procedure, arguments...); });
        });
    }

    /// Keys that press a button: they do nothing where it is disabled. They work in the whole form,
    /// or while the focus is in a part of it.
    void key(const QKeySequence& keys, QAbstractButton* button);
    void key(const QKeySequence& keys, QAbstractButton* button, QWidget* part);

    /// Scrolls, once the form has settled, to a part of it that may lie below what is in sight.
    static void bringIntoSight(QWidget& part);

    /// Alt and a digit lead to a page of the tabs and into its first control.
    void pageKeys(QTabWidget& tabs);

    bool event(QEvent* event) override;
    /// Enter presses the button that has the focus, otherwise the default one.
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    /// Escape presses the button made for it with setCancelButton(); without one it does nothing.
    void reject() override;
    void setCancelButton(QAbstractButton* button) { cancel_ = button; }

private:
    friend class FormRegistry;
    enum class State { Made, Loading, Loaded, Unloaded };

    [[nodiscard]] QList<Form*> ownedForms() const;
    [[nodiscard]] Form* owner() const;
    /// The forms that a user could go to while this one is busy: those it owns, and its owners up
    /// to the first one that is modal to its own.
    [[nodiscard]] std::vector<Form*> usableBeside() const;
    void place();
    [[nodiscard]] bool restorePlace();
    void rememberPlace() const;
    void nameControls();
    /// Has each list written to a file and printed on request, where somebody does that.
    void offerExports();
    /// Leaves the look of a default button to the one that the .ui file says it of.
    void keepDefaultButton();
    /// Gives the headings and the limits of the .ui file the measure of the font in use.
    void growWithFont();
    void resizeForFont();
    void lookChanged(QEvent::Type what);
    /// Lets everything scroll where it needs more than `room`: the columns of the form each by
    /// itself, so that the buttons at the side stay.
    void scrollBeyond(const QSize& room);
    [[nodiscard]] bool needsMoreThan(const QSize& room) const;
    void fitAgain();

    State state_ = State::Made;
    bool busy_ = false;
    bool placed_ = false;
    QAbstractButton* cancel_ = nullptr;
};

}  // namespace forms
