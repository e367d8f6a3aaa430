#include <iostream>

#include "platform/forms/application.h"
#include "platform/forms/look.h"
#include "startup/RunStartup.h"
#include "startup/session.h"
#include "tools/script/player.h"

// Plays a script against the program's real forms: tarn-script FILE. The district is the one that
// the configuration folder names, as for the program itself; window places are not remembered.
int main(int argc, char** argv) {
    forms::Application application(argc, argv);
    if (argc != 2) {
        std::cerr << "Usage: tarn-script FILE\n";
        return 2;
    }
    QApplication::setApplicationDisplayName(QStringLiteral("Vireo Routing"));
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
