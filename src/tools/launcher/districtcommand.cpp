#include "tools/launcher/districtcommand.h"

#include <QFile>
#include <QProcess>
#include <algorithm>
#include <iterator>

#include "platform/process/programs.h"

namespace tools::launcher {

namespace {

constexpr auto Program = "vireo-district";
constexpr int TurnMs = 20;

CommandOutcome outcomeOf(QProcess& command, bool isStopped) {
    if (command.error() == QProcess::FailedToStart) {
        return {false,
                "The program vireo-district is neither beside this one nor on the search "
                "path, or cannot be started."};
    }
    if (command.exitStatus() == QProcess::NormalExit && command.exitCode() == 0) {
        return {true, command.readAllStandardOutput().trimmed().toStdString()};
    }
    return {false, isStopped ? "" : command.readAllStandardError().trimmed().toStdString()};
}

}  // namespace

CommandOutcome runDistrictCommand(const std::vector<std::string>& words, const std::string& input,
                                  base::ProgressPort& progress) {
    QStringList arguments;
    std::ranges::transform(words, std::back_inserter(arguments),
                           [](const std::string& word) { return QFile::decodeName(word.c_str()); });
    QProcess command;
    command.start(QFile::decodeName(process::programOfSuite(Program).c_str()), arguments);
    command.write(QByteArray::fromStdString(input));
    command.closeWriteChannel();
    bool isStopped = false;
    while (command.state() != QProcess::NotRunning && !command.waitForFinished(TurnMs)) {
        if (progress.yield() && !isStopped) {
            isStopped = true;
            command.terminate();
        }
    }
    return outcomeOf(command, isStopped);
}

}  // namespace tools::launcher
