#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QWhatsThis>

#include "help/about/AboutBox.h"
#include "help/viewer/guidedesk.h"
#include "platform/forms/helpport.h"
#include "platform/forms/look.h"
#include "runsearch/search/frmTarn.h"

#include "ui_frmTarn.h"

namespace runsearch {

namespace {

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
    QObject::connect(&menu, &QMenu::aboutToShow, action, [action, &button] {
        action->setEnabled(button.isEnabled() && !button.isHidden());
    });
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
    offer(*view, *ui_->WholeMinutes);
    addViews(*view);
    addFinding(*view);
    addSearches(*bar->addMenu(tr("Searches")));
    addSession(*file);
    addHelp(*bar->addMenu(tr("Help")));
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
    addLooks(view);
}

/// Read anew each time: another window may have changed it.
void frmTarn::addLooks(QMenu& view) {
    using forms::Scheme;
    auto* looks = view.addMenu(tr("Colours"));
    auto* group = new QActionGroup(looks);
    for (const auto& [scheme, text] : {std::pair{Scheme::FollowDesktop, tr("&As the Desktop")},
                                       {Scheme::Light, tr("&Light")},
                                       {Scheme::Dark, tr("&Dark")},
                                       {Scheme::HighContrast, tr("&High Contrast")}}) {
        auto* action = group->addAction(looks->addAction(text));
        action->setCheckable(true);
        on(action, &QAction::triggered, "Look_Click",
           [scheme = scheme] { forms::wantScheme(scheme); });
        connect(looks, &QMenu::aboutToShow, action,
                [action, scheme = scheme] { action->setChecked(forms::wantedScheme() == scheme); });
    }
}

void frmTarn::addHelp(QMenu& menu) {
    const auto offerPage = [&](const QString& text, const char* procedure, const char* page) {
        on(menu.addAction(text), &QAction::triggered, procedure, [page] {
            help::showGuide({page, {}});
        });
    };
    offerPage(tr("&Contents"), "Contents_Click", help::Guide::Contents);
    on(menu.addAction(tr("&Help on This Form\tF1")), &QAction::triggered, "FormHelp_Click",
       [this] { forms::askForHelp(focusWidget() == nullptr ? *this : *focusWidget()); });
    on(menu.addAction(tr("&What's This?\tShift+F1")), &QAction::triggered, "WhatsThis_Click",
       [] { QWhatsThis::enterWhatsThisMode(); });
    offerPage(tr("&Keys"), "Keys_Click", "keys");
    menu.addSeparator();
    on(menu.addAction(tr("&About")), &QAction::triggered, "About_Click",
       [this] { help::showAbout(*this); });
}

}  // namespace runsearch
