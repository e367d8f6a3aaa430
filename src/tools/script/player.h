#pragma once

#include <deque>
#include <exception>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/base/notcopied.h"
#include "tools/script/command.h"
#include "tools/script/programsbutlogon.h"
#include "tools/script/scriptedboxes.h"
#include "tools/script/scriptedclock.h"
#include "tools/script/turnwatch.h"

class QAction;
class QString;
class QWidget;

namespace forms {
struct FileQuestion;
struct PrintChoice;
struct PrintQuestion;
}  // namespace forms

namespace script {

class Adapter;

/// Starts the program with a command line; may throw what the program throws.
using ProgramStart = std::function<void(const std::string& commandLine)>;

/// Runs a statement on one of the program's databases by its file's name without ".mdb"; the lines
/// of the answer, a query's captions first. Throws std::exception with the reason.
using Statement = std::function<std::vector<std::string>(const std::string& database,
                                                         const std::string& statement)>;

/// What a script reaches beside the forms.
struct Program {
    ProgramStart start;
    Statement statement;
};

/// Plays commands against the program's own forms, as a user at the screen would, and writes a
/// transcript: comments as headings, each command, and what it printed. While it lives, it answers
/// the message boxes and file dialogs and sets the clock. "menu" and "dialog" are the names of a
/// menu or a dialog in front that is none of the program's forms.
class Player : private base::NotCopied {
public:
    Player(std::ostream& transcript, Program program);
    ~Player();

    /// Throws ScriptError at the first command that fails: an expectation that is not met, a
    /// control that is not there or cannot be used, a message box that the script neither answered,
    /// listed nor expected, an error that ended the program.
    void play(std::span<const Command> commands);

private:
    struct Deed {
        void (*perform)(Player& player, const Command& command);
        bool actsOnProgram = false;
    };
    static const Deed& deedOf(Verb verb);

    void perform(const Command& command);
    void failOnUnexpectedBox(const Command& command) const;

    /// The next lines, as long as that holds.
    void playWhile(const std::function<bool()>& holds);
    void start(const Command& command);
    void choose(const Command& command);
    void trigger(QAction& entry);
    void playWithin(QWidget& dialog);
    void select(Adapter& list, const Command& command);
    void answer(const Command& command);
    void close(const Command& command);
    [[nodiscard]] QString chosenFile(const forms::FileQuestion& question);
    [[nodiscard]] std::optional<forms::PrintChoice> cancelledPrinter(
        const forms::PrintQuestion& question);
    void print(const std::string& line);
    void print(const std::vector<std::string>& lines);
    void printState(const Command& command);
    void printForms();
    void printBoxes();
    void printTurns(const Command& command);
    void takePicture(const Command& command);
    void setClock(const Command& command);
    void runStatement(const Command& command);
    void expect(const Command& command);
    void expectRow(const Command& command);
    void expectBox(const Command& command);
    void expectRows(const Command& command) const;
    void untilRows(const Command& command);
    [[nodiscard]] std::vector<std::string> ask(const Command& command) const;
    [[nodiscard]] std::string rowsFound() const;
    void until(const Command& command);
    /// Lets the program live for so long, or until `done`; whether it was.
    bool live(int milliseconds, const std::function<bool()>& done);

    [[nodiscard]] QWidget& form(const Command& command) const;
    [[nodiscard]] QWidget& control(const Command& command) const;
    [[nodiscard]] std::unique_ptr<Adapter> usable(const Command& command) const;
    [[nodiscard]] std::string controlText(const Command& command) const;

    std::ostream& transcript_;
    Program program_;
    std::span<const Command> rest_;    ///< not played yet
    std::exception_ptr fault_;         ///< within a dialog
    Command statement_;                ///< the last one
    std::vector<std::string> answer_;  ///< to it
    ScriptedBoxes boxes_;
    ScriptedClock clock_;
    TurnWatch turns_;
    ProgramsButLogon programs_;
    std::deque<std::string> files_;  ///< for the next file dialogs; "" cancels
    base::Ports formerPorts_;
};

/// Reads and plays a script file; its faults go to `errors`. The exit status: 0, or 1 on any fault.
int playFile(const std::string& path, std::ostream& transcript, std::ostream& errors,
             const Program& program);

}  // namespace script
