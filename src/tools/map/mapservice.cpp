#include "tools/map/mapservice.h"

#include <QCryptographicHash>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QTimer>
#include <filesystem>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/dde/dbustransport.h"
#include "runedit/map/runanswer.h"
#include "tools/map/results.h"

namespace tools::map {

namespace {

constexpr MapService::Milliseconds Moment{100};

bool isRunScript(const std::string& script) { return script == "StartRun" || script == "SolveRun"; }

[[noreturn]] void refuseRequest(const std::string& why) {
    throw base::RunTimeError(base::errors::InvalidProcedureCall, why);
}

/// The run that a request names last.
std::string runIn(const runedit::MapRequest& request) {
    const auto* run =
        request.arguments.empty() ? nullptr : std::get_if<std::string>(&request.arguments.back());
    if (run == nullptr) {
        refuseRequest(request.script + " names no run.");
    }
    return *run;
}

/// The program folder whose files a request names; blank where it names none.
std::string folderIn(const runedit::MapRequest& request) {
    for (const auto& argument : request.arguments) {
        if (const auto* text = std::get_if<std::string>(&argument)) {
            return text->substr(0, text->rfind('/') + 1);
        }
    }
    return "";
}

/// A folder may be reached on several ways.
QString nameFor(const std::string& folder) {
    std::error_code error;
    const auto path = std::filesystem::weakly_canonical(folder, error).string();
    const auto hash = QCryptographicHash::hash(QByteArray::fromStdString(error ? folder : path),
                                               QCryptographicHash::Sha1);
    return QString::fromStdString(dde::busName("ArcView")) + QStringLiteral(".d") +
           QString::fromLatin1(hash.toHex());
}

}  // namespace

MapService::MapService(ado::Connection& routing, runedit::WorkFiles files, Manner manner)
    : routing_(routing), files_(std::move(files)), manner_(std::move(manner)) {}

QString MapService::ownName() const { return nameFor(files_.path("")); }

QString MapService::introspect(const QString&) const {
    return QStringLiteral(
        "<interface name=\"local.dde.Topic\"><method name=\"Execute\">"
        "<arg name=\"command\" type=\"s\" direction=\"in\"/></method></interface>");
}

bool MapService::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.member() != QLatin1String("Execute") || message.signature() != QLatin1String("s")) {
        return false;
    }
    const std::string command = message.arguments().value(0).toString().toStdString();
    manner_.tell("Asked: " + command);
    try {
        const auto request = runedit::requestInCommand(command);
        if (!request) {
            refuseRequest("This is no request: " + command);
        }
        if (passOn(*request, message, connection)) {
            return true;
        }
        take(*request);
        if (manner_.fault != Fault::Silence || !isRunScript(request->script)) {
            connection.send(message.createReply());
        }
    } catch (const std::exception& error) {
        manner_.tell(std::string("Refused: ") + error.what());
        connection.send(message.createErrorReply(QDBusError::Failed, error.what()));
    }
    return true;
}

bool MapService::passOn(const runedit::MapRequest& request, const QDBusMessage& message,
                        const QDBusConnection& connection) {
    const auto folder = folderIn(request);
    if (folder.empty() || nameFor(folder) == ownName()) {
        return false;
    }
    auto passed = QDBusMessage::createMethodCall(nameFor(folder), message.path(), QString(),
                                                 message.member());
    passed.setAutoStartService(false);
    passed.setArguments(message.arguments());
    auto* answer = new QDBusPendingCallWatcher(connection.asyncCall(passed), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [=] {
        const auto reply = answer->reply();
        const bool isThere =
            answer->error().name() != QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner");
        const auto why = isThere ? answer->error().message()
                                 : QString::fromStdString(fmt::format(
                                       "No map of the district in {} is running.", folder));
        connection.send(reply.type() == QDBusMessage::ErrorMessage
                            ? message.createErrorReply(QDBusError::Failed, why)
                            : message.createReply());
        answer->deleteLater();
    });
    return true;
}

void MapService::take(const runedit::MapRequest& request) {
    if (isRunScript(request.script)) {
        takeRun(runIn(request), request.script == "StartRun");
    } else if (request.script == "ShowMap") {
        onScreen([run = runIn(request)](const Screen& screen) { screen.show(run); });
    } else if (request.script == "Show.ShowPoints") {
        onScreen([](const Screen& screen) { screen.showPoints(); });
    } else if (request.script == "CloseStreets") {
        closeStreets(request);
    } else {
        refuseRequest("There is no script " + request.script + ".");
    }
}

const DistrictStreets& MapService::streets() {
    if (!streets_) {
        streets_ = manner_.openStreets("");
    }
    return streets_;
}

/// The list may have been edited since: it is read each time.
void MapService::closeStreets(const runedit::MapRequest& request) {
    const auto* closed =
        request.arguments.empty() ? nullptr : std::get_if<std::string>(&request.arguments.back());
    streets_ = manner_.openStreets(closed == nullptr ? "" : *closed);
    for (const auto& remark : streets_->remarks()) {
        manner_.tell(remark);
    }
    onScreen([streets = streets_](const Screen& screen) { screen.drive(streets); });
}

void MapService::onScreen(const std::function<void(const Screen&)>& step) {
    if (manner_.screen) {
        QTimer::singleShot(0, this, [this, step] { step(*manner_.screen); });
    }
}

void MapService::takeRun(const std::string& run, bool isShown) {
    if (manner_.fault == Fault::Refuse) {
        refuseRequest("The street network is not loaded.");
    }
    if (manner_.fault == Fault::Silence) {
        return;
    }
    const auto request = requestForRun(files::read(files_.path(runedit::workfile::Runs)), run);
    const auto job = std::make_shared<Job>(request, files_.stopExport(run), streets(),
                                           rightSideStops(routing_, run));
    if (manner_.fault == Fault::Die) {
        QTimer::singleShot(manner_.work, this, [this, job] { manner_.end(); });
    } else {
        QTimer::singleShot(manner_.work, this, [this, job, isShown] { finish(job, isShown); });
    }
}

void MapService::finish(const std::shared_ptr<Job>& job, bool isShown) {
    if (!isShown || !manner_.screen || !manner_.screen->asksFirst()) {
        return answer(job);
    }
    manner_.screen->ask(job->solved.id(),
                        [this, job](bool taken) { taken ? answer(job) : keep(job); });
}

/// The run is as the planner wants it: that is the answer.
void MapService::keep(const std::shared_ptr<Job>& job) {
    orFail(job, [&] { tellDone(job, "Kept: " + job->solved.id()); });
}

void MapService::answer(const std::shared_ptr<Job>& job) {
    orFail(job, [&] {
        const auto& found = job->solved.solution();
        writeResults(routing_, job->solved);
        tellDone(job, fmt::format("Solved: {}, {} stops, {} miles", job->solved.id(),
                                  found.timedStops, found.totalMiles));
        onScreen([id = job->solved.id()](const Screen& screen) { screen.saved(id); });
    });
}

void MapService::orFail(const std::shared_ptr<Job>& job, const std::function<void()>& step) {
    try {
        step();
    } catch (const std::exception& error) {
        manner_.tell(fmt::format("Failed: {}: {}", job->solved.id(), error.what()));
        holdOn(job);
    }
}

/// Another run's answer is left to its reader for a moment.
void MapService::tellDone(const std::shared_ptr<Job>& job, const std::string& news) {
    const auto& run = job->solved.id();
    if (runedit::isUnreadAnswerOfAnother(run, files_, routing_)) {
        QTimer::singleShot(Moment, this,
                           [this, job, news] { orFail(job, [&] { tellDone(job, news); }); });
        return;
    }
    files::write(files_.path(runedit::workfile::RunDone),
                 manner_.fault == Fault::BadAnswer ? std::string("\0\xFF\xFE", 3) : run + "\n");
    manner_.tell(news);
    holdOn(job);
}

void MapService::holdOn(const std::shared_ptr<Job>& job) {
    if (manner_.fault != Fault::FileStays) {
        QTimer::singleShot(manner_.hold, this, [this, job] { letGo(*job); });
    } else {
        QTimer::singleShot(std::chrono::hours(24), this, [job] {});
    }
}

void MapService::letGo(const Job& job) const {
    files::remove(job.stopExport);
    manner_.tell("Done with: " + job.solved.id());
}

}  // namespace tools::map
