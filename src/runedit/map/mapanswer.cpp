#include "runedit/map/mapanswer.h"

#include "platform/dde/transport.h"
#include "platform/files/files.h"
#include "platform/forms/application.h"
#include "runedit/map/workfiles.h"
#include "startup/base/mdlFileUtilities.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"

namespace runedit {

namespace {

using startup::logLine;

constexpr int Second = 1000;
constexpr int SecondsToSettle = 10;
constexpr int LooksPerCall = 5;  // after so many looks, ask whether the map program still runs

const auto Waiting = QStringLiteral("Waiting for updated information from mapping software.");
const auto CountDown = QStringLiteral("Processing Map Results...%1 seconds remaining");
const auto NotSaved = QStringLiteral("Run Not Saved.");
const auto Received = QStringLiteral("Information Received from Mapping Software.");
const auto Ended =
    QStringLiteral("The mapping software has ended without an answer. Go to the map again.");

/// The form that the procedures belong to.
const char* moduleOf(MapScreen screen) {
    switch (screen) {
        case MapScreen::AddRun:
            return "Add_Remove_Stops";
        case MapScreen::GroupRunSolve:
            return "Group_Run_Solve";
        case MapScreen::Run:
            break;
    }
    return "Run";
}

bool answerIsThere() {
    return files::exists(WorkFiles(startup::gProgPath).path(workfile::RunDone));
}

}  // namespace

MapAnswer::MapAnswer(QObject* parent) : MapAnswer(MapScreen::Run, parent) {}

MapAnswer::MapAnswer(MapScreen screen, QObject* parent) : QObject(parent), screen_(screen) {
    Timer1.setInterval(Second);
    forms::on(&Timer1, &forms::Timer::tick, this, [this] { Timer1_Timer(); });
    forms::on(&Timer2, &forms::Timer::tick, this, [this] { Timer2_Timer(); });
}

void MapAnswer::start() {
    stop();
    waiting_ = true;
    emit status(Waiting);
    Timer1.setEnabled(true);
}

void MapAnswer::stop() {
    waiting_ = false;
    secondsLeft_ = 0;
    looks_ = 0;
    Timer1.setEnabled(false);
    Timer2.setEnabled(false);
}

template <class Step>
void MapAnswer::guarded(const char* procedure, Step step) {
    startup::trapped(procedure, moduleOf(screen_), step);
}

void MapAnswer::Timer1_Timer() {
    guarded("Timer1_Timer", [this] { secondsLeft_ == 0 ? poll() : countDown(); });
}

void MapAnswer::poll() {
    if (answerIsThere()) {
        logLine(
            "In Tarn, in Timer1 Rundone.txt found so Timer1 code will continue after 10 second "
            "pause. ");
        secondsLeft_ = SecondsToSettle;
        emit status(CountDown.arg(secondsLeft_));
    } else if (++looks_ % LooksPerCall == 0 && !dde::transport().isThere("ArcView") &&
               !answerIsThere()) {
        giveUp();
    }
}

void MapAnswer::countDown() {
    if (--secondsLeft_ > 0) {
        emit status(CountDown.arg(secondsLeft_));
        return;
    }
    Timer1.setEnabled(false);
    logLine("In Tarn, in Timer1 code will now continue... ");
    emit status(NotSaved);
    Timer2.startOnce(Second);
}

void MapAnswer::giveUp() {
    stop();
    emit status(Ended);
}

void MapAnswer::Timer2_Timer() {
    guarded("Timer2_Timer", [this] {
        waiting_ = false;
        logLine("In Tarn, in Timer2 about to do Command1_Click ");
        emit reload();
        const std::string_view place =
            screen_ == MapScreen::GroupRunSolve ? "In Group_Run_Solve" : "In Tarn";
        logLine(std::string(place) +
                ", in Timer2 performed Command1_Click and about to see if Build_StopList should be "
                "run.  TotSavedRuns: " +
                std::to_string(startup::TotSavedRuns));
        emit status(Received);
        buildLists();
    });
}

void MapAnswer::buildLists() {
    emit lists();
    for (const char* list : {"StopList", "WarnList", "DirList", "SpecialNeedsList"}) {
        logLine(std::string("In Tarn, in Timer2 after Build_") + list + " ");
    }
}

}  // namespace runedit
