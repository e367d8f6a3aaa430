#pragma once

#include "map/window/mapview.h"
#include "platform/controls/listaccess.h"

namespace map {

/// The map for a screen reader: its entries are the stops.
class MapAccess : public controls::ListAccess {
public:
    explicit MapAccess(MapView& view) : ListAccess(view), view_(view) {}

    [[nodiscard]] int childCount() const override { return view_.stopCount(); }
    [[nodiscard]] QString told(int stop) const override;
    [[nodiscard]] QRect placeOf(int stop) const override;
    [[nodiscard]] int chosen() const override;

private:
    [[nodiscard]] const DrawnStop& drawn(int stop) const;

    MapView& view_;
};

}  // namespace map
