#include <QCommandLineParser>
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

/// The script that the command line names; helps and ends the program where it does not.
QString fileIn(const QCoreApplication& application) {
    QCommandLineParser words;
    words.setApplicationDescription(
        "Plays a script against the program's forms and writes what happened.\n\n"
        "Example: tarn-script samples/typical-day.tarn");
    words.addHelpOption();
    words.addPositionalArgument("FILE", "The script: one command a line.");
    words.process(application);
    if (words.positionalArguments().size() != 1) {
        std::cerr << words.helpText().toStdString();
        std::exit(2);
    }
    return words.positionalArguments().front();
}

}  // namespace

// Plays a script against the program's real forms: tarn-script FILE. The district is the one that
// the configuration folder names, as for the program itself.
int main(int argc, char** argv) {
    qInstallMessageHandler(warnUnlessScreenless);
    std::optional<forms::ScreenlessScreen> screen(std::in_place, QSize(1366, 768));
    forms::Application application(argc, argv);
    screen.reset();
    const QString file = fileIn(application);
    QApplication::setApplicationName(QStringLiteral("tarn-script"));
    forms::applyLook(application, forms::Scheme::Light);
    const int status = script::playFile(QFile::encodeName(file).toStdString(), std::cout, std::cerr,
                                        {startProgram, runStatement});
    application.startAfresh();
    startup::resetSession();
    return status;
}
