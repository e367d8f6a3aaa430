#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "data/records/recordboxes.h"
#include "platform/forms/timer.h"
#include "startup/forms/changednote.h"
#include "startup/forms/changewatch.h"
#include "startup/forms/trappedform.h"
#include "stops/triprecord/triprecord.h"

namespace Ui {
class frmStopTripType;
}

namespace stops {

/// Edits one stop's trip record: passengers, minutes and miles, the time at the stop, the pick-up
/// side, whether it is in use, and the stop's comment; shows the students who use it and their
/// special needs. OK saves and stays.
class frmStopTripType : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit frmStopTripType(forms::Form* owner = nullptr);
    ~frmStopTripType() override;

    /// Which record to show (STOP_TRIPTYPE.ID); before the form is loaded, or later on.
    void edit(std::int64_t stopTripId);
    /// Called after each saving and each calculation of times, with the warnings written: the
    /// times of all the run's stops and the run's start and end may then be other ones.
    void whenSaved(std::function<void()> saved) { saved_ = std::move(saved); }

    void OK_Click();
    void CalcTimes_Click();
    void PreviousStop_Click();
    void NextStop_Click();
    void Exit_StopTrip_Click();
    void Timer3_Timer();

protected:
    void Form_Load() override;
    bool Form_QueryUnload() override;
    [[nodiscard]] Message lockedMessage() const override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void wire();
    /// Says in a line of the form where others have stored something else than it shows.
    void lookAtOthers(const store::Changes& changes);
    void readAnew();

    void openRecord(std::int64_t id);
    void hold(const TripRecord& record);
    void present(const TripRecord& record);
    void showHead();
    void showRun();
    void showStudents();
    void showButtons();

    [[nodiscard]] bool isTouched() const;
    bool save();
    bool timeRun();
    void tellGone();
    void finish(const std::string& status);
    bool mayLeave();
    void step(int places);
    void showStatus(const std::string& text);

    std::unique_ptr<Ui::frmStopTripType> ui_;
    data::RecordBoxes boxes_;
    forms::Timer Timer3;
    startup::ChangedNote* changed_;
    std::function<void()> saved_;
    std::int64_t id_ = 0;
    /// The record as it was read; nothing of it is left to edit once it is gone.
    TripRecord held_;
    bool gone_ = true;
    std::vector<std::int64_t> ids_;  ///< of the run's records, in sequence
    std::size_t place_ = 0;          ///< of this one among them
};

}  // namespace stops
