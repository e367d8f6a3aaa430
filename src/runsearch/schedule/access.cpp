#include "runsearch/schedule/access.h"

#include "platform/controls/qtext.h"
#include "runsearch/schedule/telling.h"

namespace schedule {

int ScheduleAccess::childCount() const {
    return view_.chart() == nullptr ? 0 : static_cast<int>(view_.chart()->bars.size());
}

QString ScheduleAccess::told(int bar) const {
    return controls::toQt(spokenText(cardOf(*view_.plan(), *view_.chart(), runOf(bar))));
}

QRect ScheduleAccess::placeOf(int bar) const {
    const auto local = view_.barRect(runOf(bar));
    return {view_.viewport()->mapToGlobal(local.topLeft()), local.size()};
}

int ScheduleAccess::chosen() const {
    const auto* chart = view_.chart();
    const int run = view_.selected();
    return chart == nullptr || run == None ? -1 : chart->barOf[static_cast<std::size_t>(run)];
}

int ScheduleAccess::runOf(int bar) const {
    return view_.chart()->bars[static_cast<std::size_t>(bar)].run;
}

}  // namespace schedule
