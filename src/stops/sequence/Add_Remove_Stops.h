#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "map/small/runmap.h"
#include "startup/forms/changednote.h"
#include "startup/forms/changewatch.h"
#include "startup/forms/trappedform.h"
#include "stops/sequence/runhead.h"
#include "stops/sequence/runstops.h"

namespace Ui {
class Add_Remove_Stops;
}

namespace stops {

/// Puts stops on a run, takes them off and orders them: found stops on the left, the run's on the
/// right. Each action is written and logged at once; there is no undo. Leaving the form hands the
/// run to the map software, where there is one, to be solved again.
class Add_Remove_Stops : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit Add_Remove_Stops(forms::Form* owner = nullptr);
    ~Add_Remove_Stops() override;

    /// The run to work on; before the form is loaded or shown.
    void edit(const std::string& run);
    /// Called when the form is left and the map program has taken the run: its answer will come.
    void whenSent(std::function<void()> sent) { sent_ = std::move(sent); }

    void AddStop();
    void DelStop();
    void Move_To_Top();
    void MoveUp();
    void MoveDown();
    void Move_to_Bottom();
    bool ExitAddRun();
    /// The Delete key, which is pressed by mistake more easily than the button: asks first.
    void StopList_Delete();
    /// The selected rows were dragged in front of that row of the list.
    void StopList_Drop(int before);

protected:
    void Form_Load() override;
    bool Form_QueryUnload() override;
    void Form_Unload() override;
    [[nodiscard]] Message lockedMessage() const override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void formDress() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    using StopTripIds = std::vector<std::int64_t>;

    void Build_StopList();
    /// Says in a line of the form where others have changed the stops that it shows.
    void lookAtOthers(const store::Changes& changes);

    void wireButtons();
    void wireKeys();
    void restoreSplitter();
    void wireDragging();
    void wireMap();
    void enableButtons();
    void showHead();
    void showPassengers(std::int64_t passengers);
    void fitHeading();
    void arrange();
    void showUnplaced(const std::vector<std::size_t>& rows);

    /// The run as it is stored, where it can be drawn and there is room for it.
    void showMap();
    void takeMap(map::RunMap shown);
    [[nodiscard]] bool hasRoomForMap() const;
    void arrangeMap();
    void foldMap();
    void markOnMap();
    void SmallMap_StopClicked(int stop);

    [[nodiscard]] StopTripIds selectedStops() const;
    void selectStops(const StopTripIds& stopTripIds);
    template <class Action>
    [[nodiscard]] auto carryOut(std::size_t rows, Action action);
    void move(Move direction);
    void handToMap();
    [[nodiscard]] std::string placeOfAdded(const StopTripIds& added) const;
    void showResult(const StopTripIds& changed, const StopTripIds& selected,
                    const std::string& told);

    std::unique_ptr<Ui::Add_Remove_Stops> ui_;
    EditedRun run_;
    RunHead head_;
    std::int64_t passengers_ = 0;
    bool lean_ = false;     ///< the buttons stand above and below the run's list
    bool changed_ = false;  ///< by an action of this form
    std::function<void()> sent_;

    map::RunMaps maps_;
    startup::ChangedNote* changedNote_;
    std::vector<std::int64_t> mapped_;  ///< the trip records of the map's stops, in their order
    bool canBeMapped_ = false;          ///< the run, on the district's streets
};

}  // namespace stops
