#include "map/window/mapview_access.h"

#include <algorithm>

namespace map {

namespace {

constexpr int StopSide = 24;  ///< pixels of a stop's disc and what is around it

/// One stop of the map.
class StopAccess : public QAccessibleInterface {
public:
    StopAccess(MapView& view, int place) : view_(view), place_(place) {}

    [[nodiscard]] int place() const { return place_; }
    [[nodiscard]] bool isValid() const override { return place_ < view_.stopCount(); }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&view_);
    }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return isValid() && kind == QAccessible::Name ? view_.tellOf(view_.hitOfStop(place_))
                                                      : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    [[nodiscard]] QRect rect() const override {
        if (!isValid()) {
            return {};
        }
        QRect box(0, 0, StopSide, StopSide);
        box.moveCenter(view_.camera().toPixels(stop().at).toPoint());
        return {view_.mapToGlobal(box.topLeft()), box.size()};
    }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.selectable = state.focusable = true;
        state.selected = isValid() && stop().isChosen;
        state.focused = state.selected && view_.hasFocus();
        return state;
    }

private:
    [[nodiscard]] const DrawnStop& stop() const {
        const auto hit = view_.hitOfStop(place_);
        return view_.scene().runs[hit.run].stops[hit.index];
    }

    MapView& view_;
    int place_;
};

}  // namespace

MapAccess::MapAccess(MapView& view) : QAccessibleWidget(&view, QAccessible::List) {}

MapAccess::~MapAccess() {
    for (const auto stop : stops_) {
        if (stop != 0) {
            QAccessible::deleteAccessibleInterface(stop);
        }
    }
}

MapView& MapAccess::view() const { return static_cast<MapView&>(*widget()); }

int MapAccess::childCount() const { return view().stopCount(); }

QAccessibleInterface* MapAccess::child(int index) const {
    if (index < 0 || index >= childCount()) {
        return nullptr;
    }
    const auto place = static_cast<std::size_t>(index);
    if (stops_.size() <= place) {
        stops_.resize(place + 1, 0);
    }
    if (stops_[place] == 0) {
        stops_[place] = QAccessible::registerAccessibleInterface(new StopAccess(view(), index));
    }
    return QAccessible::accessibleInterface(stops_[place]);
}

QAccessibleInterface* MapAccess::focusChild() const {
    for (int i = 0; i < childCount(); ++i) {
        const auto hit = view().hitOfStop(i);
        if (view().scene().runs[hit.run].stops[hit.index].isChosen) {
            return child(i);
        }
    }
    return nullptr;
}

int MapAccess::indexOfChild(const QAccessibleInterface* child) const {
    const auto* stop = dynamic_cast<const StopAccess*>(child);
    return stop == nullptr ? -1 : stop->place();
}

}  // namespace map
