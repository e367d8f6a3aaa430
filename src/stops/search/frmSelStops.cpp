#include "stops/search/frmSelStops.h"

#include <utility>

#include "stops/search/stopsearchpanel.h"

#include "ui_frmSelStops.h"

namespace stops {

constexpr auto SearchModule = "frmSelStops";

frmSelStops::frmSelStops(forms::Form* owner)
    : TrappedForm(SearchModule, owner), ui_(std::make_unique<Ui::frmSelStops>()) {
    ui_->setupUi(this);
    setWindowModality(Qt::WindowModal);
    setCancelButton(ui_->Exit);
    on(ui_->cmdChoose, &QPushButton::clicked, "cmdChoose_Click", &frmSelStops::cmdChoose_Click);
    on(ui_->SelectAll, &QPushButton::clicked, "SelectAll_Click", &frmSelStops::SelectAll_Click);
    on(ui_->Exit, &QPushButton::clicked, "Exit_Click", &frmSelStops::Exit_Click);
    on(ui_->StopSearch, &StopSearchPanel::rowActivated, "cmdChoose_Click",
       &frmSelStops::cmdChoose_Click);
    on(ui_->StopSearch, &StopSearchPanel::selectionCountChanged, "StopSearch_Select",
       [this](int count) { ui_->cmdChoose->setEnabled(count > 0); });
    ui_->cmdChoose->setEnabled(false);
}

frmSelStops::~frmSelStops() = default;

void frmSelStops::whenChosen(std::function<void(const std::vector<ChosenStop>&)> taker) {
    taker_ = std::move(taker);
}

void frmSelStops::Form_Load() {
    ui_->StopSearch->loadCodes();
    ui_->StopSearch->startFrom(tripType_);
}

void frmSelStops::Form_Unload() { ui_->StopSearch->stopFilling(); }

void frmSelStops::cmdChoose_Click() {
    const auto chosen = ui_->StopSearch->selected();
    if (chosen.empty()) {
        return;
    }
    // A choice that cannot be taken over now, because of a lock, stays.
    if (const auto taker = taker_) {
        taker(chosen);
    }
    unload();
}

void frmSelStops::SelectAll_Click() { ui_->StopSearch->selectAll(); }

void frmSelStops::Exit_Click() { closeForm(); }

}  // namespace stops
