#pragma once

#include "platform/controls/listaccess.h"
#include "runsearch/schedule/scheduleview.h"

namespace schedule {

/// The schedule for a screen reader: its entries are the bars.
class ScheduleAccess : public controls::ListAccess {
public:
    explicit ScheduleAccess(ScheduleView& view) : ListAccess(view), view_(view) {}

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QString told(int bar) const override;
    [[nodiscard]] QRect placeOf(int bar) const override;
    [[nodiscard]] int chosen() const override;

private:
    [[nodiscard]] int runOf(int bar) const;

    const ScheduleView& view_;
};

}  // namespace schedule
