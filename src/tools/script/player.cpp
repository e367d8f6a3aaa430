#include "tools/script/player.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QMenu>
#include <QPixmap>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <fstream>
#include <map>
#include <ostream>
#include <sstream>

#include <fmt/format.h>

#include "platform/controls/qtext.h"
#include "platform/forms/application.h"
#include "platform/forms/filedialog.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/printerdialog.h"
#include "platform/forms/timer.h"
#include "platform/forms/waitbox.h"
#include "tools/script/adapter.h"
#include "tools/script/menus.h"
#include "tools/script/parser.h"
#include "tools/script/userinput.h"

namespace script {

using controls::toQt;
using forms::Application;
using forms::Form;
using forms::FormRegistry;

namespace {

std::string indented(const std::string& text) {
    std::string shown = "    ";
    for (const char c : text) {
        shown += c;
        shown += c == '\n' ? "    " : "";
    }
    return shown;
}

}  // namespace

Player::Player(std::ostream& transcript, Program program)
    : transcript_(transcript),
      program_(std::move(program)),
      clock_(*base::ports().clock),
      programs_([this](const std::string& line) { print(line); }),
      formerPorts_(base::ports()) {
    base::ports().msgBox = &boxes_;
    base::ports().clock = &clock_;
    base::ports().beep = [] {};
    process::setHost(&programs_);
    forms::setFileChooser(
        [this](const forms::FileQuestion& question) { return chosenFile(question); });
    forms::setPrinterChooser(
        [this](const forms::PrintQuestion& question) { return cancelledPrinter(question); });
}

Player::~Player() {
    base::ports() = formerPorts_;
    process::setHost(nullptr);
    forms::setFileChooser({});
    forms::setPrinterChooser({});
    forms::Timer::setSpeed(1);
}

void Player::play(std::span<const Command> commands) {
    rest_ = commands;
    playWhile([] { return true; });
    if (commands.empty()) {
        return;
    }
    Command end = commands.back();
    ++end.line;
    failOnUnexpectedBox(end);
    if (!files_.empty()) {
        throw ScriptError(end.line,
                          fmt::format("the script ends with the file \"{}\", which nobody "
                                      "asked for",
                                      files_.front()));
    }
    if (boxes_.answersLeft() > 0) {
        throw ScriptError(end.line, fmt::format("the script ends with {} answers that no box asked",
                                                boxes_.answersLeft()));
    }
}

void Player::playWhile(const std::function<bool()>& holds) {
    while (!rest_.empty() && holds()) {
        const Command& command = rest_.front();
        rest_ = rest_.subspan(1);
        perform(command);
    }
}

void Player::failOnUnexpectedBox(const Command& command) const {
    if (const ShownBox* box = boxes_.unexpected(); box != nullptr) {
        throw ScriptError(command.line,
                          "before this line came an unexpected box: " + described(*box));
    }
}

void Player::perform(const Command& command) {
    if (command.verb == Verb::Comment) {
        transcript_ << "\n# " << command.text << "\n";
        return;
    }
    const Deed& deed = deedOf(command.verb);
    if (deed.actsOnProgram) {
        failOnUnexpectedBox(command);
    }
    transcript_ << "> " << command.source << "\n";
    turns_.setDeed(command.source);
    try {
        deed.perform(*this, command);
        settle();
    } catch (const ControlError& error) {
        throw ScriptError(command.line,
                          fmt::format("{}{}{} {}", command.form, command.control.empty() ? "" : ".",
                                      command.control, error.what()));
    }
    transcript_.flush();
}

/// Found and brought to where a user could use it.
std::unique_ptr<Adapter> Player::usable(const Command& command) const {
    QWidget& widget = control(command);
    bringWithinReach(widget);
    return adapterFor(widget);
}

/// What a verb does; those that act on the program must not follow an unexpected box.
const Player::Deed& Player::deedOf(Verb verb) {
    using C = const Command&;
    static const std::map<Verb, Deed> deeds = {
        {Verb::Start, {[](Player& p, C c) { p.start(c); }, true}},
        {Verb::Set, {[](Player& p, C c) { p.usable(c)->set(c.text); }, true}},
        {Verb::Click, {[](Player& p, C c) { p.usable(c)->click(); }, true}},
        {Verb::DoubleClick, {[](Player& p, C c) { p.usable(c)->doubleClick(c.numbers[0]); }, true}},
        {Verb::Column, {[](Player& p, C c) { p.usable(c)->clickColumn(c.numbers[0]); }, true}},
        {Verb::Menu, {[](Player& p, C c) { p.choose(c); }, true}},
        {Verb::Select, {[](Player& p, C c) { p.select(*p.usable(c), c); }, true}},
        {Verb::Cell,
         {[](Player& p, C c) { p.usable(c)->setCell(c.numbers[0], c.numbers[1], c.text); }, true}},
        {Verb::Close, {[](Player& p, C c) { p.close(c); }, true}},
        {Verb::Answer, {[](Player& p, C c) { p.answer(c); }}},
        {Verb::File, {[](Player& p, C c) { p.files_.push_back(c.text); }}},
        {Verb::Print, {[](Player& p, C c) { p.print(adapterFor(p.control(c))->lines()); }}},
        {Verb::State, {[](Player& p, C c) { p.printState(c); }}},
        {Verb::Forms, {[](Player& p, C) { p.printForms(); }}},
        {Verb::Boxes, {[](Player& p, C) { p.printBoxes(); }}},
        {Verb::Shot, {[](Player& p, C c) { p.takePicture(c); }}},
        {Verb::Wait, {[](Player& p, C c) { p.live(c.numbers[0], [] { return false; }); }}},
        {Verb::Turns, {[](Player& p, C c) { p.printTurns(c); }}},
        {Verb::Until, {[](Player& p, C c) { p.until(c); }}},
        {Verb::UntilSql, {[](Player& p, C c) { p.untilRows(c); }}},
        {Verb::Clock, {[](Player& p, C c) { p.setClock(c); }}},
        {Verb::Speed, {[](Player&, C c) { forms::Timer::setSpeed(std::max(c.numbers[0], 1)); }}},
        {Verb::Sql, {[](Player& p, C c) { p.runStatement(c); }}},
        {Verb::Expect, {[](Player& p, C c) { p.expect(c); }}},
        {Verb::ExpectRow, {[](Player& p, C c) { p.expectRow(c); }}},
        {Verb::ExpectBox, {[](Player& p, C c) { p.expectBox(c); }}},
        {Verb::ExpectSql, {[](Player& p, C c) { p.expectRows(c); }}}};
    return deeds.at(verb);
}

void Player::start(const Command& command) {
    if (!FormRegistry::instance().loaded().empty()) {
        throw ScriptError(command.line, "the program is running already");
    }
    Application& application = Application::instance();
    application.startAfresh();
    application.guarded([&] { program_.start(command.text); });
}

/// A menu, also the one of an entry, is shown and stays until it is closed.
void Player::choose(const Command& command) {
    QWidget& owner = command.control.empty() ? form(command) : control(command);
    bringWithinReach(owner);
    const auto [entry, menu] = chosenFrom(owner, command.text);
    menu == nullptr ? trigger(*entry) : menu->popup(owner.mapToGlobal(owner.rect().center()));
}

/// A dialog that the entry opens and waits for would hold the script up, too: its lines go on
/// within it until it is closed.
void Player::trigger(QAction& entry) {
    constexpr int LookMs = 20;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog != nullptr && qobject_cast<Form*>(dialog) == nullptr &&
            qobject_cast<forms::WaitBox*>(dialog) == nullptr) {
            look.stop();
            playWithin(*dialog);
            look.start();
        }
    });
    look.start(LookMs);
    entry.trigger();
    look.stop();
    if (fault_) {
        std::rethrow_exception(std::exchange(fault_, nullptr));
    }
}

void Player::playWithin(QWidget& dialog) {
    const QPointer<QWidget> shown(&dialog);
    const auto isShown = [&shown] { return !shown.isNull() && shown->isVisible(); };
    try {
        playWhile(isShown);
    } catch (...) {
        fault_ = std::current_exception();
    }
    if (isShown()) {
        shown->close();
    }
}

void Player::select(Adapter& list, const Command& command) {
    if (command.words.empty()) {
        list.selectRows(command.numbers);
    } else if (command.words[0] == "all") {
        list.selectAll();
    } else {
        list.selectNone();
    }
}

void Player::answer(const Command& command) {
    for (const std::string& button : command.words) {
        boxes_.plan(answerNamed(button));
    }
}

/// The answers are for what closing may ask, no more.
void Player::close(const Command& command) {
    answer(command);
    form(command).close();
    if (!command.words.empty()) {
        boxes_.forgetAnswers();
    }
}

/// The next of the script's files. A dialog that the script has none for is a box that it cancels.
QString Player::chosenFile(const forms::FileQuestion& question) {
    if (files_.empty()) {
        boxes_.show({.text = "Which file? (The script needs a line \"file PATH\" before this.)",
                     .title = controls::fromQt(question.title),
                     .icon = base::MsgIcon::Question,
                     .buttons = base::MsgButtons::OkCancel,
                     .preferred = base::MsgAnswer::Cancel});
        return {};
    }
    const std::string file = files_.front();
    files_.pop_front();
    return toQt(file);
}

/// A script prints nothing; the dialog is a box that it cancels.
std::optional<forms::PrintChoice> Player::cancelledPrinter(const forms::PrintQuestion& question) {
    boxes_.show({.text = "Which printer? (A script has none.)",
                 .title = controls::fromQt(question.title),
                 .icon = base::MsgIcon::Question,
                 .buttons = base::MsgButtons::OkCancel,
                 .preferred = base::MsgAnswer::Cancel});
    return std::nullopt;
}

void Player::print(const std::string& line) { transcript_ << indented(line) << "\n"; }

void Player::print(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        print(line);
    }
}

void Player::printState(const Command& command) {
    const QWidget& widget = control(command);
    const std::string checked = adapterFor(control(command))->checkedState();
    print(fmt::format("{}, {}{}{}", widget.isEnabled() ? "enabled" : "disabled",
                      widget.isHidden() ? "hidden" : "visible", checked.empty() ? "" : ", ",
                      checked));
}

void Player::printForms() {
    const std::vector<Form*> loaded = FormRegistry::instance().loaded();
    if (loaded.empty()) {
        print("none");
    }
    for (const Form* one : loaded) {
        print(fmt::format("{} \"{}\", {}{}", one->name(), one->windowTitle().toStdString(),
                          one->isVisible() ? "visible" : "hidden",
                          one == FormRegistry::instance().lastActive() ? ", active" : ""));
    }
}

void Player::printBoxes() {
    const std::vector<ShownBox> shown = boxes_.take();
    if (shown.empty()) {
        print("none");
    }
    for (const ShownBox& box : shown) {
        print(described(box));
    }
}

void Player::printTurns(const Command& command) {
    const auto turns = turns_.take(command.numbers[0]);
    if (turns.empty()) {
        print("none");
    }
    for (const auto& turn : turns) {
        print(fmt::format("{:.0f} ms computing, {:.0f} ms in all: {}", turn.computingMs, turn.ms,
                          turn.deed));
    }
}

void Player::takePicture(const Command& command) {
    constexpr int FadingMs = 200;  // for icons that fade in and out
    live(FadingMs, [] { return false; });
    const QString path = toQt(command.text);
    QDir().mkpath(QFileInfo(path).path());
    if (!form(command).grab().save(path)) {
        throw ScriptError(command.line, fmt::format("cannot write {}", command.text));
    }
}

void Player::setClock(const Command& command) {
    const std::optional<base::Date> moment = base::Date::parse(command.text);
    if (!moment) {
        throw ScriptError(command.line, fmt::format("\"{}\" is no time", command.text));
    }
    clock_.set(*moment);
}

void Player::expect(const Command& command) {
    const std::string shown = controlText(command);
    if (shown != command.text) {
        throw ScriptError(command.line,
                          fmt::format("{}.{} shows \"{}\", expected \"{}\"", command.form,
                                      command.control, shown, command.text));
    }
}

void Player::expectRow(const Command& command) {
    const std::string row = adapterFor(control(command))->rowText(command.numbers[0]);
    if (row.find(command.text) == std::string::npos) {
        throw ScriptError(
            command.line,
            fmt::format("row {} of {}.{} is \"{}\", expected \"{}\" in it", command.numbers[0],
                        command.form, command.control, row, command.text));
    }
}

void Player::expectBox(const Command& command) {
    const std::optional<ShownBox> box = boxes_.take(command.text);
    if (!box) {
        const ShownBox* other = boxes_.unexpected();
        throw ScriptError(command.line,
                          fmt::format("no box \"{}\" was shown{}", command.text,
                                      other == nullptr ? "" : ", but " + described(*other)));
    }
    print(described(*box));
}

std::vector<std::string> Player::ask(const Command& command) const {
    try {
        return program_.statement(command.words[0], command.text);
    } catch (const std::exception& error) {
        throw ScriptError(command.line, error.what());
    }
}

void Player::runStatement(const Command& command) {
    statement_ = command;
    answer_ = ask(command);
    print(answer_);
}

/// Those below the captions.
std::string Player::rowsFound() const {
    std::string rows;
    for (std::size_t i = 1; i < answer_.size(); ++i) {
        rows += (i == 1 ? "" : "\n") + answer_[i];
    }
    return rows;
}

void Player::expectRows(const Command& command) const {
    if (rowsFound() != command.text) {
        throw ScriptError(command.line, fmt::format("the statement found \"{}\", expected \"{}\"",
                                                    rowsFound(), command.text));
    }
}

void Player::untilRows(const Command& command) {
    if (statement_.verb != Verb::Sql) {
        throw ScriptError(command.line, "there is no statement to repeat");
    }
    const auto found = [&] {
        answer_ = ask(statement_);
        return rowsFound() == command.text;
    };
    if (!live(command.numbers[0], found)) {
        expectRows(command);
    }
}

void Player::until(const Command& command) {
    const auto reached = [&] { return controlText(command) == command.text; };
    if (!live(command.numbers[0], reached)) {
        throw ScriptError(
            command.line,
            fmt::format("{}.{} shows \"{}\" after {} ms, expected \"{}\"", command.form,
                        command.control, controlText(command), command.numbers[0], command.text));
    }
}

bool Player::live(int milliseconds, const std::function<bool()>& done) {
    constexpr unsigned long PauseMs = 2;
    QElapsedTimer passed;
    passed.start();
    do {
        settle();
        if (done()) {
            return true;
        }
        QThread::msleep(PauseMs);
    } while (passed.elapsed() < milliseconds);
    settle();
    return done();
}

/// Also a menu or a dialog that is no form of the program.
QWidget& Player::form(const Command& command) const {
    QWidget* other = command.form == "dialog" ? QApplication::activeModalWidget()
                     : command.form == "menu" ? QApplication::activePopupWidget()
                                              : nullptr;
    if (other != nullptr) {
        return *other;
    }
    if (Form* found = FormRegistry::instance().find(command.form); found != nullptr) {
        return *found;
    }
    throw ScriptError(command.line,
                      Application::instance().ending()
                          ? fmt::format("{} is not there: the program has ended", command.form)
                          : fmt::format("no form {} is loaded", command.form));
}

QWidget& Player::control(const Command& command) const {
    auto* found = form(command).findChild<QWidget*>(toQt(command.control));
    if (found == nullptr) {
        throw ScriptError(command.line,
                          fmt::format("{} has no control {}", command.form, command.control));
    }
    return *found;
}

std::string Player::controlText(const Command& command) const {
    return adapterFor(control(command))->text();
}

int playFile(const std::string& path, std::ostream& transcript, std::ostream& errors,
             const Program& program) {
    std::ifstream file(path);
    std::stringstream script;
    if (!file || !(script << file.rdbuf())) {
        errors << path << ": cannot be read\n";
        return 1;
    }
    try {
        Player(transcript, program).play(parse(script.str()));
    } catch (const ScriptError& error) {
        transcript.flush();
        errors << path << ", " << error.what() << "\n";
        return 1;
    }
    transcript << "\nPlayed to the end.\n";
    return 0;
}

}  // namespace script
