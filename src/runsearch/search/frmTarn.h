#pragma once

#include <QJsonObject>
#include <QStringList>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "groupops/base/runselection.h"
#include "platform/forms/timer.h"
#include "reports/selection/selectionintake.h"
#include "runedit/editor/runsequence.h"
#include "runsearch/search/changedruns.h"
#include "runsearch/search/listplace.h"
#include "runsearch/search/runbuttons.h"
#include "runsearch/search/runsearchquery.h"
#include "startup/forms/changednote.h"
#include "startup/forms/trappedform.h"

namespace controls {
class TimeBox;
}  // namespace controls

class QAction;
class QLineEdit;
class QMenu;
class QPushButton;

namespace Ui {
class frmTarn;
}

namespace runsearch {

class FinderBox;

/// The main form: finds runs by the criteria on its tabs and starts every action on the runs found.
/// The chosen run is in `Tarn`; every action on one run goes to it.
class frmTarn : public startup::TrappedForm,
                public groupops::RunSelection,
                public runedit::RunSequence {
    Q_OBJECT

public:
    frmTarn();
    ~frmTarn() override;

    void cmdSearch_Click();
    void cmdReset_Click();
    void cmdNew_Click();
    void Edit_Click();
    void Delete_Click();
    void PrintIt_Click();
    void TimeLine_Click();
    void ChangeBell_Click();
    void GroupChange_Click();
    void GroupSolve_Click();
    void MergeRuns_Click();
    void Map_Click();
    void Log_Click();
    void DeadHead_Click();
    void SelectAll_Click();
    void WholeMinutes_Click();
    void Exit_Click();
    void LogOff_Click();
    void SwitchDistrict_Click();

    void UseRoute_Click();
    void SearchStops_Click();
    void Search_Stops_TripType_Click();

    void cmbEmployee_Click();
    void cmbEmployee_LostFocus();
    void cmbVehicle_Click();
    void cmbVehicle_LostFocus();
    void cmbAid_Click();
    void cmbAid_LostFocus();

    void SaveSearch_Click();
    void FindRun_Click(const std::string& run);
    void FindRun_Timer();

    void RunList_ClickColumn(int column);
    void RunList_ClickItem();
    void RunList_DblClick();

    [[nodiscard]] std::vector<std::string> selectedRuns() const override;
    void searchAgain() override;

    [[nodiscard]] int placeOf(const std::string& run) const override;
    [[nodiscard]] int count() const override;
    std::string choose(int place) override;

protected:
    void Form_Load() override;
    void Form_Activate() override;
    bool Form_QueryUnload() override;
    void formDress() override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Three columns of criteria, two, or one, which scrolls.
    enum class Criteria { Wide, Narrow, Lean };

    static constexpr auto Module = "frmTarn";  ///< what the error trap calls it

    void wireCriteria();
    void wireRoute();
    void wireButtons();
    void wireRunList();
    void wireMenu();
    void wireKeys();
    void makeMenuBar();
    void addViews(QMenu& view);
    void addSession(QMenu& file);
    void addHelp(QMenu& menu);
    void addLooks(QMenu& view);

    void wireSearches();
    void addSearches(QMenu& menu);
    void fillSearches(QMenu& menu);
    [[nodiscard]] QString askSearchName(const QString& title, const QString& former);
    void renameSearch(const QString& name);
    void useSearch(const QString& name);
    [[nodiscard]] QJsonObject criteriaToSave() const;
    QStringList showSaved(const QJsonObject& saved);
    [[nodiscard]] std::vector<QLineEdit*> typedCriteria() const;

    void makeFinder();
    void addFinding(QMenu& view);
    void enterFinder();

    [[nodiscard]] RunSearchCriteria criteria() const;
    [[nodiscard]] bool isFilled(const controls::TimeBox& box) const;
    [[nodiscard]] TimeRange range(const controls::TimeBox& from, const controls::TimeBox& to) const;
    bool refuseBrokenTimes();
    /// The filled ends of time ranges that leave the rest of their minute out.
    [[nodiscard]] std::vector<controls::TimeBox*> endsWithinMinutes() const;
    bool refuseUnknownRouteKeys();
    void search(const RunSearchQuery& query, const RunSearchCriteria& asked);
    void refreshRunList(ListPlace::WhenGone whenGone = ListPlace::WhenGone::NoneChosen);
    [[nodiscard]] std::string chosenRun() const;
    /// Opens the chosen run in the editor; false where none is chosen or it is gone, which is told.
    bool openChosenRun(const char* noneChosen);
    bool refuseMissingRun(const std::string& run, const char* noneChosen);
    void tellRunIsGone(const std::string& run);
    bool chooseRun(const std::string& run);
    [[nodiscard]] bool isHiddenByFilter(const std::string& run) const;
    /// Asks where a filter hides runs that the action will take, too.
    [[nodiscard]] bool takesHiddenRuns(const QPushButton& action) const;
    void editRun(const std::string& run);

    void emptyTimes();
    void showButtons();
    void showFilledCriteria();
    void showSelectedCount();
    void followFilter();
    void showChosenRun();
    void showToResolve();
    void watchRuns();
    void lookAtOthers(const store::Changes& changes);
    void CompareRuns_Timer();
    void showChangedRuns();
    void explainEmptyList(const QString& otherwise);
    void enterList();
    void enterCriteria();
    void dress();
    void keepPlaceOfChoice();
    void followPage();
    void arrangeCriteria();
    void arrangeHeading();
    void arrangeRunPage();
    void arrangeSchoolPage();
    void arrangeRoutePage();
    void stretchNames();

    std::unique_ptr<Ui::frmTarn> ui_;
    RunButtons buttons_;
    reports::RunsForReports found_;  ///< by the last search that found any
    /// What the menus offer besides, as enabled as its button.
    std::vector<std::pair<QAction*, QPushButton*>> offered_;
    /// What an empty time box shows; a box with any other text is a criterion.
    std::string EmptyTimeText;
    std::optional<Criteria> arranged_;
    QWidget* headingEnd_ = nullptr;  ///< the district's name and what finds a run
    FinderBox* finder_ = nullptr;
    forms::Timer findTurn_;  ///< reads for it
    ChangedRuns changedRuns_;
    startup::ChangedNote* changedNote_ = nullptr;
    forms::Timer compareTurn_;
};

}  // namespace runsearch
