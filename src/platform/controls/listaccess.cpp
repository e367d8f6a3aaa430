#include "platform/controls/listaccess.h"

namespace controls {

namespace {

class EntryAccess : public QAccessibleInterface {
public:
    EntryAccess(const ListAccess& list, QWidget& painted, int entry)
        : list_(list), painted_(painted), entry_(entry) {}

    [[nodiscard]] int entry() const { return entry_; }
    [[nodiscard]] bool isValid() const override { return entry_ < list_.childCount(); }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&painted_);
    }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return isValid() && kind == QAccessible::Name ? list_.told(entry_) : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    [[nodiscard]] QRect rect() const override {
        return isValid() ? list_.placeOf(entry_) : QRect();
    }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.selectable = state.focusable = true;
        state.selected = isValid() && list_.chosen() == entry_;
        state.focused = state.selected && painted_.hasFocus();
        return state;
    }

private:
    const ListAccess& list_;
    QWidget& painted_;
    int entry_;
};

}  // namespace

ListAccess::~ListAccess() {
    for (const auto entry : entries_) {
        if (entry != 0) {
            QAccessible::deleteAccessibleInterface(entry);
        }
    }
}

QAccessibleInterface* ListAccess::child(int entry) const {
    if (entry < 0 || entry >= childCount()) {
        return nullptr;
    }
    const auto place = static_cast<std::size_t>(entry);
    if (entries_.size() <= place) {
        entries_.resize(place + 1, 0);
    }
    if (entries_[place] == 0) {
        entries_[place] =
            QAccessible::registerAccessibleInterface(new EntryAccess(*this, *widget(), entry));
    }
    return QAccessible::accessibleInterface(entries_[place]);
}

int ListAccess::indexOfChild(const QAccessibleInterface* child) const {
    const auto* entry = dynamic_cast<const EntryAccess*>(child);
    return entry == nullptr ? -1 : entry->entry();
}

}  // namespace controls
