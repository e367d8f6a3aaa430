#include "platform/forms/qtmsgbox.h"

#include <QMessageBox>
#include <QPushButton>
#include <algorithm>
#include <array>

#include "platform/controls/qtext.h"
#include "platform/forms/form.h"
#include "platform/forms/formregistry.h"

namespace forms {

using base::MsgAnswer;
using base::MsgButtons;
using base::MsgIcon;
using base::MsgRequest;

namespace {

constexpr std::array Answers{
    std::pair{MsgAnswer::Ok, QMessageBox::Ok}, std::pair{MsgAnswer::Cancel, QMessageBox::Cancel},
    std::pair{MsgAnswer::Yes, QMessageBox::Yes}, std::pair{MsgAnswer::No, QMessageBox::No},
    std::pair{MsgAnswer::Retry, QMessageBox::Retry}};

QMessageBox::StandardButton button(MsgAnswer answer) {
    return std::ranges::find(Answers, answer, [](auto pair) { return pair.first; })->second;
}

MsgAnswer answer(int button) {
    const auto found = std::ranges::find(Answers, button, [](auto pair) { return +pair.second; });
    return found == Answers.end() ? MsgAnswer::Ok : found->first;
}

QMessageBox::StandardButtons shownButtons(MsgButtons buttons) {
    switch (buttons) {
        case MsgButtons::OkCancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case MsgButtons::YesNo:
            return QMessageBox::Yes | QMessageBox::No;
        case MsgButtons::YesNoCancel:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        case MsgButtons::RetryCancel:
            return QMessageBox::Retry | QMessageBox::Cancel;
        case MsgButtons::Ok:
            break;
    }
    return QMessageBox::Ok;
}

QMessageBox::StandardButton escapeButton(QMessageBox::StandardButtons buttons) {
    if (buttons.testFlag(QMessageBox::Cancel)) {
        return QMessageBox::Cancel;
    }
    return buttons.testFlag(QMessageBox::No) ? QMessageBox::No : QMessageBox::Ok;
}

QMessageBox::Icon shownIcon(MsgIcon icon) {
    switch (icon) {
        case MsgIcon::Critical:
            return QMessageBox::Critical;
        case MsgIcon::Question:
            return QMessageBox::Question;
        case MsgIcon::Exclamation:
            return QMessageBox::Warning;
        case MsgIcon::Information:
            return QMessageBox::Information;
        case MsgIcon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

/// Shows the arrow while a box is open under a busy cursor.
class ArrowCursor {
public:
    ArrowCursor() : busy_(QApplication::overrideCursor() != nullptr) {
        if (busy_) {
            QApplication::setOverrideCursor(Qt::ArrowCursor);
        }
    }
    ~ArrowCursor() {
        if (busy_) {
            QApplication::restoreOverrideCursor();
        }
    }
    ArrowCursor(const ArrowCursor&) = delete;
    ArrowCursor& operator=(const ArrowCursor&) = delete;

private:
    bool busy_;
};

QWidget* ownerOfBoxes() {
    QWidget* active = QApplication::activeWindow();
    return active != nullptr ? active : FormRegistry::instance().lastActive();
}

}  // namespace

MsgAnswer QtMsgBox::show(const MsgRequest& request) {
    const ArrowCursor arrow;
    QMessageBox box(ownerOfBoxes());
    box.setWindowTitle(controls::toQt(request.title));
    box.setTextFormat(Qt::PlainText);
    box.setText(controls::toQt(request.text));
    box.setIcon(shownIcon(request.icon));
    box.setStandardButtons(shownButtons(request.buttons));
    box.setDefaultButton(button(base::defaultAnswer(request.buttons)));
    box.setEscapeButton(escapeButton(box.standardButtons()));
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    const MsgAnswer answered = answer(box.exec());
    Application::instance().throwIfEnding();
    return answered;
}

}  // namespace forms
