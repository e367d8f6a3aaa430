#include "platform/forms/qtmsgbox.h"

#include "platform/forms/form.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/messagebox.h"

namespace forms {

namespace {

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

base::MsgAnswer QtMsgBox::show(const base::MsgRequest& request) {
    const ArrowCursor arrow;
    MessageBox box(request, ownerOfBoxes());
    box.exec();
    Application::instance().throwIfEnding();
    return box.answer();
}

}  // namespace forms
