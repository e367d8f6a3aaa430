#pragma once

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <csignal>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// A program that runs beside a test, ended with it. Its standard output can be waited for. Needs
/// the toolkit's application object.
class ChildProgram {
public:
    using Variables = std::vector<std::pair<std::string, std::string>>;

    /// Starts a program, found as a shell finds it, with variables added to the environment.
    explicit ChildProgram(const std::string& program,
                          const std::vector<std::string>& arguments = {},
                          const Variables& variables = {}) {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const auto& [name, value] : variables) {
            environment.insert(QString::fromStdString(name), QString::fromStdString(value));
        }
        QStringList words;
        for (const std::string& argument : arguments) {
            words << QString::fromStdString(argument);
        }
        process_.setProcessEnvironment(environment);
        process_.setStandardErrorFile(QProcess::nullDevice());
        process_.start(QString::fromStdString(program), words);
    }
    ~ChildProgram() { kill(); }
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    /// The next line of its output; empty where it has ended.
    std::string readLine() {
        while (!process_.canReadLine() && process_.waitForReadyRead()) {
        }
        return process_.readLine().trimmed().toStdString();
    }
    /// Reads lines until one begins with that text; false where the program ended before.
    bool waitForLine(const std::string& beginning) {
        for (std::string line = readLine(); !line.empty(); line = readLine()) {
            if (line.starts_with(beginning)) {
                return true;
            }
        }
        return false;
    }
    /// Stops the program where it is, as one that hangs.
    void hang() const { ::kill(static_cast<pid_t>(process_.processId()), SIGSTOP); }
    void kill() {
        process_.kill();
        process_.waitForFinished();
    }

private:
    QProcess process_;
};

/// The full path of a program of the build.
[[nodiscard]] inline std::string programOfBuild(const std::string& name) {
    return QCoreApplication::applicationDirPath().toStdString() + "/" + name;
}

}  // namespace support
