#pragma once

#include <QAccessibleWidget>
#include <vector>

#include "map/window/mapview.h"

namespace map {

/// The map for a screen reader: a list whose entries are the stops, each told in one sentence.
class MapAccess : public QAccessibleWidget {
public:
    explicit MapAccess(MapView& view);
    ~MapAccess() override;

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] QAccessibleInterface* focusChild() const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;

private:
    [[nodiscard]] MapView& view() const;
    mutable std::vector<QAccessible::Id> stops_;  ///< 0 where none was asked for
};

}  // namespace map
