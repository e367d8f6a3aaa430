#include "help/about/AboutBox.h"

#include <QClipboard>
#include <QGuiApplication>

#include "help/about/programfacts.h"
#include "platform/controls/qtext.h"
#include "platform/forms/formregistry.h"
#include "startup/base/applicationinfo.h"

#include "ui_AboutBox.h"

namespace help {

AboutBox::AboutBox(forms::Form* owner)
    : TrappedForm("AboutBox", owner, startup::AfterError::FormStays),
      ui_(std::make_unique<Ui::AboutBox>()) {
    ui_->setupUi(this);
    setWindowModality(Qt::WindowModal);
    setCancelButton(ui_->CloseIt);
    on(ui_->CopyForSupport, &QPushButton::clicked, "CopyForSupport_Click",
       &AboutBox::CopyForSupport_Click);
    on(ui_->CloseIt, &QPushButton::clicked, "CloseIt_Click", [this] { closeForm(); });
}

AboutBox::~AboutBox() = default;

void AboutBox::Form_Load() {
    constexpr int Lines = 3;  // high as so many
    ui_->Sign->setPixmap(windowIcon().pixmap(fontMetrics().height() * Lines));
    ui_->Product->setText(controls::toQt(startup::applicationInfo().productName));
    for (const Fact& fact : programFacts()) {
        auto* value = new QLabel(fact.value);
        value->setTextFormat(Qt::PlainText);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        value->setWordWrap(true);
        value->setAccessibleName(fact.name);
        ui_->factRows->addRow(new QLabel(fact.name + ':'), value);
    }
    ui_->CloseIt->setFocus();
}

void AboutBox::CopyForSupport_Click() {
    QGuiApplication::clipboard()->setText(supportText());
    ui_->Status->setText(tr("Copied. Paste it into your mail."));
}

void showAbout(forms::Form& over) {
    forms::FormRegistry::instance().make<AboutBox>(&over).showForm();
}

}  // namespace help
