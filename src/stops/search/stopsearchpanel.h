#pragma once

#include <QTimer>
#include <QWidget>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "stops/search/foundstops.h"

namespace controls {
class MultiColumnList;
}

namespace Ui {
class StopSearchPanel;
}

namespace stops {

/// The stop search of the forms that need one: its criteria, its two buttons and its two lists, one
/// for plain stops and one for trip-type records. Long lists fill while the form goes on; what is
/// selected and in view stays. Procedures are trapped as those of the form that the panel is on.
class StopSearchPanel : public QWidget {
    Q_OBJECT

public:
    explicit StopSearchPanel(QWidget* parent = nullptr);
    ~StopSearchPanel() override;

    /// Fills the combos from the code tables. Before the first search.
    void loadCodes();
    /// What Reset goes back to: trip types, the free ones of this trip type where one is given.
    void startFrom(const std::string& tripType);

    void Search();
    /// Repeats a search made before, keeping the place in the list; nothing where there was none.
    void searchAgain();
    /// Leaves out what the list has not yet; called before anything is written and on unloading.
    void stopFilling();

    /// The selected rows of the list in view, in the order shown.
    [[nodiscard]] std::vector<ChosenStop> selected() const;
    [[nodiscard]] int selectedCount() const;
    void selectAll();
    /// The criteria below each other, scrolling, for a form that has little width for its font.
    void setLean(bool lean);

signals:
    void selectionCountChanged(int count);
    /// Double click or Enter on a row of the list; the row is selected.
    void rowActivated();

private:
    void makeNarrow();
    void fitCriteria();
    void wire();
    void cmdReset_Click();
    void chkTRIPTYPES_Click();
    void chkUnassigned_Click();
    void Load_lstStop();
    void Load_lstSTOP_TRIPTYPE();

    bool eventFilter(QObject* watched, QEvent* event) override;

    [[nodiscard]] std::string form() const;
    void enableTripCriteria();
    [[nodiscard]] StopSearchCriteria criteria() const;
    [[nodiscard]] controls::MultiColumnList& list() const;
    void ask(const StopSearchCriteria& asked);
    void fill(controls::MultiColumnList& list);
    [[nodiscard]] table::TextTable readSlice(int milliseconds, table::TextTable table);
    void fillOn();
    void goOnFilling();
    void finish();
    void sortAsBefore();
    [[nodiscard]] ChosenStop stopAt(int row) const;
    void goOnAt(int row, const ChosenStop& former);
    void showCount();
    [[nodiscard]] QString studentsOfSelected() const;

    std::unique_ptr<Ui::StopSearchPanel> ui_;
    std::string startTripType_;
    std::unique_ptr<FoundStops> found_;
    std::optional<StopSearchCriteria> asked_;  ///< the search flag: what to repeat
    std::map<const controls::MultiColumnList*, std::vector<table::SortBy>> sorts_;
    bool lean_ = false;
    QTimer turn_;  ///< gives the event loop its turn between two slices
};

}  // namespace stops
