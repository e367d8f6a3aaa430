#include "tools/district/command/importcommand.h"

#include <algorithm>
#include <optional>
#include <ostream>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/district/check/checks.h"

namespace tools::district {

namespace {

constexpr std::size_t MostRunsTold = 10;

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

QJsonObject jsonOf(const TableOutcome& table) {
    return {{"table", toJson(table.table)},
            {"new", static_cast<qint64>(table.added)},
            {"changed", static_cast<qint64>(table.changed)},
            {"same", static_cast<qint64>(table.same)},
            {"removed", static_cast<qint64>(table.removed)},
            {"leftToPlanners", static_cast<qint64>(table.left)}};
}

QJsonObject jsonOf(const Rejection& one) {
    return {{"file", toJson(one.file)},
            {"line", static_cast<qint64>(one.line)},
            {"column", toJson(one.column)},
            {"reason", toJson(one.reason)}};
}

void tell(const ImportResult& imported, QJsonObject& result) {
    const auto object = [](const auto& item) { return jsonOf(item); };
    const auto text = [](const std::string& item) { return toJson(item); };
    const ImportOutcome& outcome = imported.outcome;
    result["written"] = imported.isWritten;
    result["refused"] = static_cast<qint64>(outcome.refused);
    result["tables"] = arrayOf(outcome.tables, object);
    result["rejections"] = arrayOf(outcome.rejections, object);
    result["editedRuns"] = arrayOf(outcome.editedRuns, text);
    result["remarks"] = arrayOf(outcome.remarks, text);
}

}  // namespace

bool runImport(const ImportOptions& options, std::ostream& out, Result result) {
    Progress progress;
    const ImportResult imported = importInto(options, progress);
    std::optional<CheckReport> check;
    if (imported.isWritten) {
        check = checkDistrict(options.folders, progress);
    }
    progress.clear();
    if (result != nullptr) {
        tell(imported, *result);
    }
    if (result != nullptr && check) {
        tell(*check, *result);
    }
    out << textOf(options, imported) << (check ? check->text() : "");
    return imported.outcome.refused == 0 && (!check || check->isSound());
}

}  // namespace tools::district
