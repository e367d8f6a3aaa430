#include "platform/forms/application.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QTimer>

#include <fmt/format.h>

#include "platform/forms/formregistry.h"
#include "platform/forms/helpport.h"
#include "platform/forms/qtmsgbox.h"
#include "platform/forms/waitbox.h"

namespace forms {

namespace {

QtMsgBox& desktopBoxes() {
    static QtMsgBox boxes;
    return boxes;
}

std::string untrappedText(const std::exception& error) {
    const auto* numbered = dynamic_cast<const base::RunTimeError*>(&error);
    return numbered != nullptr
               ? fmt::format("Run-time error {}:\n\n{}", numbered->number(), numbered->what())
               : fmt::format("Run-time error:\n\n{}", error.what());
}

/// F1 and Shift+F1 mean the same in every form, box and dialog, whatever has the focus.
bool isHelpKey(QObject& receiver, const QEvent& event) {
    if (event.type() != QEvent::KeyPress || !receiver.isWidgetType()) {
        return false;
    }
    const auto& key = static_cast<const QKeyEvent&>(event);
    auto& control = static_cast<QWidget&>(receiver);
    if (key.key() == Qt::Key_F1 && key.modifiers() == Qt::ShiftModifier) {
        askWhatThisIs(control);
        return true;
    }
    return key.key() == Qt::Key_F1 && key.modifiers() == Qt::NoModifier && askForHelp(control);
}

/// Shift+F10 opens the menu of what has the focus on every desktop; the toolkit knows it on some,
/// and the menu key on all.
bool isMenuKey(QObject& receiver, const QEvent& event) {
    if (event.type() != QEvent::KeyPress || !receiver.isWidgetType()) {
        return false;
    }
    const auto& key = static_cast<const QKeyEvent&>(event);
    if (key.key() != Qt::Key_F10 || key.modifiers() != Qt::ShiftModifier) {
        return false;
    }
    auto& control = static_cast<QWidget&>(receiver);
    const QPoint at = control.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, at, control.mapToGlobal(at));
    return QApplication::sendEvent(&control, &menu);
}

}  // namespace

Application::Application(int& argc, char** argv)
    : QApplication(argc, argv), formerPorts_(base::ports()) {
    setQuitOnLastWindowClosed(false);
    base::ports().msgBox = &desktopBoxes();
    base::ports().forms = &FormRegistry::instance();
    base::ports().beep = [] { QApplication::beep(); };
    base::ports().repaint = [this] {
        processEvents(QEventLoop::ExcludeUserInputEvents);
        throwIfEnding();
    };
    base::ports().waitBox = [](const std::string& text) { return std::make_unique<WaitBox>(text); };
}

Application::~Application() {
    FormRegistry::instance().destroyAll();
    base::ports() = formerPorts_;
}

Application& Application::instance() {
    return *static_cast<Application*>(QCoreApplication::instance());
}

int Application::run() {
    if (!ending()) {
        looping_ = true;
        exec();
        looping_ = false;
    }
    FormRegistry::instance().destroyAll();
    return exitCode();
}

void Application::yield() {
    processEvents();
    throwIfEnding();
}

void Application::throwIfEnding() const {
    if (ending()) {
        throw base::EndProgram{exitCode()};
    }
}

void Application::endProgram(int exitCode) {
    if (!ending()) {
        exitCode_ = exitCode;
    }
    exitLoop();
}

void Application::exitLoop() {
    // Outside the loop an exit would stay pending and end every later message box at once.
    if (looping_) {
        exit(exitCode());
    }
}

void Application::startAfresh() {
    FormRegistry::instance().destroyAll();
    exitCode_.reset();
}

void Application::whenIdle(std::function<void()> task) {
    whenIdle_.push_back(std::move(task));
    QTimer::singleShot(0, this, [this] { runIdleTasks(); });
}

void Application::runIdleTasks() {
    if (inProcedure()) {
        return;
    }
    for (const auto& task : std::exchange(whenIdle_, {})) {
        task();
    }
}

void Application::leave() noexcept {
    if (--depth_ == 0 && !whenIdle_.empty()) {
        QTimer::singleShot(0, this, [this] { runIdleTasks(); });
    }
}

void Application::endByError(const std::exception& error) noexcept {
    if (ending()) {
        return;
    }
    exitCode_ = 1;
    try {
        base::MsgBox(
            {.text = untrappedText(error),
             .title = applicationName().toStdString(),
             .icon = base::MsgIcon::Critical,
             .plainWords = std::string("Oops, the program cannot go on and will now end.") +
                           "\n\n" + error.what()});
    } catch (const base::EndProgram&) {
        // Thrown by the box because the program is ending already.
    }
    FormRegistry::instance().unloadAll();
    exitLoop();
}

bool Application::notify(QObject* receiver, QEvent* event) {
    bool handled = true;
    try {
        if (isHelpKey(*receiver, *event) || isMenuKey(*receiver, *event)) {
            return true;
        }
        handled = QApplication::notify(receiver, event);
    } catch (const base::EndProgram& end) {
        endProgram(end.exitCode);
    } catch (const std::exception& error) {
        endByError(error);
    }
    return handled;
}

}  // namespace forms
