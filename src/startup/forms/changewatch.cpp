#include "startup/forms/changewatch.h"

#include <QMetaMethod>
#include <QPointer>
#include <QStringList>
#include <QSysInfo>
#include <algorithm>

#include "platform/ado/session.h"
#include "platform/base/text.h"
#include "platform/forms/application.h"
#include "platform/store/open/open.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/session.h"

namespace startup {

namespace {

/// "ANN on DESK3"
std::string thisProgram() {
    const std::string machine = QSysInfo::machineHostName().toStdString();
    return gCommandLine + (machine.empty() ? "" : " on " + machine);
}

}  // namespace

ChangeWatch& ChangeWatch::instance() {
    static QPointer<ChangeWatch> one;
    if (one == nullptr) {
        one = new ChangeWatch(&forms::Application::instance());
    }
    return *one;
}

ChangeWatch::ChangeWatch(QObject* parent) : QObject(parent) {
    constexpr int OftenMs = 400;
    timer_.setInterval(OftenMs);
    connect(&timer_, &QTimer::timeout, this, [this] {
        auto& application = forms::Application::instance();
        if (!application.inProcedure()) {
            application.guarded([this] { look(); });
        }
    });
}

/// What is written from now on is told to the form, even before the first look.
void ChangeWatch::connectNotify(const QMetaMethod&) {
    timer_.start();
    try {
        static_cast<void>(watchOnSession());
    } catch (const store::StoreError&) {  // tried again at the next look
    }
}

/// The session's database may have been closed and another one opened since, and the first form is
/// there before it is known who works.
store::Watch* ChangeWatch::watchOnSession() {
    const auto session = gcnRouting ? gcnRouting->session() : nullptr;
    if (session == nullptr || session != watched_.lock() || user_ != gCommandLine) {
        watch_.reset();
        watched_ = session;
        user_ = gCommandLine;
        if (session != nullptr) {
            watch_ = store::watch(databasePath(gDataPath, "routing.mdb"), session->database(),
                                  thisProgram());
            watch_->open(open_);
        }
    }
    return watch_.get();
}

void ChangeWatch::look() {
    if (!isSignalConnected(QMetaMethod::fromSignal(&ChangeWatch::changed))) {
        timer_.stop();
        return;
    }
    try {
        if (store::Watch* watch = watchOnSession(); watch != nullptr) {
            if (const auto changes = watch->look(); changes.any) {
                emit changed(changes);
            }
            lookForOthers(*watch);
        }
    } catch (const store::StoreError&) {  // the next action of the planner meets it, too
    }
}

/// Its own time: the hint may come late.
void ChangeWatch::lookForOthers(store::Watch& watch) {
    constexpr int EachLooks = 3;
    if (open_.empty() || ++looks_ % EachLooks != 0) {
        return;
    }
    QStringList names;
    for (const std::string& name : watch.others()) {
        names += QString::fromStdString(name);
    }
    if (const QString others = names.join(", "); others != others_) {
        others_ = others;
        emit othersOpen(others_);
    }
}

void ChangeWatch::open(const std::string& run) {
    const std::string key = base::uppered(base::trim(run));
    if (key == open_) {
        return;
    }
    open_ = key;
    others_.clear();
    emit othersOpen(others_);
    if (watch_ != nullptr) {
        watch_->open(open_);
    }
}

bool concerns(const store::Changes& changes, std::string_view run) {
    return changes.any &&
           (!changes.areAllTold || std::ranges::any_of(changes.rows, [&](const auto& row) {
               return base::equalsNoCase(base::codeOf(row.value), base::codeOf(run));
           }));
}

}  // namespace startup
