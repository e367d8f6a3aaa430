#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <span>

#include <fmt/format.h>

#include "help/viewer/guidedesk.h"
#include "platform/dde/dbustransport.h"
#include "platform/files/installation.h"
#include "startup/base/applicationinfo.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/mdlErrorHandler.h"
#include "startup/base/session.h"
#include "startup/desktop/desktopprogram.h"
#include "startup/version/districtversion.h"
#include "tools/map/mapscreen.h"
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
        "The map of a district: takes requests on the session's bus under the name "
        "local.dde.ArcView, shows runs in a window where there is a display, and solves them.\n\n"
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
          QStringLiteral("fault")},
         {QStringLiteral("window"), QStringLiteral("Shows runs even without a display.")},
         {QStringLiteral("no-window"), QStringLiteral("Solves runs unseen.")},
         {QStringLiteral("waiting"),
          QStringLiteral("Opens the window only when a run is sent; where another map is at work, "
                         "ends without a word.")}});
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

/// Whether who answers requests now is the map of a district, which passes on what is not for it.
bool isOneOfOurs(QDBusConnectionInterface& bus, const QString& name) {
    const auto owner = bus.serviceOwner(name).value();
    const auto names = bus.registeredServiceNames().value();
    return std::ranges::any_of(names, [&](const QString& other) {
        return other.startsWith(name + QStringLiteral(".d")) &&
               bus.serviceOwner(other).value() == owner;
    });
}

/// False where this district's map is there already, or other mapping software. Behind another
/// district's map the name is waited for.
bool takeName(QDBusConnection& bus, MapService& service) {
    bus.registerVirtualObject(QString::fromStdString(dde::objectPath("System")), &service);
    const auto name = QString::fromStdString(dde::busName("ArcView"));
    if (!bus.registerService(service.ownName())) {
        return false;
    }
    const auto taken =
        bus.interface()->registerService(name, QDBusConnectionInterface::QueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    return taken.value() == QDBusConnectionInterface::ServiceRegistered ||
           (taken.value() == QDBusConnectionInterface::ServiceQueued &&
            isOneOfOurs(*bus.interface(), name));
}

void openDistrict() {
    startup::SetPaths();
    startup::gcnRouting =
        startup::GetJetConnection(startup::databasePath(startup::gDataPath, "routing.mdb"));
    requireFittingDistrict(*startup::gcnRouting);
}

std::unique_ptr<MapService> serviceFor(MapService::Manner manner) {
    manner.openStreets = tools::map::openStreets;
    return std::make_unique<MapService>(*startup::gcnRouting,
                                        runedit::WorkFiles(startup::gProgPath), std::move(manner));
}

int serveUnseen(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vireo-map"));
    QCoreApplication::setApplicationVersion(QString::fromStdString(files::installation().version));
    const auto manner = mannerIn(application);
    openDistrict();
    const auto service = serviceFor(manner);
    auto bus = sessionBus();
    if (!takeName(bus, *service)) {
        complain("A map program is already there.");
    }
    manner.tell("Ready");
    return QCoreApplication::exec();
}

/// The window's service; it ends with the program.
std::unique_ptr<MapService> seenService;

void serveSeen(bool isWaiting) {
    auto manner = mannerIn(*QCoreApplication::instance());
    openDistrict();
    startup::gcnRouting->link(startup::databasePath(startup::gVIREOPath, "trip.mdb"));
    startup::SetErrorHandling();
    help::offerGuide();
    manner.screen = tools::map::desktopScreen();
    seenService = serviceFor(manner);
    static auto bus = sessionBus();
    if (!takeName(bus, *seenService)) {
        if (isWaiting) {
            std::exit(EXIT_SUCCESS);
        }
        complain("A map program is already there.");
    }
    bus.connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                QCoreApplication::instance(), SLOT(quit()));
    manner.tell("Ready");
    if (!isWaiting) {
        tools::map::showMap();
    }
}

/// The words that decide before anything else is read.
bool isAsked(std::span<char*> words, std::string_view option) {
    return std::ranges::any_of(words, [&](const char* word) {
        return std::string_view(word).substr(0, option.size()) == option;
    });
}

bool hasDisplay() {
    const auto platform = qEnvironmentVariable("QT_QPA_PLATFORM");
    return (qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) &&
           platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

bool isSeen(std::span<char*> words) {
    if (isAsked(words, "--play") || isAsked(words, "--no-window") || isAsked(words, "--help") ||
        isAsked(words, "--version")) {
        return isAsked(words, "--window") && !isAsked(words, "--play");
    }
    return hasDisplay() || isAsked(words, "--window");
}

}  // namespace

int main(int argc, char** argv) {
    const std::span words(argv, static_cast<std::size_t>(argc));
    try {
        if (!isSeen(words)) {
            return serveUnseen(argc, argv);
        }
        startup::applicationInfo().title = "Map";
        const bool isWaiting = isAsked(words, "--waiting");
        const int status = startup::runOnDesktop(argc, argv, "vireo-map", [&] {
            try {
                serveSeen(isWaiting);
            } catch (const std::exception& error) {
                complain(error.what());
            }
        });
        seenService.reset();
        return status;
    } catch (const std::exception& error) {
        complain(error.what());
    }
}
