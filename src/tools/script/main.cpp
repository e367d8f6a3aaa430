#include <QFile>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "data/schema/schema.h"
#include "platform/base/text.h"
#include "platform/files/files.h"
#include "platform/forms/application.h"
#include "platform/forms/look.h"
#include "platform/forms/screenless.h"
#include "startup/base/session.h"
#include "startup/desktop/selfdescription.h"
#include "startup/main/RunStartup.h"
#include "tools/district/command/sqlcommand.h"
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

/// Window places are not remembered.
void startProgram(const std::string& commandLine) {
    startup::resetSession();
    startup::Main(commandLine);
}

std::string pathOf(const std::string& database) {
    const std::string name = database + ".mdb";
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        if (!base::equalsNoCase(data::fileName(file), name)) {
            continue;
        }
        const bool common = file == data::DatabaseFile::Trip || file == data::DatabaseFile::QDSC;
        const std::string& folder = common                                 ? startup::gVIREOPath
                                    : file == data::DatabaseFile::RouteWrk ? startup::gProgPath
                                                                           : startup::gDataPath;
        return files::find(folder + name);
    }
    throw std::runtime_error("there is no database \"" + database + "\"");
}

/// On a connection of its own, as another program would.
std::vector<std::string> runStatement(const std::string& database, const std::string& statement) {
    std::istringstream nothing;
    std::stringstream answer;
    std::ostringstream complaints;
    if (!tools::district::runSql({.file = pathOf(database), .statement = statement}, nothing,
                                 answer, complaints)) {
        throw std::runtime_error(complaints.str());
    }
    std::vector<std::string> lines;
    for (std::string line; std::getline(answer, line);) {
        lines.push_back(line);
    }
    return lines;
}

constexpr auto Help = R"(Usage: tarn-script FILE

Plays a script, one command a line, against the program's forms and writes what happened. The
district is the one that the configuration folder names, as for the program itself. Without a screen
set QT_QPA_PLATFORM=offscreen.

  --help     this text
  --version  the program's version

Example: XDG_CONFIG_HOME=~/sample QT_QPA_PLATFORM=offscreen tarn-script typical-day.tarn)";

/// The script that the command line names; helps and ends the program where it does not.
std::string fileIn(const QCoreApplication& application) {
    const QStringList words = application.arguments();
    if (words.size() != 2) {
        std::cerr << Help << "\n";
        std::exit(2);
    }
    return QFile::encodeName(words[1]).toStdString();
}

}  // namespace

int main(int argc, char** argv) {
    if (startup::isAnsweredAtOnce(argc, argv, Help)) {
        return 0;
    }
    qInstallMessageHandler(warnUnlessScreenless);
    std::optional<forms::ScreenlessScreen> screen(std::in_place, QSize(1366, 768));
    forms::Application application(argc, argv);
    screen.reset();
    const std::string file = fileIn(application);
    QApplication::setApplicationName(QStringLiteral("tarn-script"));
    forms::applyLook(application, forms::Scheme::Light);
    const int status = script::playFile(file, std::cout, std::cerr, {startProgram, runStatement});
    application.startAfresh();
    startup::resetSession();
    return status;
}
