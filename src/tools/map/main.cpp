#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include <fmt/format.h>

#include "platform/dde/dbustransport.h"
#include "platform/files/installation.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/session.h"
#include "startup/version/districtversion.h"
#include "tools/map/mapservice.h"

namespace {

using tools::map::Fault;
using tools::map::MapService;

constexpr std::pair<const char*, Fault> Faults[] = {{"refuse", Fault::Refuse},
                                                    {"silence", Fault::Silence},
                                                    {"die", Fault::Die},
                                                    {"bad-answer", Fault::BadAnswer},
                                                    {"file-stays", Fault::FileStays}};

[[noreturn]] void complain(const std::string& text) {
    fmt::print(stderr, "vireo-map: {}\n", text);
    std::exit(EXIT_FAILURE);
}

void requireFittingDistrict(const ado::Connection& routing) {
    const auto complaint = startup::versionComplaint({{data::DatabaseFile::Routing, routing}});
    if (!complaint.empty()) {
        complain(complaint);
    }
}

MapService::Milliseconds secondsIn(const QCommandLineParser& words, const char* option) {
    bool isNumber = false;
    const double seconds = words.value(QLatin1String(option)).toDouble(&isNumber);
    if (!isNumber || !(seconds >= 0 && seconds <= 3600)) {
        complain(fmt::format("--{} takes seconds, from 0 to 3600.", option));
    }
    return MapService::Milliseconds(std::lround(seconds * 1000));
}

Fault faultIn(const QCommandLineParser& words) {
    const std::string name = words.value(QStringLiteral("play")).toStdString();
    for (const auto& [known, fault] : Faults) {
        if (name == known) {
            return fault;
        }
    }
    if (!name.empty()) {
        complain(fmt::format("There is no fault \"{}\" to play.", name));
    }
    return Fault::None;
}

MapService::Manner mannerIn(QCoreApplication& application) {
    QCommandLineParser words;
    words.setApplicationDescription(QStringLiteral(
        "The map's side of the exchange, for tests and demonstration: takes requests on the "
        "session's bus under the name local.dde.ArcView and solves runs along a street grid.\n\n"
        "Example: vireo-map --work 0.5 --play silence"));
    words.addHelpOption();
    words.addVersionOption();
    words.addOptions(
        {{QStringLiteral("work"), QStringLiteral("From a request to its answer (1.5)."),
          QStringLiteral("seconds"), QStringLiteral("1.5")},
         {QStringLiteral("hold"),
          QStringLiteral("From the answer to the end of the run's stop export (3)."),
          QStringLiteral("seconds"), QStringLiteral("3")},
         {QStringLiteral("play"),
          QStringLiteral("A fault to play: refuse, silence, die, bad-answer, file-stays."),
          QStringLiteral("fault")}});
    words.process(application);
    return {.work = secondsIn(words, "work"),
            .hold = secondsIn(words, "hold"),
            .fault = faultIn(words),
            .tell =
                [](const std::string& text) {
                    fmt::print("{}\n", text);
                    std::fflush(stdout);
                },
            .end = [] { std::_Exit(EXIT_FAILURE); }};
}

QDBusConnection sessionBus() {
    const auto address = dde::sessionBusAddress();
    auto bus =
        QDBusConnection::connectToBus(QString::fromStdString(address), QStringLiteral("vireo-map"));
    if (address.empty() || !bus.isConnected()) {
        complain("This session has no message bus. Start it under dbus-run-session.");
    }
    return bus;
}

int serve(QCoreApplication& application) {
    auto manner = mannerIn(application);
    startup::SetPaths();
    const auto routing = startup::GetJetConnection(startup::gDataPath + "routing.mdb");
    requireFittingDistrict(*routing);
    MapService service(*routing, runedit::WorkFiles(startup::gProgPath), manner);
    auto bus = sessionBus();
    bus.registerVirtualObject(QString::fromStdString(dde::objectPath("System")), &service);
    if (!bus.registerService(QString::fromStdString(dde::busName("ArcView")))) {
        complain("A map program is already there.");
    }
    manner.tell("Ready");
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vireo-map"));
    QCoreApplication::setApplicationVersion(QString::fromStdString(files::installation().version));
    try {
        return serve(application);
    } catch (const std::exception& error) {
        complain(error.what());
    }
}
