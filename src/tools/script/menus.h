#pragma once

#include <string>

class QMenu;
class QAction;
class QWidget;

namespace script {

/// The menu of a list's right click or of a button, or the one that belongs to an entry of it or of
/// a form's menu bar; null where the entry does something itself. The entry goes by its captions or
/// their beginnings, apart by " > ". Throws ControlError where there is none, or one that a user
/// could not choose now.
struct MenuChoice {
    QAction* entry = nullptr;
    QMenu* menu = nullptr;
};
[[nodiscard]] MenuChoice chosenFrom(QWidget& owner, const std::string& path);

}  // namespace script
