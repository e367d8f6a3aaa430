#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "runsearch/schedule/chart.h"
#include "runsearch/schedule/pages.h"
#include "runsearch/schedule/plan.h"
#include "runsearch/schedule/sketch.h"
#include "runsearch/schedule/sketchchecks.h"
#include "runsearch/schedule/summaries.h"
#include "startup/forms/trappedform.h"

namespace Ui {
class frmRunSchdl;
}

namespace schedule {

/// What the schedule asks of the form that holds the run list.
struct RunListPort {
    std::function<std::string()> chosen;                 ///< the run chosen there; "" for none
    std::function<void(const std::string& run)> choose;  ///< where the list has it
    std::function<void(const std::string& run)> edit;    ///< opens the editor
};

/// The time-line of the runs that the last search found, and their summaries. It reads them anew
/// when it becomes active after something was changed, and on F5.
class frmRunSchdl : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit frmRunSchdl(RunListPort list, forms::Form* owner = nullptr);
    ~frmRunSchdl() override;

    /// The planner has chosen another run in the list.
    void follow(const std::string& run);
    /// The run list was filled anew.
    void listChanged();

    void PrintIt_Click();
    void ExportIt_Click();
    void Exit_Click();
    void Layout_Click();
    void Find_Change();
    void CollapseAll_Click();
    void NextProblem_Click();
    void Fit_Click();
    void ScheduleTab_Click();
    void UndoSketch_Click();
    void ThrowAway_Click();
    void ApplySketch_Click();
    void Reload();

protected:
    void Form_Load() override;
    void Form_Activate() override;
    bool Form_QueryUnload() override;

private:
    void wireControls();
    void wireView();
    void wireKeys();
    void wireSketch();
    void read();
    void showSketch();
    void layOutAnew();
    void showCounts();
    void showSummary();
    void toggleSchool(int school);
    void showMenu(const QPoint& at);
    void editRun(int run);
    void findNext();
    [[nodiscard]] std::string selectionText() const;
    [[nodiscard]] Pages pages() const;
    [[nodiscard]] const ScheduledRun* selectedRun() const;

    std::unique_ptr<Ui::frmRunSchdl> ui_;
    RunListPort list_;
    std::string readSql_;  ///< what the plan was read by
    bool isStale_ = false;
    /// With the sketch where there is one.
    [[nodiscard]] const Plan& plan() const { return sketched_ ? *sketched_ : stored_; }
    [[nodiscard]] MoveChecks checksOf(const Drag& drag);
    void applyMoves(const std::vector<Move>& moves);
    [[nodiscard]] std::optional<Seconds> travelOf(std::int32_t from, std::int32_t to);

    Plan stored_;
    std::optional<Plan> sketched_;
    Sketch sketch_;
    std::optional<SketchChecks> checks_;  ///< of what is read now
    std::map<std::pair<std::int32_t, std::int32_t>, std::optional<Seconds>> travel_;
    Chart chart_;
    Layout layout_;
};

}  // namespace schedule
