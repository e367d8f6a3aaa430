#include "tools/launcher/newdistrictform.h"

#include "platform/controls/qtext.h"
#include "platform/controls/refused.h"
#include "platform/files/files.h"
#include "platform/forms/filedialog.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/operation.h"
#include "startup/districts/knowndistricts.h"
#include "tools/launcher/districtchooser.h"
#include "tools/launcher/districtcommand.h"
#include "tools/launcher/districtlook.h"

#include "ui_newdistrictform.h"

namespace tools::launcher {

using controls::fromQt;
using controls::toQt;
using Part = Objection::Part;

constexpr auto SampleName = "Sample District";

NewDistrictForm::NewDistrictForm(forms::Form* owner)
    : TrappedForm("NewDistrict", owner), ui_(std::make_unique<Ui::NewDistrict>()) {
    ui_->setupUi(this);
    setCancelButton(ui_->Cancel);
    ui_->Stop->hide();
    if (owner != nullptr) {
        setWindowTitle(tr("Vireo Routing - New District"));
        setWindowModality(Qt::WindowModal);
    }
    for (auto* kind : {ui_->Sample, ui_->Empty, ui_->Existing}) {
        on(kind, &QRadioButton::toggled, "showKind", &NewDistrictForm::showKind);
    }
    for (auto* box : findChildren<QLineEdit*>()) {
        on(box, &QLineEdit::textEdited, "takeRefusalBack", &NewDistrictForm::takeRefusalBack);
    }
    on(ui_->DistrictName, &QLineEdit::textEdited, "suggestFolder", &NewDistrictForm::suggestFolder);
    on(ui_->Browse, &QPushButton::clicked, "Browse_Click", &NewDistrictForm::Browse_Click);
    on(ui_->Start, &QPushButton::clicked, "Start_Click", &NewDistrictForm::Start_Click);
    on(ui_->Cancel, &QPushButton::clicked, "closeForm", &NewDistrictForm::closeForm);
    showKind();
}

NewDistrictForm::~NewDistrictForm() = default;

void NewDistrictForm::showKind() {
    for (QWidget* part : std::initializer_list<QWidget*>{
             ui_->DistrictName, ui_->DistrictNameLabel, ui_->Administrator, ui_->AdministratorLabel,
             ui_->Password, ui_->PasswordLabel, ui_->PasswordAgain, ui_->PasswordAgainLabel}) {
        part->setEnabled(ui_->Empty->isChecked());
    }
    ui_->Start->setText(ui_->Existing->isChecked() ? tr("&Open and Log On")
                                                   : tr("&Make and Log On"));
    takeRefusalBack();
    suggestFolder();
}

/// Nothing for one that is there already: only the user knows where.
void NewDistrictForm::suggestFolder() {
    if (fromQt(ui_->Folder->text()) != suggested_) {
        return;
    }
    const std::string name =
        ui_->Empty->isChecked() ? fromQt(ui_->DistrictName->text()) : std::string(SampleName);
    suggested_ = ui_->Existing->isChecked() ? std::string() : freeFolderFor(name);
    ui_->Folder->setText(toQt(suggested_));
}

void NewDistrictForm::Browse_Click() {
    const QString folder =
        forms::chooseFolder(*this, tr("Folder of the District"), ui_->Folder->text());
    if (!folder.isEmpty()) {
        ui_->Folder->setText(folder);
        takeRefusalBack();
    }
}

NewDistrict NewDistrictForm::wanted() const {
    return {.isEmpty = ui_->Empty->isChecked(),
            .folder = fromQt(ui_->Folder->text().trimmed()),
            .name = fromQt(ui_->DistrictName->text()),
            .administrator = fromQt(ui_->Administrator->text()),
            .password = fromQt(ui_->Password->text()),
            .passwordAgain = fromQt(ui_->PasswordAgain->text())};
}

void NewDistrictForm::Start_Click() {
    takeRefusalBack();
    if (ui_->Existing->isChecked()) {
        return takeExisting();
    }
    const NewDistrict district = wanted();
    if (const Objection objection = objectionTo(district); objection.part != Part::None) {
        refuse(objection);
    } else {
        make(district);
    }
}

void NewDistrictForm::takeExisting() {
    const std::string folder = districtFolderOf(wanted().folder);
    if (wanted().folder.empty() || !files::exists(startup::settingsIn(folder))) {
        return refuse(
            {Part::Folder, "There is no district in this folder: it would hold vireo/route.ini."});
    }
    startup::KnownDistricts().add(folder, "");
    openInstead(folder);
}

void NewDistrictForm::make(const NewDistrict& wanted) {
    CommandOutcome outcome;
    {
        Operation operation(*this, {.status = ui_->Message, .stop = ui_->Stop});
        operation.status("The district is made\u2026");
        outcome = runDistrictCommand(creationOf(wanted), wanted.password + '\n', operation);
    }
    if (!outcome.isDone) {
        ui_->Message->setText(outcome.says.empty()
                                  ? tr("Stopped.  Nothing was made.")
                                  : tr("Oops, nothing was made.  %1").arg(toQt(outcome.says)));
        return;
    }
    startup::KnownDistricts().use(wanted.folder, wanted.isEmpty ? wanted.name : SampleName,
                                  firstUserOf(wanted));
    openInstead(wanted.folder);
}

/// The list of districts looks at it and opens it, or says why not.
void NewDistrictForm::openInstead(const std::string& folder) {
    ui_->Message->setText(tr("The district is opened\u2026"));
    ui_->Start->setEnabled(false);
    forms::FormRegistry::instance().make<DistrictChooser>().openWithoutAsking(folder);
}

void NewDistrictForm::refuse(const Objection& objection) {
    QLineEdit* field = fieldOf(objection.part);
    controls::showRefused(*field, true, toQt(objection.why));
    field->setFocus();
    field->selectAll();
}

void NewDistrictForm::takeRefusalBack() {
    for (auto* box : findChildren<QLineEdit*>()) {
        controls::showRefused(*box, false);
    }
    ui_->Message->clear();
}

QLineEdit* NewDistrictForm::fieldOf(Objection::Part part) const {
    switch (part) {
        case Part::Name:
            return ui_->DistrictName;
        case Part::Administrator:
            return ui_->Administrator;
        case Part::Password:
            return ui_->Password;
        case Part::PasswordAgain:
            return ui_->PasswordAgain;
        case Part::None:
        case Part::Folder:
            break;
    }
    return ui_->Folder;
}

}  // namespace tools::launcher
