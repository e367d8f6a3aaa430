#include "tools/district/command/importcommand.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <optional>
#include <ostream>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/district/check/checks.h"

namespace tools::district {

namespace {

constexpr std::size_t MostRunsTold = 10;

QString toQt(const std::string& text) { return QString::fromStdString(text); }

std::string placeOf(const Rejection& rejection) {
    return fmt::format("{}, line {}{}{}", rejection.file, rejection.line,
                       rejection.column.empty() ? "" : ", ", rejection.column);
}

std::string countsOf(const TableOutcome& table) {
    std::string text =
        fmt::format("{} new, {} changed, {} as they are", table.added, table.changed, table.same);
    if (table.removed > 0) {
        text += fmt::format(", {} removed", table.removed);
    }
    if (table.left > 0) {
        text += fmt::format(", {} left to planners", table.left);
    }
    return text;
}

std::string lastLine(const ImportOptions& options, const ImportResult& result) {
    if (result.isWritten) {
        return "Written.\n";
    }
    if (!result.outcome.hasChanges()) {
        return "Nothing to write.\n";
    }
    return options.apply ? "" : "Nothing was written: this was a dry run. --apply writes it.\n";
}

std::string textOf(const ImportOptions& options, const ImportResult& result) {
    const ImportOutcome& outcome = result.outcome;
    std::string text;
    for (const std::string& remark : outcome.remarks) {
        text += remark + '\n';
    }
    for (const TableOutcome& table : outcome.tables) {
        text += fmt::format("{}: {}\n", table.table, countsOf(table));
        for (const std::string& one : table.cases) {
            text += "  " + one + '\n';
        }
    }
    if (outcome.refused > 0) {
        text += fmt::format(
            "{} {} refused{}:\n", outcome.refused, outcome.refused == 1 ? "line" : "lines",
            options.rejected.empty() ? "" : ", all in " + options.rejected.string());
        for (const Rejection& one : outcome.rejections) {
            text += fmt::format("  {}: {}\n", placeOf(one), one.reason);
        }
    }
    if (const auto& runs = outcome.editedRuns; !runs.empty()) {
        const auto end =
            runs.begin() + static_cast<std::ptrdiff_t>(std::min(runs.size(), MostRunsTold));
        text += fmt::format(
            "{} {} left alone, which planners have changed since the last import: {}{}\n"
            "  --overwrite-edited takes the file's word for them.\n",
            runs.size(), runs.size() == 1 ? "run was" : "runs were",
            fmt::join(runs.begin(), end, ", "), end == runs.end() ? "" : ", …");
    }
    return text + lastLine(options, result);
}

template <class Items, class Make>
QJsonArray arrayOf(const Items& items, const Make& make) {
    QJsonArray array;
    for (const auto& item : items) {
        array.append(make(item));
    }
    return array;
}

std::string jsonOf(const ImportResult& result, const std::optional<CheckReport>& check) {
    const ImportOutcome& outcome = result.outcome;
    QJsonObject all{{"written", result.isWritten},
                    {"refused", static_cast<qint64>(outcome.refused)},
                    {"tables", arrayOf(outcome.tables,
                                       [](const TableOutcome& table) {
                                           return QJsonObject{
                                               {"table", toQt(table.table)},
                                               {"new", static_cast<qint64>(table.added)},
                                               {"changed", static_cast<qint64>(table.changed)},
                                               {"same", static_cast<qint64>(table.same)},
                                               {"removed", static_cast<qint64>(table.removed)},
                                               {"leftToPlanners", static_cast<qint64>(table.left)}};
                                       })},
                    {"rejections", arrayOf(outcome.rejections,
                                           [](const Rejection& one) {
                                               return QJsonObject{
                                                   {"file", toQt(one.file)},
                                                   {"line", static_cast<qint64>(one.line)},
                                                   {"column", toQt(one.column)},
                                                   {"reason", toQt(one.reason)}};
                                           })},
                    {"editedRuns", arrayOf(outcome.editedRuns, toQt)},
                    {"remarks", arrayOf(outcome.remarks, toQt)}};
    if (check) {
        all["findings"] = arrayOf(check->findings,
                                  [](const CheckFinding& finding) { return toQt(finding.text()); });
    }
    return QJsonDocument(all).toJson(QJsonDocument::Indented).toStdString();
}

}  // namespace

bool runImport(const ImportOptions& options, bool asJson, std::ostream& out) {
    Progress progress;
    const ImportResult result = importInto(options, progress);
    std::optional<CheckReport> check;
    if (result.isWritten) {
        check = checkDistrict(options.folders, progress);
    }
    progress.clear();
    if (asJson) {
        out << jsonOf(result, check);
    } else {
        out << textOf(options, result) << (check ? check->text() : "");
    }
    return result.outcome.refused == 0 && (!check || check->isSound());
}

}  // namespace tools::district
