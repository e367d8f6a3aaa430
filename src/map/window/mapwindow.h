#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "map/ground/camera.h"
#include "map/run/mapsearch.h"
#include "map/shown/homes.h"
#include "map/shown/runscene.h"
#include "map/window/aside.h"
#include "map/window/detours.h"
#include "map/window/panelrows.h"
#include "map/window/placing.h"
#include "platform/ado/connection.h"
#include "startup/forms/trappedform.h"
#include "streets/district/districtstreets.h"

class QMenu;
class QTimer;

namespace Ui {
class MapWindow;
}

namespace map {

struct Hit;
struct MapPage;

/// What the window works on.
struct MapDistrict {
    ado::Connection& routing;
    std::shared_ptr<const streets::DistrictStreets> streets;
    std::function<std::string()> user;  ///< whom changes are put down to
    /// The district's list of students' homes for who may see it now, nothing for anybody else,
    /// who is told so where asked to. Empty where there is no such list to be had.
    std::function<std::optional<std::vector<streets::Home>>(bool tell)> homes = {};
};

/// What became of a run that was solved.
enum class Decision { TakenOver, Kept };

/// The map: one run with its way and stops, or several in their colours. A run that was solved is
/// shown beside what is stored, and nothing is saved until the planner takes it over.
class MapWindow : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit MapWindow(MapDistrict district);
    ~MapWindow() override;

    /// Shows a run, and brings the window to the front. A run that is waiting for the planner's
    /// decision is kept as it was.
    void showRun(const std::string& run);
    using Decided = std::function<void(Decision)>;
    /// Shows a run before and after, and tells once what the planner decides; a window that is
    /// closed keeps the old way. Several runs wait for one another.
    void ask(const std::string& run, Decided decided);
    /// A run was solved and saved by others: where it is shown it is read again.
    void runSaved(const std::string& run);
    /// Shows where all stops of the district are, beside what is shown.
    void showPoints();
    /// Other streets from now on.
    void driveOn(std::shared_ptr<const streets::DistrictStreets> streets);
    /// Whether students' homes were left on, for who may see them.
    [[nodiscard]] static bool showsHomes();
    /// Whether a run that another program sends is taken over only when the planner says so.
    [[nodiscard]] static bool asksFirst();

    void SolveIt_Click();
    void TakeOver_Click();
    void KeepOldWay_Click();
    void OpenRun_Click();
    void PlaceIt_Click();
    void MoveStop_Click(bool on);
    void SuggestOrder_Click();
    void SolveRuns_Click();
    void Directions_Click();
    void PrintIt_Click();
    void ExportIt_Click();
    void CloseIt_Click();
    void SchoolRuns_Click();
    void RouteRuns_Click();
    void Reload();

protected:
    void Form_Load() override;
    void Form_Activate() override;
    void Form_Unload() override;
    void formDress() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Asked {
        std::string run;
        Decided decided;
    };
    enum class View { Nothing, Run, Compared, Candidates, Directions, Runs };

    void wireControls();
    void wireMap();
    void fillMenu();
    [[nodiscard]] bool isOfOneRun() const { return view_ != View::Runs && view_ != View::Nothing; }

    /// False where there is no such run; the window says so.
    bool read(const std::string& run);
    void show(View view);
    [[nodiscard]] Panel panelNow() const;
    [[nodiscard]] Scene sceneNow() const;
    void showPanel();
    void showScene(bool fits);
    void showButtons();
    void compareShown();
    void showTrouble();
    [[nodiscard]] std::string textBelow() const;
    void seekCures();
    void Waiting_Timer();
    void tellStatus();
    void arrange();
    /// What is shown, for paper.
    [[nodiscard]] MapPage page() const;

    void chooseRow(int row);
    void activateRow(int row);
    void chooseStop(std::size_t stop);
    bool step(bool forward);
    void chooseHit(const Hit& hit);
    void openHit(const Hit& hit);
    void enterStop();
    void leaveStop();
    [[nodiscard]] std::size_t stopOf(const Hit& hit) const;
    [[nodiscard]] QString toldOf(const Hit& hit) const;

    void showRuns(std::vector<MappedRun> runs, const std::string& heading);
    void solveNext();
    void askNext();
    void answerAsked(Decision decision);
    void decide(Decision decision);
    void FindIt_Change();
    void find(const SearchHit& hit);
    /// Stops were placed on the map, and others have to be before anything can be saved.
    [[nodiscard]] bool isChanged() const;

    void wireStops();
    /// Shows the run as it was changed on the map, beside what is stored.
    void compareWith(ShownRun changed);
    void dropRow(int row, int before);
    void dragStop(const Hit& hit, geo::Feet to);
    void dropStop(const Hit& hit, geo::Feet to);
    void showMenu(const QPoint& at, geo::Feet place);
    void addPlacing(QMenu& menu, geo::Feet place);
    void addDetours(QMenu& menu, geo::Feet place);
    void addDetour(QMenu& menu, const QString& text, const DetourStep& step);
    /// Solves the run with these, which is then shown before and after.
    void detour(std::vector<DetourStep> steps);
    void showDetour(std::chrono::milliseconds patience);
    void forgetDetours();
    void AllStops_Click(bool on);
    void Homes_Click(bool on);
    /// The layer's homes, where it is turned on and the user may see them.
    void seekHomes(bool tell);
    void placeHomes();
    void offerCandidates(const std::string& words);
    void showCandidates(std::chrono::milliseconds patience);
    void leaveAsStored();
    void addAllStops(Scene& scene) const;
    void placeStop(std::size_t stop, geo::Feet at);

    std::unique_ptr<Ui::MapWindow> ui_;
    MapDistrict district_;
    View view_ = View::Nothing;
    MappedRun stored_;  ///< what is shown, as it was read
    ShownRun shown_;
    std::shared_ptr<const streets::DistrictStreets> drivenOn_;  ///< by the run that is shown
    std::shared_ptr<const streets::DistrictStreets> base_;      ///< that without detours
    std::vector<std::string> cures_;  ///< of its troubles; empty until they are known
    Aside<std::vector<std::string>> curing_;
    QTimer* waiting_;  ///< for what is worked out aside
    std::size_t chosenStop_ = NoStop;
    std::optional<Comparison> comparison_;
    std::vector<Candidate> candidates_;  ///< for the chosen stop
    std::size_t chosenCandidate_ = 0;
    std::vector<DetourStep> steps_;       ///< of the way that is shown
    std::vector<DetourStep> askedSteps_;  ///< of the one that is looked for
    Aside<Detoured> detouring_;
    std::string wantedPlace_;  ///< the words that they were looked for by
    Aside<std::vector<Candidate>> looking_;
    std::vector<SearchHit> allStops_;  ///< where they are shown
    std::string homesAreFor_;          ///< the user who was let see them
    std::vector<streets::Home> homes_;
    std::vector<ShownHome> shownHomes_;  ///< around what is shown
    std::vector<std::vector<geo::Feet>> oldLines_;
    std::deque<Asked> asked_;  ///< the first one is shown
    std::vector<ShownRun> runs_;
    std::size_t chosenRun_ = 0;
    std::string runsHeading_;
    std::deque<std::string> toSolve_;
    std::optional<Camera> before_;  ///< where the map was before a stop was entered
    std::string news_;              ///< what has just happened; stands in the status line
};

}  // namespace map
