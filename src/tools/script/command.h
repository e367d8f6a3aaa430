#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace script {

enum class Verb {
    Comment,
    Start,
    Set,
    Click,
    DoubleClick,
    Column,
    Menu,
    Select,
    Cell,
    Answer,
    File,
    Print,
    State,
    Forms,
    Boxes,
    Shot,
    Close,
    Wait,
    Turns,
    Until,
    UntilSql,
    Clock,
    Speed,
    Sql,
    Expect,
    ExpectRow,
    ExpectBox,
    ExpectSql,
};

/// One line of a script. Which members are filled depends on the verb (see the table of verbs).
struct Command {
    int line = 0;        ///< counted from 1
    std::string source;  ///< the line as it stands, without blanks around it
    Verb verb = Verb::Comment;
    std::string form;
    std::string control;
    std::vector<int> numbers;        ///< rows and columns counted from 1, milliseconds
    std::vector<std::string> words;  ///< buttons, "all" and "none", a database
    std::string text;
};

/// A script that cannot be read, or whose playing failed: which line, and why.
class ScriptError : public std::runtime_error {
public:
    ScriptError(int line, const std::string& reason);
    [[nodiscard]] int line() const noexcept { return line_; }

private:
    int line_;
};

/// What follows a verb, one letter a part: C form and control, F form, M form
/// with or without a control, N number, R rows or "all" or "none", B buttons, b buttons or none, W
/// a word, P a path, T the rest of the line, a number behind T stands last on the line.
struct VerbSyntax {
    Verb verb;
    std::string_view name;
    std::string_view parts;
    std::string_view usage;
};

/// The syntax of a verb by its name; null for an unknown one.
[[nodiscard]] const VerbSyntax* findVerb(std::string_view name);

}  // namespace script
