#include "stops/frmSelStops.h"

#include <utility>

#include "startup/trap.h"
#include "stops/stopsearchpanel.h"

#include "ui_frmSelStops.h"

namespace stops {

namespace {

using startup::trapped;

constexpr auto SearchModule = "frmSelStops";

}  // namespace

frmSelStops::frmSelStops(forms::Form* owner)
    : forms::Form(SearchModule, owner), ui_(std::make_unique<Ui::frmSelStops>()) {
    ui_->setupUi(this);
    setWindowModality(Qt::WindowModal);
    setCancelButton(ui_->Exit);
    on(ui_->cmdChoose, &QPushButton::clicked, [this] { cmdChoose_Click(); });
    on(ui_->SelectAll, &QPushButton::clicked, [this] { SelectAll_Click(); });
    on(ui_->Exit, &QPushButton::clicked, [this] { Exit_Click(); });
    on(ui_->StopSearch, &StopSearchPanel::rowActivated, [this] { cmdChoose_Click(); });
    on(ui_->StopSearch, &StopSearchPanel::selectionCountChanged,
       [this](int count) { ui_->cmdChoose->setEnabled(count > 0); });
    ui_->cmdChoose->setEnabled(false);
}

frmSelStops::~frmSelStops() = default;

void frmSelStops::whenChosen(std::function<void(const std::vector<ChosenStop>&)> taker) {
    taker_ = std::move(taker);
}

void frmSelStops::Form_Load() {
    trapped("Form_Load", SearchModule, [this] {
        ui_->StopSearch->loadCodes();
        ui_->StopSearch->startFrom(tripType_);
    });
}

void frmSelStops::formUnload() { ui_->StopSearch->stopFilling(); }

void frmSelStops::cmdChoose_Click() {
    trapped("cmdChoose_Click", SearchModule, [this] {
        const auto chosen = ui_->StopSearch->selected();
        if (chosen.empty()) {
            return;
        }
        const auto taker = std::exchange(taker_, nullptr);
        unload();
        if (taker) {
            taker(chosen);
        }
    });
}

void frmSelStops::SelectAll_Click() {
    trapped("SelectAll_Click", SearchModule, [this] { ui_->StopSearch->selectAll(); });
}

void frmSelStops::Exit_Click() {
    trapped("Exit_Click", SearchModule, [this] { closeForm(); });
}

}  // namespace stops
