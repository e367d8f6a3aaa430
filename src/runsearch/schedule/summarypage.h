#pragma once

#include <QWidget>

#include "runsearch/schedule/plan.h"
#include "runsearch/schedule/summaries.h"

class QLabel;

namespace controls {
class MultiColumnList;
}

namespace schedule {

class BusPlot;
class TotalRow;

/// The runs of a chart summed up by what they have in common: a list, the total under it, and the
/// buses in use over the day of the chosen row before those of all.
class SummaryPage : public QWidget {
    Q_OBJECT

public:
    explicit SummaryPage(QWidget* parent = nullptr);

    /// The chosen row and the order stay where they can.
    void showSummaries(const Plan& plan, Summaries summaries, Grouping grouping);
    [[nodiscard]] controls::MultiColumnList& list() { return *list_; }
    [[nodiscard]] const Summaries& summaries() const { return summaries_; }
    /// The group that a row of the list stands for.
    [[nodiscard]] const Summary& groupOf(int row) const;

private:
    void showChosen();

    const Plan* plan_ = nullptr;
    Summaries summaries_;
    controls::MultiColumnList* list_;
    TotalRow* total_;
    BusPlot* plot_;
    QLabel* foot_;
};

}  // namespace schedule
