#include "runedit/editor/warningtext.h"

#include <algorithm>
#include <array>

#include "platform/base/text.h"

namespace runedit {

namespace {

constexpr std::string_view StatementEnd = ".  ";
constexpr std::string_view Separator = "***";
constexpr std::string_view BeforeStop = "stopid: ";
constexpr std::array<std::string_view, 2> BehindStop{" has ", " was "};

constexpr std::array MendingFields{
    MendingField{"PASSENGERS", "cmbVEHTYPE", "Vehicle Type"},
    MendingField{"SPECIAL", "cmbVEHTYPE", "Vehicle Type"},
    MendingField{"EARLY BELL", "BellTime", "Bell Time"},
    MendingField{"LATE BELL", "BellTime", "Bell Time"},
};

void add(std::vector<std::string>& statements, std::string_view text) {
    if (const auto statement = base::trim(text); !statement.empty() && statement != Separator) {
        statements.emplace_back(statement);
    }
}

}  // namespace

std::vector<std::string> statementsOf(std::string_view warning) {
    std::vector<std::string> statements;
    for (auto end = warning.find(StatementEnd); end != std::string_view::npos;
         end = warning.find(StatementEnd)) {
        add(statements, warning.substr(0, end + 1));
        warning.remove_prefix(end + StatementEnd.size());
    }
    add(statements, warning);
    return statements;
}

std::string stopNamedIn(std::string_view warning) {
    const auto lower = base::lowered(warning);
    const auto named = lower.find(BeforeStop);
    if (named == std::string::npos) {
        return {};
    }
    const auto from = named + BeforeStop.size();
    std::size_t to = warning.size();
    for (const auto word : BehindStop) {
        to = std::min(to, lower.find(word, from));
    }
    return std::string(base::trim(warning.substr(from, to - from)));
}

const MendingField* mendingFieldOf(std::string_view warningType) {
    const auto found =
        std::ranges::find(MendingFields, base::trim(warningType), &MendingField::warningType);
    return found == MendingFields.end() ? nullptr : &*found;
}

}  // namespace runedit
