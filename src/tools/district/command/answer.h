#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <filesystem>
#include <string>
#include <string_view>

#include "tools/district/check/checks.h"
#include "tools/district/command/commandline.h"

namespace tools::district {

/// What a command found or did, for a script that asked with --json; null where nobody asked.
using Result = QJsonObject*;

[[nodiscard]] inline QString toJson(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
[[nodiscard]] inline QString pathJson(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

template <class Items, class Make>
[[nodiscard]] QJsonArray arrayOf(const Items& items, const Make& make) {
    QJsonArray array;
    for (const auto& item : items) {
        array.append(make(item));
    }
    return array;
}

/// Adds what a check found: "version", "versionComplaint", "checkedTables", "checkedRows", and
/// "findings", each with "what", "count" and "examples".
void tell(const CheckReport& report, QJsonObject& result);

/// What a command was called, what it said and complained of, and what came of it.
struct Answer {
    std::string command;
    ExitStatus status;
    std::string said;
    std::string complaints;
    QJsonObject result;
};

/// One object, the same whatever the command: "command", "status" ("done", "failed", "misused"),
/// "says" and "complaints" in lines, "result".
[[nodiscard]] std::string textOf(const Answer& answer);

}  // namespace tools::district
