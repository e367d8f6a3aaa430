#include "help/viewer/guidedesk.h"

#include <QLabel>
#include <algorithm>

#include "help/guide/fieldtexts.h"
#include "help/guide/formplaces.h"
#include "help/viewer/GuideWindow.h"
#include "platform/controls/qtext.h"
#include "platform/files/installation.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/helpport.h"

namespace help {

namespace {

using controls::toQt;

/// The form itself, or a part of it that several forms have.
QWidget* partOf(QWidget& form, std::string_view name) {
    const QString wanted = toQt(name);
    if (form.objectName() == wanted) {
        return &form;
    }
    const auto parts = form.findChildren<QWidget*>();
    const auto found = std::ranges::find_if(parts, [&](const QWidget* part) {
        return QString(part->metaObject()->className()).section("::", -1) == wanted;
    });
    return found == parts.end() ? nullptr : *found;
}

/// What a field's tool tip says comes first.
void describeField(QWidget& field, std::string_view text) {
    const QString more = toQt(text);
    const QString tip = field.toolTip();
    field.setWhatsThis(tip.isEmpty() || more.isEmpty() ? tip + more : tip + "\n\n" + more);
}

void describeFields(forms::Form& form) {
    for (QWidget* control : form.findChildren<QWidget*>()) {
        if (control->whatsThis().isEmpty()) {
            describeField(*control, {});
        }
    }
    for (const FieldText& text : fieldTexts()) {
        QWidget* part = partOf(form, text.form);
        QWidget* field = part == nullptr ? nullptr : part->findChild<QWidget*>(toQt(text.field));
        if (field != nullptr) {
            describeField(*field, text.text);
        }
    }
    for (QLabel* label : form.findChildren<QLabel*>()) {
        if (label->buddy() != nullptr && label->toolTip().isEmpty()) {
            label->setWhatsThis(label->buddy()->whatsThis());
        }
    }
}

}  // namespace

const Guide& theGuide() {
    static const Guide guide(toQt(files::installation().guide));
    return guide;
}

void showGuide(const Place& place) {
    auto& window = forms::FormRegistry::instance().make<GuideWindow>();
    window.showBeside();
    window.goTo(place);
}

void offerGuide() {
    forms::helpPort().show = [](const std::string& form, const std::vector<std::string>& parts) {
        showGuide(placeOf(form, parts));
    };
    forms::helpPort().describe = describeFields;
}

}  // namespace help
