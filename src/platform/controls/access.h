#pragma once

#include <QAccessibleWidget>

namespace controls {

/// Has screen readers meet each widget of a class as the Access that is made of it.
template <class Widget, class Access>
void makeAccessible() {
    static const bool known = [] {
        QAccessible::installFactory([](const QString&, QObject* object) -> QAccessibleInterface* {
            auto* widget = qobject_cast<Widget*>(object);
            return widget == nullptr ? nullptr : new Access(*widget);
        });
        return true;
    }();
    (void)known;
}

/// A picture that its accessible name puts in words.
class PictureAccess : public QAccessibleWidget {
public:
    explicit PictureAccess(QWidget& picture) : QAccessibleWidget(&picture, QAccessible::Graphic) {}
};

}  // namespace controls
