#include "stops/triprecord/frmStopTripType.h"

#include <algorithm>
#include <tuple>

#include <fmt/format.h>

#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "runedit/validation/mdlValidate_Runs.h"
#include "startup/base/mdlFileUtilities.h"
#include "startup/base/session.h"
#include "stops/triprecord/stopstudents.h"
#include "stops/triprecord/triptimes.h"

#include "ui_frmStopTripType.h"

namespace stops {

namespace {

using controls::toQt;

constexpr auto Module = "frmStopTripType";
/// Early bell, late bell and conflicting times: what a stop's own record can break.
constexpr auto Switches = "NNNYYNNY";
constexpr int StatusMilliseconds = 8000;

constexpr auto GoneText =
    "Oops, this stop's trip record does not exist any more: somebody else has deleted it.  Nothing "
    "can be saved.  What you entered stays on this form until you leave it.";
constexpr auto GoneTitle = "Trip Record Deleted";
constexpr auto ChangedTitle = "Stop Changed Meanwhile";
constexpr auto LeaveTitle = "Stop Not Saved";
constexpr auto LeaveText =
    "You have changed stop {} and not saved it.\n\n"
    "Yes - save it and go on.\n"
    "No - go on without saving.\n"
    "Cancel - go on editing.";
constexpr auto LockedText =
    "Oops, another program is writing to the routing database just now, and nothing was saved.  "
    "What you have entered is not lost.  Please wait a moment and try again.";
constexpr auto NotTimedText =
    "Oops, stop {} was saved, but another program is writing to the routing database just now, so "
    "the times of the run were not calculated.  Please wait a moment and press Recalculate Times "
    "again.";
constexpr auto NotCheckedText =
    "Stop {} was saved, but another program is writing to the routing database just now, so the "
    "run was not checked for warnings.  Please wait a moment and press OK again.";
constexpr auto NoTimeText =
    "Oops, this stop has no time yet.  Please enter the time at stop around which the run is to be "
    "timed.";
constexpr auto NoTimeTitle = "Blank Time at Stop";
constexpr auto NoMinutesText =
    "Oops, the times of this run cannot be calculated: stop {} has no load time or no driving "
    "time.  Please enter both, 0 included, and try again.";
constexpr auto NoMinutesTitle = "Minutes Missing";
constexpr auto OffRunText =
    "Oops, stop {} has been taken off run {} meanwhile.  No times were calculated.  Please leave "
    "this form and look at the stops of the run.";
constexpr auto OffRunTitle = "Stop Not on the Run";

ado::Connection& routing() { return *startup::gcnRouting; }

data::Author authorNow() { return {startup::gCommandLine, base::Now()}; }

QString timeText(const std::optional<base::Date>& time) {
    return time ? toQt(time->hhmm()) : QStringLiteral("-");
}

std::unique_ptr<Ui::frmStopTripType> made(frmStopTripType& form) {
    auto ui = std::make_unique<Ui::frmStopTripType>();
    ui->setupUi(&form);
    return ui;
}

}  // namespace

frmStopTripType::frmStopTripType(forms::Form* owner)
    : TrappedForm(Module, owner),
      ui_(made(*this)),
      boxes_(*this, tripFields()),
      changed_(new startup::ChangedNote(this)) {
    // Below the fields, which it must not move; the lists below it make room.
    changed_->standIn(*ui_->mainColumn, ui_->mainColumn->indexOf(ui_->studentRow),
                      ui_->Exit_StopTrip);
    if (owner != nullptr) {
        setWindowModality(Qt::WindowModal);
    }
    QPalette green = ui_->Status->palette();
    green.setColor(QPalette::Window, QColor(0, 255, 0));
    green.setColor(QPalette::WindowText, Qt::black);
    ui_->Status->setPalette(green);
    setCancelButton(ui_->Exit_StopTrip);
    ui_->RUN_PICKUP_SIDE->addItem(QString(), QString());
    ui_->RUN_PICKUP_SIDE->addItem(tr("Right"), QStringLiteral("right"));
    ui_->RUN_PICKUP_SIDE->addItem(tr("Left"), QStringLiteral("left"));
    wire();
}

/// Where the form is narrow for its font the groups stand below each other.
void frmStopTripType::resizeEvent(QResizeEvent* event) {
    TrappedForm::resizeEvent(event);
    constexpr int RoomyCharacters = 105;
    const bool narrow = width() < RoomyCharacters * fontMetrics().averageCharWidth();
    for (QHBoxLayout* row : {ui_->fieldRow, ui_->studentRow}) {
        row->setDirection(narrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    }
}

frmStopTripType::~frmStopTripType() = default;

void frmStopTripType::wire() {
    on(ui_->OK, &QPushButton::clicked, "OK_Click", &frmStopTripType::OK_Click);
    on(ui_->CalcTimes, &QPushButton::clicked, "CalcTimes_Click", &frmStopTripType::CalcTimes_Click);
    on(ui_->PreviousStop, &QPushButton::clicked, "PreviousStop_Click",
       &frmStopTripType::PreviousStop_Click);
    on(ui_->NextStop, &QPushButton::clicked, "NextStop_Click", &frmStopTripType::NextStop_Click);
    on(ui_->Exit_StopTrip, &QPushButton::clicked, "Exit_StopTrip_Click",
       &frmStopTripType::Exit_StopTrip_Click);
    on(&Timer3, &forms::Timer::tick, "Timer3_Timer", &frmStopTripType::Timer3_Timer);
    on(changed_, &startup::ChangedNote::readAnew, "readAnew", &frmStopTripType::readAnew);
    on(&startup::ChangeWatch::instance(), &startup::ChangeWatch::changed, "lookAtOthers",
       &frmStopTripType::lookAtOthers);
    key(Qt::CTRL | Qt::Key_PageUp, ui_->PreviousStop);
    key(Qt::CTRL | Qt::Key_PageDown, ui_->NextStop);
    key(Qt::CTRL | Qt::Key_Return, ui_->OK);
}

void frmStopTripType::edit(std::int64_t stopTripId) {
    id_ = stopTripId;
    if (isLoaded() && mayLeave()) {
        openRecord(stopTripId);
    }
}

void frmStopTripType::Form_Load() {
    ui_->NUM_STUDENTS->setFocus();
    openRecord(id_);
}

void frmStopTripType::openRecord(std::int64_t id) {
    const auto stored = data::readRecord(routing(), tripFields(), tripRecordSql(id));
    id_ = id;
    if (stored) {
        hold(TripRecord(*stored));
    } else {
        tellGone();
    }
}

/// Shows a record as it is stored; what was typed is gone.
void frmStopTripType::hold(const TripRecord& record) {
    boxes_.show(record.fields);
    present(record);
}

/// Shows what stands around the fields.
void frmStopTripType::present(const TripRecord& record) {
    held_ = record;
    gone_ = false;
    changed_->clear();
    showHead();
    showRun();
    showStudents();
    showButtons();
    if (const auto unknown = boxes_.unknownChoices(); !unknown.empty()) {
        showStatus(unknown);
    }
}

void frmStopTripType::lookAtOthers(const store::Changes& changes) {
    if (gone_ || !startup::concerns(changes, held_.run)) {
        return;
    }
    const auto stored = data::readRecord(routing(), tripFields(), tripRecordSql(held_.id));
    if (!stored) {
        changed_->tell(tr("This stop's trip record was deleted meanwhile."));
    } else if (*stored != held_.fields) {
        changed_->tell(startup::changedBy(tr("this stop"), toQt(stored->text("ChangedBy")),
                                          toQt(stored->text("changeddt"))));
    }
}

/// What was typed stays on top of it.
void frmStopTripType::readAnew() {
    const auto stored = data::readRecord(routing(), tripFields(), tripRecordSql(held_.id));
    if (!stored) {
        changed_->clear();
        return tellGone();
    }
    boxes_.refresh(*stored);
    present(TripRecord(*stored));
}

void frmStopTripType::showHead() {
    const auto stop = toQt(held_.stopId);
    setWindowTitle(tr("Stop %1").arg(stop));
    const auto description = toQt(held_.fields.text("DESCRIPTION"));
    ui_->Heading->setText(description.isEmpty() ? tr("Stop %1").arg(stop)
                                                : tr("Stop %1: %2").arg(stop, description));
    ui_->StopHead->setText(
        tr("%1     %2     Trip type %3")
            .arg(toQt(held_.fields.text("ADDR1")), toQt(held_.stopType), toQt(held_.tripType)));
    ui_->RightSideOnly->setVisible(held_.fields.isYes("RIGHTSIDE"));
}

void frmStopTripType::showRun() {
    ids_.clear();
    place_ = 0;
    if (!held_.isOnRun()) {
        ui_->RunHead->setText(tr("On no run"));
        return;
    }
    ids_ = tripRecordsOf(routing(), held_.run);
    place_ = static_cast<std::size_t>(std::ranges::find(ids_, held_.id) - ids_.begin());
    const auto run = readTripRun(routing(), held_.run);
    ui_->RunHead->setText(
        run ? tr("Run %1, %2: stop %3 of %4.  Starts %5, ends %6, bell %7.")
                  .arg(toQt(run->run), toQt(run->description))
                  .arg(place_ + 1)
                  .arg(ids_.size())
                  .arg(timeText(run->start), timeText(run->end), timeText(run->bell))
            : tr("Run %1, which does not exist any more").arg(toQt(held_.run)));
}

void frmStopTripType::showStudents() {
    ui_->NeedsList->setTable(readStopNeeds(routing(), held_));
    ui_->StudentList->setTable(readStopStudents(routing(), held_));
    const int students = ui_->StudentList->rows();
    ui_->StudentListLabel->setText(students == 0 ? tr("St&udents at this stop:")
                                                 : tr("St&udents at this stop: %1").arg(students));
}

void frmStopTripType::showButtons() {
    ui_->OK->setEnabled(!gone_);
    ui_->CalcTimes->setEnabled(!gone_ && held_.isTimed());
    ui_->PreviousStop->setEnabled(!gone_ && !ids_.empty() && place_ > 0);
    ui_->NextStop->setEnabled(!gone_ && place_ + 1 < ids_.size());
}

frmStopTripType::Message frmStopTripType::lockedMessage() const {
    return {"Stop Not Saved", LockedText};
}

/// True when the record is stored as it was entered.
bool frmStopTripType::save() {
    const auto entries = boxes_.entries();
    if (boxes_.refuseFault(entries)) {
        return false;
    }
    const auto [outcome, stored] =
        data::saveRecord(routing(), tripRecordSql(held_.id), entries, authorNow());
    if (outcome == data::SaveOutcome::Saved) {
        startup::RefreshRunList = true;
        hold(TripRecord(*stored));
        return true;
    }
    if (!stored) {
        tellGone();
    } else if (boxes_.settle(entries, *stored, ChangedTitle, "stop's trip record")) {
        present(TripRecord(*stored));
    }
    return false;
}

void frmStopTripType::tellGone() {
    gone_ = true;
    showButtons();
    base::MsgBox(GoneText, GoneTitle, base::MsgIcon::Exclamation);
}

/// What follows a change of the record: the run is checked, and who opened the form is told.
void frmStopTripType::finish(const std::string& status) {
    showStatus(status);
    if (held_.isOnRun()) {
        std::ignore =
            unlessLocked({"Run Not Checked", fmt::format(NotCheckedText, held_.stopId)}, [this] {
                trap("CheckRun", [this] { runedit::checkRunOfAnyLength(held_.run, Switches); });
            });
    }
    if (saved_) {
        saved_();
    }
}

void frmStopTripType::OK_Click() {
    if (save()) {
        finish(fmt::format("Stop {} saved.", held_.stopId));
    }
}

void frmStopTripType::CalcTimes_Click() {
    bool timed = false;
    if (save() && unlessLocked({"Times Not Calculated", fmt::format(NotTimedText, held_.stopId)},
                               [&] { timed = timeRun(); })) {
        finish(timed ? fmt::format("Times of run {} recalculated.", held_.run)
                     : fmt::format("Stop {} saved.", held_.stopId));
    }
}

/// Computes the run's times around the stored time; tells why where that cannot be done.
bool frmStopTripType::timeRun() {
    if (!held_.timeAtStop()) {
        base::MsgBox(NoTimeText, NoTimeTitle, base::MsgIcon::Information);
        ui_->TIME_AT_STOP->setFocus();
        return false;
    }
    if (const auto stop = stopWithoutMinutes(routing(), held_.run); !stop.empty()) {
        base::MsgBox(fmt::format(NoMinutesText, base::trim(stop)), NoMinutesTitle,
                     base::MsgIcon::Information);
        return false;
    }
    const bool timed = timeRunAround(routing(), held_, authorNow(), startup::logLine);
    if (!timed) {
        base::MsgBox(fmt::format(OffRunText, held_.stopId, held_.run), OffRunTitle,
                     base::MsgIcon::Exclamation);
    }
    openRecord(id_);
    return timed;
}

void frmStopTripType::PreviousStop_Click() { step(-1); }

void frmStopTripType::NextStop_Click() { step(1); }

void frmStopTripType::Exit_StopTrip_Click() { closeForm(); }

void frmStopTripType::Timer3_Timer() { ui_->Status->hide(); }

bool frmStopTripType::Form_QueryUnload() { return mayLeave(); }

bool frmStopTripType::isTouched() const { return !gone_ && boxes_.areTouched(); }

/// Whether what was typed is saved, or given up for good.
bool frmStopTripType::mayLeave() {
    if (!isTouched()) {
        return true;
    }
    switch (base::MsgBox(fmt::format(LeaveText, held_.stopId), LeaveTitle, base::MsgIcon::Question,
                         base::MsgButtons::YesNoCancel)) {
        case base::MsgAnswer::No:
            return true;
        case base::MsgAnswer::Yes:
            OK_Click();
            return !isTouched();
        default:
            return false;
    }
}

void frmStopTripType::step(int places) {
    const auto target = static_cast<std::int64_t>(place_) + places;
    if (target >= 0 && target < std::ssize(ids_) && mayLeave()) {
        openRecord(ids_[static_cast<std::size_t>(target)]);
    }
}

void frmStopTripType::showStatus(const std::string& text) {
    ui_->Status->setText(toQt(text));
    ui_->Status->show();
    Timer3.startOnce(StatusMilliseconds);
}

}  // namespace stops
