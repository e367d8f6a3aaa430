#include "help/viewer/guidedesk.h"

#include <QLabel>
#include <string>
#include <string_view>
#include <unordered_map>

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

using Parts = std::unordered_map<std::string_view, QWidget*>;

std::string_view classOf(const QWidget& widget) {
    const std::string_view name = widget.metaObject()->className();
    return name.substr(name.rfind(':') + 1);  // all of it where it has no namespace
}

/// The parts of a form by their classes: several forms have some of them.
Parts partsOf(const QWidget& form) {
    Parts parts;
    for (QWidget* part : form.findChildren<QWidget*>()) {
        parts.emplace(classOf(*part), part);
    }
    return parts;
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
    Parts parts = partsOf(form);
    const std::string name = form.objectName().toStdString();
    parts[name] = &form;
    for (const FieldText& text : fieldTexts()) {
        const auto part = parts.find(text.form);
        QWidget* field =
            part == parts.end() ? nullptr : part->second->findChild<QWidget*>(toQt(text.field));
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
