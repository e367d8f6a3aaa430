#include "runedit/editor/warningtext.h"

#include <algorithm>
#include <array>

#include "platform/base/text.h"

namespace runedit {

namespace {

constexpr std::array<std::string_view, 2> StatementEnds{".  ", ". The "};
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
    std::size_t from = 0;
    for (std::size_t i = 0; i < warning.size(); ++i) {
        const auto rest = warning.substr(i);
        if (std::ranges::any_of(StatementEnds,
                                [&](std::string_view end) { return rest.starts_with(end); })) {
            add(statements, warning.substr(from, i + 1 - from));
            from = i + 1;
        }
    }
    add(statements, warning.substr(from));
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
