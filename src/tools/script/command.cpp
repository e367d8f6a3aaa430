#include "tools/script/command.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

namespace script {

namespace {

constexpr std::array Verbs{
    VerbSyntax{Verb::Start, "start", "T", "start USER..."},
    VerbSyntax{Verb::Set, "set", "CT", "set FORM.CONTROL TEXT"},
    VerbSyntax{Verb::Click, "click", "C", "click FORM.CONTROL"},
    VerbSyntax{Verb::DoubleClick, "doubleclick", "CN", "doubleclick FORM.LIST ROW"},
    VerbSyntax{Verb::Column, "column", "CN", "column FORM.LIST COLUMN"},
    VerbSyntax{Verb::Menu, "menu", "MT", "menu FORM[.CONTROL] ENTRY > ENTRY..."},
    VerbSyntax{Verb::Select, "select", "CR", "select FORM.LIST ROW...|all|none"},
    VerbSyntax{Verb::Cell, "cell", "CNNT", "cell FORM.GRID ROW COLUMN TEXT"},
    VerbSyntax{Verb::Answer, "answer", "B", "answer OK|Cancel|Yes|No|Retry..."},
    VerbSyntax{Verb::File, "file", "T", "file PATH"},
    VerbSyntax{Verb::Print, "print", "C", "print FORM.CONTROL"},
    VerbSyntax{Verb::State, "state", "C", "state FORM.CONTROL"},
    VerbSyntax{Verb::Forms, "forms", "", "forms"},
    VerbSyntax{Verb::Boxes, "boxes", "", "boxes"},
    VerbSyntax{Verb::Shot, "shot", "FP", "shot FORM FILE.png"},
    VerbSyntax{Verb::Close, "close", "Fb", "close FORM [OK|Cancel|Yes|No|Retry...]"},
    VerbSyntax{Verb::Wait, "wait", "N", "wait MILLISECONDS"},
    VerbSyntax{Verb::Turns, "turns", "N", "turns MILLISECONDS"},
    VerbSyntax{Verb::Until, "until", "CTN", "until FORM.CONTROL TEXT MILLISECONDS"},
    VerbSyntax{Verb::UntilSql, "until-sql", "TN", "until-sql ROWS MILLISECONDS"},
    VerbSyntax{Verb::Clock, "clock", "T", "clock TIME"},
    VerbSyntax{Verb::Speed, "speed", "N", "speed TIMES"},
    VerbSyntax{Verb::Sql, "sql", "WP", "sql DATABASE STATEMENT"},
    VerbSyntax{Verb::Expect, "expect", "CT", "expect FORM.CONTROL TEXT"},
    VerbSyntax{Verb::ExpectRow, "expect-row", "CNT", "expect-row FORM.LIST ROW TEXT"},
    VerbSyntax{Verb::ExpectBox, "expect-box", "T", "expect-box TITLE"},
    VerbSyntax{Verb::ExpectSql, "expect-sql", "T", "expect-sql ROWS"},
};

}  // namespace

ScriptError::ScriptError(int line, const std::string& reason)
    : std::runtime_error(fmt::format("line {}: {}", line, reason)), line_(line) {}

const VerbSyntax* findVerb(std::string_view name) {
    const auto* found = std::find_if(Verbs.begin(), Verbs.end(),
                                     [&](const VerbSyntax& one) { return one.name == name; });
    return found == Verbs.end() ? nullptr : found;
}

}  // namespace script
