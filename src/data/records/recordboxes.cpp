#include "data/records/recordboxes.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScrollArea>
#include <QTabWidget>
#include <algorithm>
#include <stdexcept>

#include <fmt/format.h>

#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/base/timetext.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/controls/numberbox.h"
#include "platform/controls/qtext.h"
#include "platform/controls/refused.h"
#include "platform/controls/timebox.h"

namespace data {

namespace {

using controls::fromQt;
using controls::MultiColumnCombo;
using controls::NumberBox;
using controls::TimeBox;
using controls::toQt;

constexpr auto ConflictText =
    "Oops, {0} has changed this {1} since you opened it.  Nothing was saved yet.\n\n"
    "{2}\n\n"
    "Yes - show the new values and keep what you have entered.  Look at them, then press OK again "
    "to save.\n"
    "No - throw away what you have entered and show the {1} as it is now.\n"
    "Cancel - go back without changing anything.";

/// Marks the line of a combo that shows a stored text which is none of its choices.
constexpr int UnknownRole = Qt::UserRole + 1;

template <class Control>
bool isA(const QWidget& control) {
    return qobject_cast<const Control*>(&control) != nullptr;
}

bool holds(const QWidget& control, FieldKind kind) {
    const bool isLine =
        isA<QLineEdit>(control) && !isA<TimeBox>(control) && !isA<NumberBox>(control);
    switch (kind) {
        case FieldKind::Key:
            return isLine || isA<MultiColumnCombo>(control);
        case FieldKind::Text:
            return isLine || isA<QPlainTextEdit>(control);
        case FieldKind::Choice:
            return isA<QComboBox>(control) && !isA<MultiColumnCombo>(control);
        case FieldKind::Time:
        case FieldKind::DateTime:
            return isA<TimeBox>(control);
        case FieldKind::Number:
            return isA<NumberBox>(control) || isA<QLabel>(control);
        case FieldKind::YesNo:
            return isA<QAbstractButton>(control);
    }
    return false;
}

QWidget& controlOf(const QWidget& form, const Field& field) {
    auto* control = form.findChild<QWidget*>(toQt(field.control));
    if (control == nullptr || !holds(*control, field.kind)) {
        throw std::logic_error(fmt::format("The form has no control \"{}\" for the field \"{}\".",
                                           field.control, field.column));
    }
    return *control;
}

/// What a choice is stored as, which may differ from what is shown.
QString choiceAt(const QComboBox& combo, int row) {
    const auto data = combo.itemData(row);
    return data.isValid() ? data.toString() : combo.itemText(row);
}

/// The row of a stored text; -1 for none.
int rowOf(const QComboBox& combo, const QString& stored) {
    for (int row = 0; row < combo.count(); ++row) {
        if (choiceAt(combo, row).compare(stored.trimmed(), Qt::CaseInsensitive) == 0) {
            return row;
        }
    }
    return -1;
}

void choose(QComboBox& combo, const QString& stored) {
    if (const int last = combo.count() - 1; combo.itemData(last, UnknownRole).toBool()) {
        combo.removeItem(last);
    }
    int row = rowOf(combo, stored);
    if (row < 0 && !stored.isEmpty()) {
        row = combo.count();
        combo.addItem(stored, stored);
        combo.setItemData(row, true, UnknownRole);
    }
    combo.setCurrentIndex(row);
}

bool isUnknownChoice(const QWidget& control) {
    const auto* combo = qobject_cast<const QComboBox*>(&control);
    return combo != nullptr && combo->currentData(UnknownRole).toBool();
}

/// A key in the spelling of the list, where it is in it.
std::string keyIn(const MultiColumnCombo& combo) {
    const auto key = combo.columnText(0);
    return base::equalsNoCase(key, base::trim(combo.text())) ? key : combo.text();
}

base::Value read(const QWidget& control) {
    if (const auto* number = qobject_cast<const NumberBox*>(&control); number && number->number()) {
        return *number->number();
    }
    if (const auto* time = qobject_cast<const TimeBox*>(&control)) {
        return time->tidied();
    }
    if (const auto* line = qobject_cast<const QLineEdit*>(&control)) {
        return fromQt(line->text());
    }
    if (const auto* lines = qobject_cast<const QPlainTextEdit*>(&control)) {
        return fromQt(lines->toPlainText());
    }
    if (const auto* key = qobject_cast<const MultiColumnCombo*>(&control)) {
        return keyIn(*key);
    }
    if (const auto* combo = qobject_cast<const QComboBox*>(&control)) {
        return fromQt(choiceAt(*combo, combo->currentIndex()));
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&control)) {
        return button->isChecked();
    }
    return fromQt(qobject_cast<const QLabel*>(&control)->text());
}

/// The text that a control shows for a value: of a time its time of day.
QString textOf(const base::Value& value) {
    if (value.isNull()) {
        return {};
    }
    return toQt(value.isDate() ? base::tidyTime(value.asDate().timeValue().text())
                               : value.asText());
}

/// One of two options is given up by choosing the other one.
void check(QAbstractButton& button, bool yes) {
    button.setChecked(yes);
    for (auto* option : button.parentWidget()->findChildren<QRadioButton*>(
             QString(), Qt::FindDirectChildrenOnly)) {
        if (!yes && isA<QRadioButton>(button) && option != &button) {
            option->setChecked(true);
        }
    }
}

void write(QWidget& control, const base::Value& value) {
    if (auto* number = qobject_cast<NumberBox*>(&control);
        number && (value.isInteger() || value.isDouble())) {
        number->setNumber(value.asNumber());
    } else if (auto* line = qobject_cast<QLineEdit*>(&control)) {
        line->setText(textOf(value));
        line->setCursorPosition(0);
    } else if (auto* lines = qobject_cast<QPlainTextEdit*>(&control)) {
        lines->setPlainText(textOf(value));
    } else if (auto* key = qobject_cast<MultiColumnCombo*>(&control)) {
        key->setText(fromQt(textOf(value)));
    } else if (auto* combo = qobject_cast<QComboBox*>(&control)) {
        choose(*combo, textOf(value));
    } else if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
        check(*button, value.asBoolean());
    } else {
        qobject_cast<QLabel*>(&control)->setText(textOf(value));
    }
}

void showUnknownChoice(QWidget& control) {
    const bool unknown = isUnknownChoice(control);
    controls::showRefused(control, unknown,
                          unknown
                              ? QStringLiteral("\"%1\" is none of the choices.  Choose one.")
                                    .arg(qobject_cast<const QComboBox*>(&control)->currentText())
                              : QString());
}

/// A field that was refused looks as before once something else stands in it.
void clearRefusalOnChange(QWidget& control) {
    const auto changed = [&control] { showUnknownChoice(control); };
    if (auto* line = qobject_cast<QLineEdit*>(&control)) {
        QObject::connect(line, &QLineEdit::textChanged, line, changed);
    } else if (auto* lines = qobject_cast<QPlainTextEdit*>(&control)) {
        QObject::connect(lines, &QPlainTextEdit::textChanged, lines, changed);
    } else if (auto* combo = qobject_cast<QComboBox*>(&control)) {
        QObject::connect(combo, &QComboBox::currentTextChanged, combo, changed);
    }
}

std::string conflictQuestion(const Entries& entries, const Record& stored, std::string_view what) {
    const bool isKnown =
        stored["changeddt"] != entries.known["changeddt"] && !stored["ChangedBy"].isNull();
    return fmt::format(ConflictText, isKnown ? stored.text("ChangedBy") : "another program", what,
                       changesByOthers(entries, stored));
}

/// Shows the tab that a control is on, and the part of the form.
void reveal(QWidget& control) {
    for (QWidget* page = &control; page->parentWidget() != nullptr; page = page->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(page->parentWidget()->parentWidget())) {
            area->ensureWidgetVisible(&control);
        }
        if (auto* tabs = qobject_cast<QTabWidget*>(page->parentWidget()->parentWidget())) {
            tabs->setCurrentWidget(page);
        }
    }
}

/// What a box says of a field, as it is said beside it.
QString besideField(const QWidget& control, std::string_view text) {
    const auto* combo = qobject_cast<const MultiColumnCombo*>(&control);
    if (combo != nullptr && combo->isUnknown()) {
        return QStringLiteral("\"%1\" is not in the list.  Choose one of its rows.")
            .arg(combo->currentText().trimmed());
    }
    constexpr std::string_view Sigh = "Oops, ";
    QString sentence = toQt(text.starts_with(Sigh) ? text.substr(Sigh.size()) : text);
    return sentence.isEmpty() ? sentence : sentence.left(1).toUpper() + sentence.mid(1);
}

void showRefusal(QWidget& control, std::string_view text) {
    controls::showRefused(control, true, besideField(control, text));
    reveal(control);
    control.setFocus();
    if (auto* line = qobject_cast<QLineEdit*>(&control)) {
        line->selectAll();
    }
}

}  // namespace

RecordBoxes::RecordBoxes(QWidget& form, const FieldTable& fields) : known_(fields) {
    for (const Field& field : fields) {
        if (field.control.empty()) {
            continue;
        }
        auto* control = &controlOf(form, field);
        if (std::ranges::find(boxes_, control, &Box::control) != boxes_.end()) {
            throw std::logic_error(
                fmt::format("The control \"{}\" stands for two fields.", field.control));
        }
        Box& box = boxes_.emplace_back();
        box.field = &field;
        box.control = control;
        clearRefusalOnChange(*control);
    }
}

bool RecordBoxes::Box::isTouched() const {
    return field->use != FieldUse::Shown && read(*control) != shown;
}

void RecordBoxes::fill(Box& box, const Record& stored) {
    const auto& value = stored[box.field->column];
    known_.set(box.field->column, value);
    write(*box.control, value);
    box.shown = read(*box.control);
}

void RecordBoxes::show(const Record& stored) {
    known_ = stored;
    for (Box& box : boxes_) {
        fill(box, stored);
    }
    clearRefusals();
}

void RecordBoxes::refresh(const Record& stored) {
    for (Box& box : boxes_) {
        if (!box.isTouched()) {
            fill(box, stored);
        }
    }
}

void RecordBoxes::takeOver(const Record& stored) {
    refresh(stored);
    known_ = stored;
}

void RecordBoxes::type(std::string_view column, const base::Value& value) {
    write(*boxOf(column).control, value);
}

std::string RecordBoxes::typed(std::string_view column) const {
    return read(*boxOf(column).control).asText();
}

bool RecordBoxes::areTouched() const { return std::ranges::any_of(boxes_, &Box::isTouched); }

Entries RecordBoxes::entries() const {
    Entries entries{known_, known_};
    for (const Box& box : boxes_) {
        if (box.field->kind == FieldKind::Choice || box.isTouched()) {
            entries.entered.enter(box.field->column, read(*box.control));
        }
    }
    return entries;
}

std::string RecordBoxes::unknownChoices() const {
    std::string lines;
    for (const Box& box : boxes_) {
        if (isUnknownChoice(*box.control)) {
            lines += fmt::format("{}{}: \"{}\" is none of the choices.", lines.empty() ? "" : "\n",
                                 box.field->caption, known_.text(box.field->column));
        }
    }
    return lines;
}

std::optional<Fault> RecordBoxes::refuseFault(const Entries& entries) {
    clearRefusals();
    auto fault = findFault(entries);
    if (fault) {
        refuse(*fault);
    }
    return fault;
}

void RecordBoxes::refuse(const Fault& fault) {
    showRefusal(*boxOf(fault.column).control, fault.text);
    base::MsgBox(fault.text, fault.title, base::MsgIcon::Information);
}

const Field* RecordBoxes::refuseUnknownKey(const QWidget& control) {
    const auto box = std::ranges::find(boxes_, &control, &Box::control);
    const auto* combo = qobject_cast<const MultiColumnCombo*>(&control);
    if (combo == nullptr || !combo->isUnknown() || !box->isTouched()) {
        return nullptr;
    }
    showRefusal(*box->control, {});
    return box->field;
}

void RecordBoxes::clearRefusals() {
    for (const Box& box : boxes_) {
        showUnknownChoice(*box.control);
    }
}

bool RecordBoxes::settle(const Entries& entries, const Record& stored, const char* title,
                         std::string_view what) {
    const auto answer = base::MsgBox(conflictQuestion(entries, stored, what), title,
                                     base::MsgIcon::Exclamation, base::MsgButtons::YesNoCancel);
    if (answer == base::MsgAnswer::Yes) {
        takeOver(stored);
    } else if (answer == base::MsgAnswer::No) {
        show(stored);
    }
    return answer != base::MsgAnswer::Cancel;
}

const RecordBoxes::Box& RecordBoxes::boxOf(std::string_view column) const {
    return *std::ranges::find(boxes_, column, [](const Box& box) { return box.field->column; });
}

}  // namespace data
