#include "map/window/mapview_access.h"

namespace map {

QString MapAccess::told(int stop) const { return view_.tellOf(view_.hitOfStop(stop)); }

QRect MapAccess::placeOf(int stop) const {
    constexpr int StopSide = 24;  // pixels of a stop's disc and what is around it
    QRect box(0, 0, StopSide, StopSide);
    box.moveCenter(view_.camera().toPixels(drawn(stop).at).toPoint());
    return {view_.mapToGlobal(box.topLeft()), box.size()};
}

int MapAccess::chosen() const {
    for (int stop = 0; stop < childCount(); ++stop) {
        if (drawn(stop).isChosen) {
            return stop;
        }
    }
    return -1;
}

const DrawnStop& MapAccess::drawn(int stop) const {
    const auto hit = view_.hitOfStop(stop);
    return view_.scene().runs[hit.run].stops[hit.index];
}

}  // namespace map
