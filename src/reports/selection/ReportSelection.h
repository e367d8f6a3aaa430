#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/forms/timer.h"
#include "reports/preview/reportoutput.h"
#include "reports/selection/selectionintake.h"
#include "startup/forms/trappedform.h"

class QCheckBox;
class QComboBox;

namespace Ui {
class ReportSelection;
}

namespace reports {

struct Choices;

/// Asked each time anew: the caller may have searched again.
using AskRuns = std::function<RunsForReports()>;

/// Which report, how, and whether on the screen, on paper or into a file. What is chosen for a
/// report is there again the next time.
class ReportSelection : public startup::TrappedForm, public SelectionIntake {
    Q_OBJECT

public:
    explicit ReportSelection(AskRuns runs, forms::Form* owner = nullptr);
    ~ReportSelection() override;

    void caption(const std::string& text) override;
    void area(const std::string& name) override;
    void reportGroup(const std::string& group) override;
    void copies(int count) override;
    void sortField(int place, const std::string& field) override;
    void sortDirection(int place, const std::string& direction) override;
    void present() override;

    void Preview_Click();
    void PrintIt_Click();
    void ExportIt_Click();
    void Exit_Click();
    void Reports_ClickItem();
    void Options_Change();

protected:
    void Form_Load() override;
    void Form_Activate() override;
    [[nodiscard]] Message lockedMessage() const override;

private:
    void wireOptions();
    void fillReports();
    void fillSorts(const Choices& choices);
    void showOptions();
    void showRuns();
    void showConfidential();
    /// The chosen one; the group always has one.
    [[nodiscard]] const Report& report() const;
    [[nodiscard]] Choices choices() const;
    [[nodiscard]] std::vector<SortField> handedSort() const;
    bool refuseBrokenDate();
    /// The chosen report in the work tables, and what was asked; null where it is not to be had,
    /// which is told.
    [[nodiscard]] std::shared_ptr<Prepared> prepare(Request& request);
    [[nodiscard]] Format format() const;

    std::unique_ptr<Ui::ReportSelection> ui_;
    std::unique_ptr<ReportOutput> output_;
    forms::Timer Timer1;  ///< clears the status
    AskRuns runs_;
    std::string group_;
    int copies_ = 1;
    static constexpr int Sorts = 3;
    std::array<SortField, Sorts> handed_;
    std::array<std::pair<QComboBox*, QCheckBox*>, Sorts> sortBoxes_;
    std::vector<const Report*> offered_;
    bool showing_ = false;  ///< the boxes are being filled
};

}  // namespace reports
