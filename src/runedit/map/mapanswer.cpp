#include "runedit/map/mapanswer.h"

#include "data/runs/runrow.h"
#include "platform/dde/transport.h"
#include "platform/forms/application.h"
#include "runedit/map/runanswer.h"
#include "startup/base/mdlFileUtilities.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"

namespace runedit {

namespace {

using startup::logLine;

constexpr int Second = 1000;
constexpr int SecondsToSettle = 10;
constexpr int LooksPerCall = 5;     // after so many looks, ask whether the map program still runs
constexpr int LooksOnceFree = 60;   // a minute
constexpr int LooksUntilHeld = 10;  // an answer whose run is held longer is told of

const auto Waiting = QStringLiteral("Waiting for updated information from mapping software.");
const auto CountDown = QStringLiteral("Processing Map Results...%1 seconds remaining");
const auto NotSaved = QStringLiteral("Run Not Saved.");
const auto Received = QStringLiteral("Information Received from Mapping Software.");
const auto Ended =
    QStringLiteral("The mapping software has ended without an answer. Go to the map again.");
const auto StillHeld = QStringLiteral(
    "The mapping software has answered, but still holds the run's files. Waiting...");
const auto Gone = QStringLiteral("The run was deleted while it was with the mapping software.");

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

RunAnswer answerTo(const std::string& run) {
    return lookForAnswer(run, WorkFiles(startup::gProgPath), *startup::gcnRouting);
}

}  // namespace

MapAnswer::MapAnswer(QObject* parent) : MapAnswer(MapScreen::Run, parent) {}

MapAnswer::MapAnswer(MapScreen screen, QObject* parent) : QObject(parent), screen_(screen) {
    Timer1.setInterval(Second);
    forms::on(&Timer1, &forms::Timer::tick, this, [this] { Timer1_Timer(); });
    forms::on(&Timer2, &forms::Timer::tick, this, [this] { Timer2_Timer(); });
}

void MapAnswer::start(const std::string& run) {
    stop();
    run_ = run;
    waiting_ = true;
    emit status(Waiting);
    Timer1.setEnabled(true);
}

void MapAnswer::stop() {
    waiting_ = false;
    answered_ = false;
    wasHeld_ = false;
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
    const bool held = mapFilesLeft(run_);
    const auto answer = answerTo(run_);
    const bool answered = answered_ || answer == RunAnswer::ForThisRun;
    const bool same = held == wasHeld_ && answered == answered_;
    looks_ = same ? looks_ + 1 : 1;
    wasHeld_ = held;
    answered_ = answered;
    if (held) {
        lookWhileHeld();
    } else if (answered_ || answer == RunAnswer::Unnamed) {
        takeAnswer();
    } else {
        lookOnceFree();
    }
}

/// A map program that has ended holds nothing any more.
void MapAnswer::lookWhileHeld() {
    if (mapHasEnded()) {
        answered_ ? takeAnswer() : giveUp();
    } else if (answered_ && looks_ == LooksUntilHeld) {
        emit status(StillHeld);
    }
}

void MapAnswer::lookOnceFree() {
    if (looks_ >= LooksOnceFree || mapHasEnded()) {
        giveUp();
    }
}

/// The answer may have come while the map program was asked for.
bool MapAnswer::mapHasEnded() const {
    return looks_ % LooksPerCall == 0 && !dde::transport().isThere("ArcView") &&
           (answered_ || answerTo(run_) != RunAnswer::ForThisRun);
}

void MapAnswer::takeAnswer() {
    logLine(
        "In Tarn, in Timer1 Rundone.txt found so Timer1 code will continue after 10 second "
        "pause. ");
    secondsLeft_ = SecondsToSettle;
    emit status(CountDown.arg(secondsLeft_));
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
    markToBeResolved(run_);
    emit ended();
    emit status(Ended);
}

void MapAnswer::tellGone() {
    stop();
    emit status(Gone);
    emit gone();
}

void MapAnswer::Timer2_Timer() {
    guarded("Timer2_Timer", [this] {
        if (!data::runExists(*startup::gcnRouting, run_)) {
            tellGone();
            return;
        }
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
