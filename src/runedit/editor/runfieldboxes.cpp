#include "runedit/editor/runfieldboxes.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabWidget>

#include "platform/base/text.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/controls/qtext.h"
#include "platform/controls/refused.h"
#include "platform/controls/timebox.h"

namespace runedit {

namespace {

using controls::fromQt;
using controls::MultiColumnCombo;
using controls::TimeBox;
using controls::toQt;

/// A key in the spelling of the list, where it is in it.
std::string keyIn(const MultiColumnCombo& combo) {
    const auto key = combo.columnText(0);
    return base::equalsNoCase(key, base::trim(combo.text())) ? key : combo.text();
}

void choose(QComboBox& combo, RunField field, const std::string& text) {
    const int row = combo.findText(toQt(base::trim(text)), Qt::MatchFixedString);
    // Any time to use but the start is the end.
    combo.setCurrentIndex(row < 0 && field == RunField::TimeToUse ? combo.count() - 1 : row);
}

/// Shows the tab that a control is on.
void reveal(QWidget& control) {
    for (QWidget* page = &control; page->parentWidget() != nullptr; page = page->parentWidget()) {
        if (auto* tabs = qobject_cast<QTabWidget*>(page->parentWidget()->parentWidget())) {
            tabs->setCurrentWidget(page);
        }
    }
}

}  // namespace

RunTexts RunFieldBoxes::texts() const {
    RunTexts texts;
    for (const auto& info : runFields()) {
        texts[info.field] = text(info.field);
    }
    return texts;
}

std::string RunFieldBoxes::text(RunField field) const {
    const QWidget* box = control(field);
    if (const auto* time = qobject_cast<const TimeBox*>(box)) {
        return time->tidied();
    }
    if (const auto* line = qobject_cast<const QLineEdit*>(box)) {
        return fromQt(line->text());
    }
    if (const auto* key = qobject_cast<const MultiColumnCombo*>(box)) {
        return keyIn(*key);
    }
    if (const auto* choice = qobject_cast<const QComboBox*>(box)) {
        return fromQt(choice->currentText());
    }
    if (const auto* lines = qobject_cast<const QPlainTextEdit*>(box)) {
        return fromQt(lines->toPlainText());
    }
    if (const auto* total = qobject_cast<const QLabel*>(box)) {
        return fromQt(total->text());
    }
    return yesNoText(qobject_cast<const QAbstractButton*>(box)->isChecked());
}

void RunFieldBoxes::show(RunField field, const std::string& text) {
    QWidget* box = control(field);
    if (auto* line = qobject_cast<QLineEdit*>(box)) {
        line->setText(toQt(text));
        line->setCursorPosition(0);
    } else if (auto* key = qobject_cast<MultiColumnCombo*>(box)) {
        key->setText(text);
    } else if (auto* choice = qobject_cast<QComboBox*>(box)) {
        choose(*choice, field, text);
    } else if (auto* lines = qobject_cast<QPlainTextEdit*>(box)) {
        lines->setPlainText(toQt(text));
    } else if (auto* total = qobject_cast<QLabel*>(box)) {
        total->setText(toQt(text));
    } else if (field == RunField::Pickup && text != yesNoText(true)) {
        dropOff_->setChecked(true);
    } else {
        qobject_cast<QAbstractButton*>(box)->setChecked(text == yesNoText(true));
    }
}

void RunFieldBoxes::show(const RunTexts& texts) {
    for (const auto& info : runFields()) {
        show(info.field, texts[info.field]);
    }
}

void RunFieldBoxes::refuse(RunField field) {
    QWidget* box = control(field);
    controls::showRefused(*box, true);
    reveal(*box);
    box->setFocus();
    if (auto* line = qobject_cast<QLineEdit*>(box)) {
        line->selectAll();
    }
}

void RunFieldBoxes::clearRefusals() {
    for (QWidget* box : controls_) {
        controls::showRefused(*box, false);
    }
}

}  // namespace runedit
