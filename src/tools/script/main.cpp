#include <iostream>

#include "platform/forms/application.h"
#include "platform/forms/look.h"
#include "startup/RunStartup.h"
#include "startup/session.h"
#include "tools/script/player.h"

namespace {

/// Without a screen the toolkit tells of every window that it cannot raise; nobody needs that here.
void warnUnlessScreenless(QtMsgType type, const QMessageLogContext&, const QString& message) {
    const bool aboutScreen = message.startsWith("This plugin does not support") ||
                             message.startsWith("QStandardPaths: XDG_RUNTIME_DIR");
    if (!aboutScreen && type != QtDebugMsg && type != QtInfoMsg) {
        std::cerr << message.toStdString() << "\n";
    }
}

}  // namespace

// Plays a script against the program's real forms: tarn-script FILE. The district is the one that
// the configuration folder names, as for the program itself; window places are not remembered.
int main(int argc, char** argv) {
    qInstallMessageHandler(warnUnlessScreenless);
    forms::Application application(argc, argv);
    if (argc != 2) {
        std::cerr << "Usage: tarn-script FILE\n";
        return 2;
    }
    QApplication::setApplicationName(QStringLiteral("tarn-script"));
    forms::applyLook(application, forms::Scheme::Light);
    const int status =
        script::playFile(argv[1], std::cout, std::cerr, [](const std::string& commandLine) {
            startup::resetSession();
            startup::Main(commandLine);
        });
    application.startAfresh();
    startup::resetSession();
    return status;
}
