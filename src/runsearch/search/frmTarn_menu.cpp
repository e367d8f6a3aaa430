#include <QMenu>
#include <QMenuBar>
#include <QShortcut>

#include "platform/base/ports.h"
#include "runsearch/search/frmTarn.h"
#include "startup/base/applicationinfo.h"

#include "ui_frmTarn.h"

namespace runsearch {

namespace {

constexpr auto Keys =
    "F5: Find Now\n"
    "F6: between criteria and list\n"
    "Down: from a criterion into the list\n"
    "Alt+1, 2, 3: the tabs of the criteria\n"
    "Enter: opens the chosen run\n"
    "letters: go to the run whose id begins so\n"
    "Delete: deletes the chosen run\n"
    "Ctrl+A: selects every run of the list\n"
    "Ctrl+C: copies the selected rows\n"
    "Left, Right: scroll the list sideways\n"
    "Shift+F10: menu of the chosen run\n"
    "F10: menu bar";

/// The letter that presses a button, behind a tab where menus show keys.
QString withKey(const QPushButton& button) {
    const QString key = button.shortcut().toString(QKeySequence::NativeText);
    return key.isEmpty() ? button.text() : button.text() + '\t' + key;
}

/// An item that presses a button, and can be chosen where that could be.
void offer(QMenu& menu, QPushButton& button) {
    auto* action = menu.addAction(withKey(button));
    action->setToolTip(button.toolTip());
    QObject::connect(action, &QAction::triggered, &button, &QPushButton::click);
    QObject::connect(&menu, &QMenu::aboutToShow, action,
                     [action, &button] { action->setEnabled(button.isEnabled()); });
}

}  // namespace

/// The menus are the groups of the buttons, and what has a key alone. Titles have no letter of
/// their own: the form needs nearly all of them.
void frmTarn::makeMenuBar() {
    auto* bar = new QMenuBar(this);
    bar->setNativeMenuBar(false);
    auto* file = bar->addMenu(tr("File"));
    auto* view = bar->addMenu(tr("View"));
    QMenu* menu = view;
    for (int place = 0; place < ui_->actionColumn->count(); ++place) {
        QWidget* part = ui_->actionColumn->itemAt(place)->widget();
        if (const auto* group = qobject_cast<QLabel*>(part)) {
            menu = bar->addMenu(group->text());
        } else if (auto* button = qobject_cast<QPushButton*>(part)) {
            offer(button == ui_->Exit ? *file : *menu, *button);
        }
        if (part == ui_->Delete) {
            for (const auto& [action, of] : offered_) {
                if (action->text() != of->text()) {
                    menu->addAction(action);
                }
            }
        }
    }
    addViews(*view);
    addSession(*file);
    auto* help = bar->addMenu(tr("Help"));
    on(help->addAction(tr("&Keys")), &QAction::triggered, "Keys_Click",
       [] { base::MsgBox(Keys, "Keys of the Main Form", base::MsgIcon::Information); });
    on(help->addAction(tr("&About")), &QAction::triggered, "About_Click", [] {
        const auto& app = startup::applicationInfo();
        base::MsgBox(app.productName + "\n" + app.title + " " + std::to_string(app.major) + "." +
                         std::to_string(app.minor) + "." + std::to_string(app.revision),
                     "About", base::MsgIcon::Information);
    });
    layout()->setMenuBar(bar);
    on(new QShortcut(Qt::Key_F10, this), &QShortcut::activated, "F10_KeyPress",
       [bar] { bar->setActiveAction(bar->actions().front()); });
}

void frmTarn::addViews(QMenu& view) {
    view.addSeparator();
    for (int page = 0; page < ui_->RunTab->count(); ++page) {
        on(view.addAction(tr("%1\tAlt+%2").arg(ui_->RunTab->tabText(page)).arg(page + 1)),
           &QAction::triggered, "View_Click", [this, page] { ui_->RunTab->setCurrentIndex(page); });
    }
    on(view.addAction(tr("List of Runs\tF6")), &QAction::triggered, "View_Click",
       &frmTarn::enterList);
}

}  // namespace runsearch
