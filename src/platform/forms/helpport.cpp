#include "platform/forms/helpport.h"

#include <QTabWidget>
#include <QWhatsThis>

#include "platform/forms/formregistry.h"

namespace forms {

namespace {

const Form* formOf(const QWidget& control) {
    for (const QWidget* part = &control; part != nullptr; part = part->parentWidget()) {
        if (const auto* form = qobject_cast<const Form*>(part)) {
            return form;
        }
    }
    return FormRegistry::instance().lastActive();
}

/// The focus on the tabs of a form is as good as the focus on the page.
std::vector<std::string> partsAround(const QWidget& control, const Form& form) {
    std::vector<std::string> parts;
    for (const QWidget* part = &control; part != nullptr && part != &form;
         part = part->parentWidget()) {
        if (const auto* tabs = qobject_cast<const QTabWidget*>(part);
            tabs != nullptr && tabs->currentWidget() != nullptr) {
            parts.push_back(tabs->currentWidget()->objectName().toStdString());
        }
        parts.push_back(part->objectName().toStdString());
    }
    return parts;
}

}  // namespace

HelpPort& helpPort() {
    static HelpPort port;
    return port;
}

bool askForHelp(const QWidget& control) {
    const Form* form = formOf(control);
    if (!helpPort().show || form == nullptr) {
        return false;
    }
    Application::instance().guarded(
        [&] { helpPort().show(form->name(), partsAround(control, *form)); });
    return true;
}

void askWhatThisIs(QWidget& control) {
    for (QWidget* part = &control; part != nullptr && !part->isWindow();
         part = part->parentWidget()) {
        if (!part->whatsThis().isEmpty()) {
            QWhatsThis::showText(part->mapToGlobal(part->rect().bottomLeft()), part->whatsThis(),
                                 part);
            return;
        }
    }
    QWhatsThis::enterWhatsThisMode();
}

}  // namespace forms
