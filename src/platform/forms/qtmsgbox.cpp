#include "platform/forms/qtmsgbox.h"

#include <QScopeGuard>

#include "platform/forms/form.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/messagebox.h"

namespace forms {

namespace {

QWidget* ownerOfBoxes() {
    QWidget* active = QApplication::activeWindow();
    return active != nullptr ? active : FormRegistry::instance().lastActive();
}

}  // namespace

base::MsgAnswer QtMsgBox::show(const base::MsgRequest& request) {
    const bool isBusy = QApplication::overrideCursor() != nullptr;
    if (isBusy) {
        QApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    const auto former = qScopeGuard([isBusy] {
        if (isBusy) {
            QApplication::restoreOverrideCursor();
        }
    });
    MessageBox box(request, ownerOfBoxes());
    box.exec();
    Application::instance().throwIfEnding();
    return box.answer();
}

}  // namespace forms
