#include <fmt/format.h>

#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/forms/filedialog.h"
#include "platform/forms/operation.h"
#include "runedit/editor/Run.h"
#include "runedit/editor/bellcheck.h"
#include "runedit/editor/runfields.h"
#include "runedit/map/maphandoff.h"
#include "runedit/times/mdl_Time_Calc_Routines.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"
#include "stops/triprecord/triptimes.h"

#include "ui_Run.h"

namespace runedit {

namespace {

using base::MsgAnswer;
using base::MsgButtons;
using base::MsgIcon;
using startup::gcnRouting;

constexpr auto UnsavedForMapTitle = "Run Not Saved";
constexpr auto UnsavedForMapText =
    "You have changed this run and not saved it.  The map gets the run as it is saved.\n\n"
    "Yes - save it and go to the map.\n"
    "No - go to the map without what you have changed.\n"
    "Cancel - go on editing.";
constexpr auto NoMinutesTitle = "Minutes Missing";
constexpr auto NoMinutesText =
    "Oops, the times of this run cannot be calculated: stop {} has no load time or no driving "
    "time.  Please enter both, 0 included, and try again.";
constexpr auto MapFailedTitle = "Can't Go to Map";

}  // namespace

void Run::CalcTimes_Click() {
    hideSaved();
    boxes_->clearRefusals();
    const auto entered = entries().entered;
    if (const auto fault = findTimeFault(entered)) {
        boxes_->refuse(*fault);
        return;
    }
    if (const auto stop = stops::stopWithoutMinutes(*gcnRouting, run()); !stop.empty()) {
        return tellNoMinutes(stop);
    }
    const bool fromStart = timesFromStart(entered);
    std::string mode = fromStart ? "Start" : "End";
    auto anchor = entered[fromStart ? "StartTime" : "EndTime"].asDate();
    boxes_->type(fromStart ? "EndTime" : "StartTime", Calc_Times(mode, anchor, false, run()));
    {
        const auto ahead = askTogether(readsOf(run()));
        trap("Build_StopList", &Run::Build_StopList);
    }
    checkBell(entered);
    trap("Build_WarnList", &Run::Build_WarnList);
}

void Run::tellNoMinutes(const std::string& stop) {
    const auto id = base::trim(stop);
    goToStop(std::string(id));
    base::MsgBox(fmt::format(NoMinutesText, id), NoMinutesTitle, MsgIcon::Information);
}

void Run::checkBell(const data::Record& entered) {
    if (entered["BellTime"].isNull()) {
        return;
    }
    const auto bell = entered["BellTime"].asDate();
    const bool pickup = entered.isYes("Pickup");
    const bool kept = pickup ? trap("Check_Run_LateBellTime", &Run::Check_Run_LateBellTime, bell)
                             : trap("Check_Run_EarlyBellTime", &Run::Check_Run_EarlyBellTime, bell);
    if (!kept) {
        const auto [title, text] = bellMessage(pickup ? BellRule::NotLater : BellRule::NotEarlier);
        base::MsgBox(text, title, MsgIcon::Information);
    }
}

bool Run::Check_Run_EarlyBellTime(base::Date bell) {
    return recordBellCheck(*gcnRouting, run(), BellRule::NotEarlier, bell);
}

bool Run::Check_Run_LateBellTime(base::Date bell) {
    return recordBellCheck(*gcnRouting, run(), BellRule::NotLater, bell);
}

void Run::MapIt_Click() {
    if (mapFilesLeft(run())) {
        markToBeResolved(run());
        refresh();
        if (base::MsgBox(MapBusyQuestion, MapBusyTitle, MsgIcon::Question, MsgButtons::YesNo) ==
            MsgAnswer::Yes) {
            showStatus(deleteMapFiles(run()) ? MapFilesDeletedText : MapFilesHeldText);
        }
        return;
    }
    if (!mapExchangeOn()) {
        showStatus(MapExchangeOffText);
        return;
    }
    sendToMap();
}

void Run::sendToMap() {
    if (boxes_->areTouched()) {
        const auto answer = base::MsgBox(UnsavedForMapText, UnsavedForMapTitle, MsgIcon::Question,
                                         MsgButtons::YesNoCancel);
        const bool ready = answer == MsgAnswer::No || (answer == MsgAnswer::Yes && checkAndSave());
        if (!ready) {
            return;
        }
    }
    std::string failure;
    try {
        const Operation operation(*this);
        showStatus(MapHandingOverText);
        sendRunToMap(run(), MapScreen::Run);
    } catch (const std::exception& error) {
        if (startup::lockedElsewhere()) {
            throw;
        }
        failure = handOverFailedText(error);
    }
    if (failure.empty()) {
        answer_.start(run());
    } else {
        showStatus("");
        refresh();
        base::MsgBox(failure, MapFailedTitle, MsgIcon::Exclamation);
    }
}

void Run::Closed_Browse_Click() {
    const auto file =
        forms::chooseFile(*this, {tr("Closed Streets File"), ui_->GIS_CLOSEDSTREETFILENAME->text(),
                                  tr("Map layers (*.avl *.shp);;All files (*)")});
    if (!file.isEmpty()) {
        ui_->GIS_CLOSEDSTREETFILENAME->setText(file);
    }
}

void Run::Clear_Closed_Click() { ui_->GIS_CLOSEDSTREETFILENAME->clear(); }

}  // namespace runedit
