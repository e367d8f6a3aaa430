#include "startup/desktop/desktopprogram.h"

#include <QStandardPaths>
#include <cstdio>
#include <cstdlib>

#include <fmt/format.h>

#include "platform/controls/layoutmemory.h"
#include "platform/files/installation.h"
#include "platform/forms/application.h"
#include "platform/forms/look.h"
#include "startup/base/applicationinfo.h"
#include "startup/base/session.h"

namespace startup {

namespace {

std::string programName;
QtMessageHandler usualMessages = nullptr;

// The toolkit's last word where it cannot open the display is an abort.
void reportNoDisplay(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type != QtFatalMsg) {
        usualMessages(type, context, message);
        return;
    }
    fmt::print(stderr,
               "{}: No window can be opened. Start it in a desktop session, or set DISPLAY or "
               "WAYLAND_DISPLAY to one that you may use.\n",
               programName);
    std::_Exit(EXIT_FAILURE);
}

void nameApplication(const ApplicationInfo& info) {
    QCoreApplication::setApplicationName(QString::fromStdString(info.title));
    QCoreApplication::setApplicationVersion(
        QString::fromStdString(fmt::format("{}.{}.{}", info.major, info.minor, info.revision)));
    // The windows of all programs stand together under the one entry that the menu has.
    QGuiApplication::setDesktopFileName(QString::fromStdString(files::installation().desktopEntry));
}

QString configFile(const std::string& name) {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QString::fromStdString(fmt::format("/vireo/{}.ini", name));
}

// The last changes may still be on their way into a file, and there is nobody left to trap an
// error.
int closeSession(int exitCode) {
    try {
        resetSession();
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}: {}\n", programName, error.what());
        return EXIT_FAILURE;
    }
    return exitCode;
}

}  // namespace

int runOnDesktop(int& argc, char** argv, const std::string& name,
                 const std::function<void()>& start) {
    programName = name;
    nameApplication(applicationInfo());
    usualMessages = qInstallMessageHandler(reportNoDisplay);
    forms::Application application(argc, argv);
    qInstallMessageHandler(usualMessages);
    forms::followDesktop(application, configFile("look"));
    controls::LayoutMemory::instance().useFile(configFile(programName + "-windows"));
    application.guarded(start);
    return closeSession(application.run());
}

}  // namespace startup
