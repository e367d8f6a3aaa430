#include "tools/launcher/districtchooser.h"

#include <utility>

#include "platform/base/error.h"
#include "platform/base/ports.h"
#include "platform/controls/qtext.h"
#include "platform/forms/filedialog.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/operation.h"
#include "startup/base/mdlDBConnection.h"
#include "tools/launcher/districtcommand.h"
#include "tools/launcher/newdistrictform.h"
#include "tools/launcher/opendistrict.h"

#include "ui_districtchooser.h"

namespace tools::launcher {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr int LookEveryMs = 30;
constexpr int ShowAfterMs = 700;

enum Column : std::uint8_t { NameColumn, StateColumn, UsedColumn, UserColumn, FolderColumn };

/// As wide as their contents, and the state as its longest text; the folder takes the room that is
/// left.
table::TextTable emptyTable() {
    table::TextTable table;
    table.columns = {{.caption = "District"},
                     {.caption = "State", .widthTwips = 2000},
                     {.caption = "Last Used", .kind = table::CellKind::DateTime},
                     {.caption = "Last User"},
                     {.caption = "Folder", .widthTwips = 2100}};
    return table;
}

bool agreesTo(const char* title, const std::string& question, const std::string& folder) {
    return base::MsgBox({.text = question,
                         .title = title,
                         .icon = base::MsgIcon::Question,
                         .buttons = base::MsgButtons::YesNo,
                         .concerns = folder}) == base::MsgAnswer::Yes;
}

void tellNotDone(const char* title, const std::string& folder, const std::string& why) {
    base::MsgBox(
        {.text = why, .title = title, .icon = base::MsgIcon::Exclamation, .concerns = folder});
}

}  // namespace

DistrictChooser::DistrictChooser()
    : TrappedForm("Districts"), ui_(std::make_unique<Ui::Districts>()) {
    ui_->setupUi(this);
    setCancelButton(ui_->CloseIt);
    ui_->Stop->hide();
    on(ui_->DistrictList, &controls::MultiColumnList::rowClicked, "showChosen",
       &DistrictChooser::showChosen);
    on(ui_->DistrictList, &controls::MultiColumnList::rowActivated, "Open_Click",
       &DistrictChooser::Open_Click);
    on(ui_->Open, &QPushButton::clicked, "Open_Click", &DistrictChooser::Open_Click);
    on(ui_->NewDistrict, &QPushButton::clicked, "NewDistrict_Click",
       &DistrictChooser::NewDistrict_Click);
    on(ui_->AddFolder, &QPushButton::clicked, "AddFolder_Click", &DistrictChooser::AddFolder_Click);
    on(ui_->Remove, &QPushButton::clicked, "Remove_Click", &DistrictChooser::Remove_Click);
    on(ui_->CloseIt, &QPushButton::clicked, "closeForm", &DistrictChooser::closeForm);
    key(QKeySequence::Delete, ui_->Remove, ui_->DistrictList);
    looking_.setInterval(LookEveryMs);
    on(&looking_, &forms::Timer::tick, "takeLooks", &DistrictChooser::takeLooks);
    on(&showing_, &forms::Timer::tick, "showForm", &DistrictChooser::showForm);
}

DistrictChooser::~DistrictChooser() = default;

void DistrictChooser::Form_Load() { fill(); }

/// Another program may have changed the list, and whoever makes a district comes back here.
void DistrictChooser::Form_Activate() { fill(); }

void DistrictChooser::fill() {
    const std::string chosen = chosenFolder();
    districts_ = known_.all();
    table::TextTable table = emptyTable();
    for (const startup::KnownDistrict& district : districts_) {
        const std::size_t row = table.addRow();
        table.setText(row, NameColumn, district.shownName());
        table.setText(row, FolderColumn, district.folder);
        table.setText(row, UserColumn, district.lastUser);
        if (district.lastUsed) {
            table.set(row, UsedColumn, base::Value(*district.lastUsed));
        }
        showLook(table, row, district.folder);
    }
    ui_->DistrictList->setTable(std::move(table));
    choose(chosen);
}

void DistrictChooser::showLook(table::TextTable& table, std::size_t row,
                               const std::string& folder) {
    const auto found = found_.find(folder);
    if (found == found_.end()) {
        table.setText(row, StateColumn, "Looking\u2026");
        if (!looks_.contains(folder)) {
            lookAt(folder);
        }
        return;
    }
    table.setText(row, StateColumn, wordsFor(found->second.condition));
    if (!found->second.name.empty()) {
        table.setText(row, NameColumn, found->second.name);
    }
}

void DistrictChooser::lookAt(const std::string& folder) {
    found_.erase(folder);
    looks_.insert_or_assign(folder, BackgroundLook(folder));
    looking_.setEnabled(true);
}

void DistrictChooser::takeLooks() {
    const auto before = looks_.size();
    std::erase_if(looks_, [this](const auto& look) {
        if (look.second.isDone()) {
            found_.insert_or_assign(look.first, look.second.result());
        }
        return look.second.isDone();
    });
    looking_.setEnabled(!looks_.empty());
    if (looks_.size() == before || isBusy()) {
        return;
    }
    fill();
    if (found_.contains(toOpen_)) {
        openOrTell(std::exchange(toOpen_, {}));
    }
}

std::string DistrictChooser::chosenFolder() const {
    const int row = ui_->DistrictList->chosenRow();
    return row < 0 ? std::string() : ui_->DistrictList->cellText(row, FolderColumn);
}

/// The first one where that one is not there.
void DistrictChooser::choose(const std::string& folder) {
    int place = 0;
    for (int row = 0; row < ui_->DistrictList->rows(); ++row) {
        if (ui_->DistrictList->cellText(row, FolderColumn) == folder) {
            place = row;
        }
    }
    if (ui_->DistrictList->rows() > 0) {
        ui_->DistrictList->choose(place);
    }
    showChosen();
}

void DistrictChooser::showChosen() {
    const std::string folder = chosenFolder();
    const auto found = found_.find(folder);
    ui_->Open->setEnabled(!folder.empty() && toOpen_.empty());
    ui_->Remove->setEnabled(!folder.empty());
    ui_->Message->setText(found == found_.end() ? QString() : toQt(found->second.says));
}

void DistrictChooser::openWithoutAsking(const std::string& folder) {
    load();
    showing_.startOnce(ShowAfterMs);
    openWhenLooked(folder);
}

/// It may have changed since it was looked at for the list.
void DistrictChooser::openWhenLooked(const std::string& folder) {
    toOpen_ = folder;
    lookAt(folder);
    fill();
    choose(folder);
}

void DistrictChooser::Open_Click() {
    if (const std::string folder = chosenFolder(); !folder.empty() && toOpen_.empty()) {
        openWhenLooked(folder);
    }
}

void DistrictChooser::openOrTell(const std::string& folder) {
    const DistrictLook look = found_.at(folder);
    if (canBeOpened(look.condition)) {
        return openReady(folder, look.name);
    }
    showing_.setEnabled(false);
    if (look.condition != Condition::Unusable) {
        known_.add(folder, look.name);
    }
    showInFront();
    fill();
    choose(folder);
    if (look.condition == Condition::Older) {
        bringUp(folder, look.says);
    } else if (look.condition == Condition::Moved) {
        adopt(folder, look.says);
    } else {
        tellNotDone("District Not Opened", folder,
                    "Oops, this district cannot be opened.  " + look.says);
    }
}

void DistrictChooser::showInFront() {
    showForm();
    if (auto* former = forms::FormRegistry::instance().find("NewDistrict"); former != nullptr) {
        former->unload();
    }
}

void DistrictChooser::openReady(const std::string& folder, const std::string& name) {
    known_.add(folder, name);
    try {
        openDistrict(folder);
    } catch (const base::RunTimeError& error) {
        showInFront();
        return tellNotDone("District Not Opened", error.what(),
                           "Oops, the program that asks who you are cannot be started.  "
                           "\"vireo-district programs\" puts it into a district.");
    }
    startup::ShutDown();
}

void DistrictChooser::bringUp(const std::string& folder, const std::string& says) {
    if (!agreesTo("Bring the District Up", says + "  Bring it up now?", folder)) {
        return;
    }
    CommandOutcome outcome;
    {
        Operation operation(*this, {.status = ui_->Message, .stop = ui_->Stop});
        operation.status("The files are copied and brought up\u2026");
        outcome = runDistrictCommand({"upgrade", "--", folder}, "", operation);
    }
    ui_->Message->setText(toQt(outcome.says));
    if (outcome.isDone) {
        openWhenLooked(folder);
    } else if (!outcome.says.empty()) {
        tellNotDone("District Not Brought Up", folder,
                    "Oops, the district stays as it was.  " + outcome.says);
    }
}

void DistrictChooser::adopt(const std::string& folder, const std::string& says) {
    if (!agreesTo("Use the Files in This Folder",
                  says + "  Work on the files in this folder from now on?", folder)) {
        return;
    }
    try {
        adoptFolders(folder);
    } catch (const base::RunTimeError& error) {
        return tellNotDone("Settings Not Changed", folder,
                           std::string("Oops, the settings stay as they were.  ") + error.what());
    }
    openWhenLooked(folder);
}

void DistrictChooser::NewDistrict_Click() {
    forms::FormRegistry::instance().make<NewDistrictForm>(this).showForm();
}

void DistrictChooser::AddFolder_Click() {
    const QString chosen = forms::chooseFolder(*this, tr("Folder of a District"), {});
    if (chosen.isEmpty()) {
        return;
    }
    const std::string folder = districtFolderOf(fromQt(chosen));
    known_.add(folder, "");
    lookAt(folder);
    fill();
    choose(folder);
}

void DistrictChooser::Remove_Click() {
    const std::string folder = chosenFolder();
    if (folder.empty()) {
        return;
    }
    const int row = ui_->DistrictList->chosenRow();
    known_.remove(folder);
    fill();
    choose(row < ui_->DistrictList->rows() ? ui_->DistrictList->cellText(row, FolderColumn) : "");
}

}  // namespace tools::launcher
