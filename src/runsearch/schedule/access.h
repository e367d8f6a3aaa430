#pragma once

#include <QAccessibleWidget>
#include <vector>

#include "runsearch/schedule/scheduleview.h"

namespace schedule {

/// The schedule for a screen reader: a list whose entries are the bars, each told in one sentence.
class ScheduleAccess : public QAccessibleWidget {
public:
    explicit ScheduleAccess(ScheduleView& view);
    ~ScheduleAccess() override;

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] QAccessibleInterface* focusChild() const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;

private:
    [[nodiscard]] const ScheduleView& view() const;
    mutable std::vector<QAccessible::Id> bars_;  ///< 0 where none was asked for
};

}  // namespace schedule
