#include "reports/preview/savedfilebar.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QPushButton>
#include <QUrl>

#include "platform/base/ports.h"
#include "platform/controls/elidedlabel.h"
#include "platform/forms/application.h"

namespace reports {

namespace {

constexpr auto NotOpenedTitle = "Not Opened";
constexpr auto NotOpened =
    "Oops, the desktop has no program for this kind of file.  The file was saved all the same.";

void openByDesktop(const QUrl& what) {
    if (!QDesktopServices::openUrl(what)) {
        base::MsgBox(NotOpened, NotOpenedTitle, base::MsgIcon::Information);
    }
}

QPushButton* button(const char* name, const QString& text, const QString& tip, QWidget* parent) {
    auto* made = new QPushButton(text, parent);
    made->setObjectName(name);
    made->setToolTip(tip);
    made->setAutoDefault(false);
    return made;
}

}  // namespace

SavedFileBar::SavedFileBar(QWidget* parent)
    : QFrame(parent), told_(new controls::ElidedLabel(this)) {
    told_->setObjectName("SavedFile");
    auto* opens = button("OpenFile", tr("&Open"), tr("Opens the file with its own program."), this);
    auto* shows =
        button("ShowInFolder", tr("Sho&w in Folder"), tr("Shows the file in its folder."), this);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(told_, 1);
    row->addWidget(opens);
    row->addWidget(shows);
    forms::on(opens, &QPushButton::clicked, this, [this] { openFile(); });
    forms::on(shows, &QPushButton::clicked, this, [this] { showInFolder(); });
    hide();
}

void SavedFileBar::offer(const QString& path) {
    path_ = path;
    told_->setText(tr("Saved as %1").arg(path));
    show();
}

void SavedFileBar::clear() {
    path_.clear();
    hide();
}

void SavedFileBar::openFile() {
    if (!path_.isEmpty()) {
        openByDesktop(QUrl::fromLocalFile(path_));
    }
}

void SavedFileBar::showInFolder() {
    if (path_.isEmpty()) {
        return;
    }
    auto call = QDBusMessage::createMethodCall("org.freedesktop.FileManager1",
                                               "/org/freedesktop/FileManager1",
                                               "org.freedesktop.FileManager1", "ShowItems");
    call << QStringList{QUrl::fromLocalFile(path_).toString()} << QString();
    auto* watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    const QUrl folder = QUrl::fromLocalFile(QFileInfo(path_).absolutePath());
    forms::on(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, folder] {
        watcher->deleteLater();
        if (watcher->isError()) {
            openByDesktop(folder);
        }
    });
}

}  // namespace reports
