#include "tools/district/command/answer.h"

#include <QJsonDocument>

namespace tools::district {

namespace {

QString wordOf(ExitStatus status) {
    switch (status) {
        case ExitStatus::Done:
            return QStringLiteral("done");
        case ExitStatus::Failed:
            return QStringLiteral("failed");
        case ExitStatus::Misused:
            break;
    }
    return QStringLiteral("misused");
}

QJsonArray linesOf(const std::string& text) {
    return QJsonArray::fromStringList(toJson(text).split('\n', Qt::SkipEmptyParts));
}

}  // namespace

void tell(const CheckReport& report, QJsonObject& result) {
    result["version"] = report.version;
    result["versionComplaint"] = toJson(report.versionComplaint);
    result["checkedTables"] = static_cast<qint64>(report.tables);
    result["checkedRows"] = static_cast<qint64>(report.rows);
    result["findings"] = arrayOf(report.findings, [](const CheckFinding& one) {
        const auto examples = arrayOf(one.examples, [](const auto& text) { return toJson(text); });
        return QJsonObject{{"what", toJson(one.what)},
                           {"count", static_cast<qint64>(one.count)},
                           {"examples", examples}};
    });
}

std::string textOf(const Answer& answer) {
    return QJsonDocument(QJsonObject{{"command", toJson(answer.command)},
                                     {"status", wordOf(answer.status)},
                                     {"says", linesOf(answer.said)},
                                     {"complaints", linesOf(answer.complaints)},
                                     {"result", answer.result}})
        .toJson(QJsonDocument::Indented)
        .toStdString();
}

}  // namespace tools::district
