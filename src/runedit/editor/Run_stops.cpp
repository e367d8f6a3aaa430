#include <fmt/format.h>

#include "groupops/merge/MergeRun.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "platform/forms/formregistry.h"
#include "runedit/editor/Run.h"
#include "runedit/map/maphandoff.h"
#include "runsearch/log/RunLogInquiry.h"
#include "startup/base/session.h"
#include "stops/search/frmSelStops.h"
#include "stops/sequence/Add_Remove_Stops.h"
#include "stops/sequence/runstops.h"
#include "stops/sequence/stopmessages.h"
#include "stops/triprecord/frmStopTripType.h"

#include "ui_Run.h"

namespace runedit {

namespace {

using base::MsgAnswer;
using base::MsgButtons;
using base::MsgIcon;
using startup::gcnRouting;

constexpr auto ConfirmRemovalTitle = "Please Confirm Removal of Stops";
constexpr auto ConfirmRemovalOfOne = "Are you sure you want to take the stop {} off this run?";
constexpr auto ConfirmRemovalOfSome = "Are you sure you want to take {} stops off this run?";

std::int64_t numberIn(const std::string& text) { return base::Value(text).asInteger(); }

std::string trimmed(const controls::MultiColumnList& list, int row, std::string_view column) {
    return std::string(base::trim(list.table().text(list.tableRow(row), column)));
}

/// What is taken off: id and address, then what it is called.
std::string stopToRemove(const controls::MultiColumnList& list, int row) {
    std::string words = trimmed(list, row, "StopID");
    for (const auto* column : {"Addr1", "Description"}) {
        if (const auto word = trimmed(list, row, column); !word.empty()) {
            words += ", " + word;
        }
    }
    return words;
}

bool confirmRemoval(const controls::MultiColumnList& list, const std::vector<int>& rows,
                    const QString& run) {
    const auto question = rows.size() == 1
                              ? fmt::format(ConfirmRemovalOfOne, list.cellText(rows[0], 0))
                              : fmt::format(ConfirmRemovalOfSome, rows.size());
    auto concerns = controls::fromQt(run);
    for (const int row : rows) {
        concerns += "\n" + stopToRemove(list, row);
    }
    return base::confirmLoss(question, ConfirmRemovalTitle, concerns);
}

}  // namespace

/// The run as the actions on its stops want it: with the trip type that is stored.
stops::EditedRun Run::runOfStops() const {
    const auto stored = storedRun();
    return {run(), stored ? stored->text("TripType") : std::string(), startup::gCommandLine,
            mapExchangeOn()};
}

void Run::AddStops_Click() {
    auto& form = forms::FormRegistry::instance().make<stops::Add_Remove_Stops>(this);
    form.edit(run());
    form.whenSent([this] { answer_.start(run()); });
    form.showForm();
}

void Run::GetStops_Click() {
    auto& form = forms::FormRegistry::instance().make<stops::frmSelStops>(this);
    form.startFrom(runOfStops().tripType);
    form.whenChosen([this](const auto& chosen) { addToRun(chosen); });
    form.showForm();
}

void Run::addToRun(const std::vector<stops::ChosenStop>& chosen) {
    const auto target = runOfStops();
    const auto question = stops::questionBeforeAdding(target, chosen);
    if (!question.empty() && base::MsgBox(question, stops::AddTitle, MsgIcon::Question,
                                          MsgButtons::YesNo) != MsgAnswer::Yes) {
        return;
    }
    changeStops([&] { return stops::addStops(*gcnRouting, target, chosen); });
}

/// One unit of work with the note that the dead-head must be calculated again.
template <class Change>
void Run::changeStops(Change change) {
    ado::CommitOnExit unit(*gcnRouting);
    const auto changed = change();
    stops::needDeadHeadBuild(*gcnRouting);
    unit.commit();
    stops::tellOfSkipped(changed);
    startup::RefreshRunList = true;
    refresh();
}

void Run::StopEdit_Click() {
    const auto chosen = chosenStopTrip();
    if (chosen.empty()) {
        return;
    }
    auto& form = forms::FormRegistry::instance().make<stops::frmStopTripType>(this);
    form.edit(numberIn(chosen));
    form.whenSaved([this] { refresh(); });
    form.showForm();
}

void Run::Remove_Click() {
    const auto rows = ui_->StopList->selectedRows();
    if (rows.empty() || !confirmRemoval(*ui_->StopList, rows, ui_->Heading->text())) {
        return;
    }
    std::vector<std::int64_t> stopTripIds;
    stopTripIds.reserve(rows.size());
    for (const int row : rows) {
        stopTripIds.push_back(ui_->StopList->cellValue(row, "ID").asInteger());
    }
    changeStops([&] { return stops::removeStops(*gcnRouting, runOfStops(), stopTripIds); });
}

void Run::Merge_Click() {
    auto& form = forms::FormRegistry::instance().make<groupops::MergeRun>(this);
    form.receive(run());
    form.showForm();
}

void Run::Log_Click() {
    auto& form = forms::FormRegistry::instance().make<runsearch::RunLogInquiry>(this);
    form.ask(run());
    form.showForm();
}

}  // namespace runedit
