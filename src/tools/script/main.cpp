#include <QCommandLineParser>
#include <QFile>
#include <QFont>
#include <cstdlib>
#include <iostream>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "data/schema/schema.h"
#include "platform/base/text.h"
#include "platform/files/files.h"
#include "platform/forms/application.h"
#include "platform/forms/look.h"
#include "platform/forms/screenless.h"
#include "startup/base/mdlDBConnection.h"
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
        const bool isWork = file == data::DatabaseFile::RouteWrk;
        const std::string& folder = common   ? startup::gVIREOPath
                                    : isWork ? startup::workPath()
                                             : startup::gDataPath;
        return startup::databasePath(folder, std::string(data::fileName(file)));
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

constexpr auto Help = R"(Usage: tarn-script [OPTION...] FILE

Plays a script, one command a line, against the program's forms and writes what happened. The
district is the one that the configuration folder names, as for the program itself. Without a screen
set QT_QPA_PLATFORM=offscreen.

  --look light|dark|contrast  the colours of the forms
  --font POINTS               the size of their font
  --screen WIDTHxHEIGHT       the size of the screen where there is no real one
  --help                      this text
  --version                   the program's version

Example: XDG_CONFIG_HOME=~/sample QT_QPA_PLATFORM=offscreen tarn-script typical-day.tarn)";

/// How the forms are looked at, and the script.
struct Request {
    QString file;
    QSize screen{1366, 768};
    int points = 0;  ///< of the font; 0 is the toolkit's own
    forms::Scheme scheme = forms::Scheme::Light;
};

/// What the command line asks for, which counts before there is an application; helps and ends the
/// program where it asks for nothing.
Request requested(const QStringList& arguments) {
    QCommandLineParser words;
    const QCommandLineOption screen("screen", {}, "WIDTHxHEIGHT", "1366x768");
    const QCommandLineOption font("font", {}, "POINTS");
    const QCommandLineOption look("look", {}, "LOOK", "light");
    words.addOptions({screen, font, look});
    const bool understood = words.parse(arguments);
    const QStringList size = words.value(screen).split('x');
    const std::map<QString, forms::Scheme> schemes{{"light", forms::Scheme::Light},
                                                   {"dark", forms::Scheme::Dark},
                                                   {"contrast", forms::Scheme::HighContrast}};
    const auto scheme = schemes.find(words.value(look));
    if (!understood || words.positionalArguments().size() != 1 || size.size() != 2 ||
        scheme == schemes.end()) {
        std::cerr << Help << "\n";
        std::exit(2);
    }
    return {.file = words.positionalArguments().front(),
            .screen = {size[0].toInt(), size[1].toInt()},
            .points = words.value(font).toInt(),
            .scheme = scheme->second};
}

}  // namespace

int main(int argc, char** argv) {
    if (startup::isAnsweredAtOnce(argc, argv, Help)) {
        return 0;
    }
    qInstallMessageHandler(warnUnlessScreenless);
    const Request request = requested(QStringList(argv, argv + argc));
    std::optional<forms::ScreenlessScreen> screen(std::in_place, request.screen);
    forms::Application application(argc, argv);
    screen.reset();
    QApplication::setApplicationName(QStringLiteral("tarn-script"));
    if (request.points > 0) {
        QFont font = QApplication::font();
        font.setPointSize(request.points);
        QApplication::setFont(font);
    }
    forms::applyLook(application, request.scheme);
    const int status = script::playFile(QFile::encodeName(request.file).toStdString(), std::cout,
                                        std::cerr, {startProgram, runStatement});
    application.startAfresh();
    startup::resetSession();
    return status;
}
