#pragma once

#include <cstddef>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/forms/timer.h"
#include "runsearch/log/runlogreader.h"
#include "startup/forms/trappedform.h"

namespace Ui {
class RunLogInquiry;
}

namespace runsearch {

/// The history of changes to runs. A log of a million entries is read as the planner scrolls: the
/// first ones at once, the rest in slices between which the form stays at hand. Sorting and the End
/// key read on to the last entry.
class RunLogInquiry : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit RunLogInquiry(forms::Form* owner = nullptr);
    ~RunLogInquiry() override;

    /// Searches for all entries of a run; call showForm() then.
    void ask(const std::string& run);

    void Search_Click();
    void Exit_Click();
    void LogList_ClickColumn(int column);

protected:
    void Form_Load() override;
    void Form_Unload() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void Bld_DropDown();

    void wireFilters();
    void wireList();

    [[nodiscard]] RunLogFilters filters() const;
    bool refuse(const RunLogFilters& asked);
    void search(const RunLogFilters& asked);
    void forgetSearch();

    [[nodiscard]] bool readsToEnd() const { return toLastEntry_ || toSortBy_; }
    [[nodiscard]] bool wantsMore() const;
    void readOn();
    void readToEnd();
    void readSlice();
    void entriesAreAllListed();
    void sortAll(int column);
    void showSorted();
    void showCount();

    std::unique_ptr<Ui::RunLogInquiry> ui_;
    std::string askedRun_;                  ///< the run that the log was opened for
    std::unique_ptr<RunLogReader> reader_;  ///< null while nothing has been searched for
    table::TextTable read_;                 ///< entries that are not listed yet
    forms::Timer readTimer_;
    bool toLastEntry_ = false;
    std::optional<int> toSortBy_;
    std::future<std::vector<std::size_t>> sorting_;  ///< the order of all entries, in the making
};

}  // namespace runsearch
