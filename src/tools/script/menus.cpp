#include "tools/script/menus.h"

#include <QMenuBar>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

#include <fmt/format.h>

#include "platform/controls/multicolumnlist.h"
#include "platform/controls/qtext.h"
#include "tools/script/adapter.h"

namespace script {

namespace {

using controls::toQt;

QString captionOf(const QAction& entry) { return entry.text().section('\t', 0, 0).remove('&'); }

/// The menu that a list or a button has.
QMenu& menuOf(QWidget& owner) {
    if (auto* list = qobject_cast<controls::MultiColumnList*>(&owner)) {
        auto* menu = new QMenu(list);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        list->fillMenu(*menu);
        return *menu;
    }
    const auto* tool = qobject_cast<QToolButton*>(&owner);
    const auto* button = qobject_cast<QPushButton*>(&owner);
    QMenu* menu = tool != nullptr ? tool->menu() : button != nullptr ? button->menu() : nullptr;
    if (menu == nullptr) {
        throw ControlError("has no menu");
    }
    return *menu;
}

QAction& entryNamed(const QList<QAction*>& entries, const QString& name) {
    const auto found = std::ranges::find_if(entries, [&](const QAction* entry) {
        return entry->isVisible() && !entry->isSeparator() && captionOf(*entry).startsWith(name);
    });
    if (found == entries.end()) {
        throw ControlError(fmt::format("has no entry \"{}\"", controls::fromQt(name)));
    }
    if (!(*found)->isEnabled()) {
        throw ControlError(
            fmt::format("has an entry \"{}\", which is disabled", controls::fromQt(name)));
    }
    return **found;
}

}  // namespace

MenuChoice chosenFrom(QWidget& owner, const std::string& path) {
    const auto* bar = owner.findChild<QMenuBar*>(QString(), Qt::FindDirectChildrenOnly);
    MenuChoice choice{nullptr, bar == nullptr ? &menuOf(owner) : nullptr};
    for (const QString& name : toQt(path).split(QStringLiteral(" > "), Qt::SkipEmptyParts)) {
        if (choice.menu != nullptr) {
            emit choice.menu->aboutToShow();
        } else if (choice.entry != nullptr) {
            break;
        }
        choice.entry =
            &entryNamed(choice.menu == nullptr ? bar->actions() : choice.menu->actions(), name);
        choice.menu = choice.entry->menu();
    }
    if (choice.entry == nullptr && choice.menu == nullptr) {
        throw ControlError("has a menu bar, of which an entry is needed");
    }
    return choice;
}

}  // namespace script
