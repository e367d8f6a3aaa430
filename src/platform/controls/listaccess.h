#pragma once

#include <QAccessibleWidget>
#include <vector>

namespace controls {

/// A painted widget for a screen reader: a list of entries, each told in one sentence. Entries
/// count from 0.
class ListAccess : public QAccessibleWidget {
public:
    explicit ListAccess(QWidget& painted) : QAccessibleWidget(&painted, QAccessible::List) {}
    ~ListAccess() override;

    [[nodiscard]] int childCount() const override = 0;
    [[nodiscard]] virtual QString told(int entry) const = 0;
    /// Where it is on the screen.
    [[nodiscard]] virtual QRect placeOf(int entry) const = 0;
    /// The one entry that is chosen; -1 for none.
    [[nodiscard]] virtual int chosen() const = 0;

    [[nodiscard]] QAccessibleInterface* child(int entry) const override;
    [[nodiscard]] QAccessibleInterface* focusChild() const override { return child(chosen()); }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;

private:
    mutable std::vector<QAccessible::Id> entries_;  ///< 0 where none was asked for
};

}  // namespace controls
