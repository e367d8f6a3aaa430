#include "support/controls.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

namespace support {

std::string Controls::text(const char* name) {
    auto& found = control(name);
    for (const char* property : {"currentText", "plainText", "text"}) {
        if (const auto text = found.property(property); text.isValid()) {
            return text.toString().toStdString();
        }
    }
    ADD_FAILURE() << name << " shows no text";
    return {};
}

void Controls::type(const char* name, const std::string& text) {
    auto& found = control(name);
    const auto typed = QString::fromStdString(text);
    if (auto* combo = qobject_cast<controls::MultiColumnCombo*>(&found)) {
        combo->setText(text);
    } else if (auto* plainCombo = qobject_cast<QComboBox*>(&found)) {
        plainCombo->setCurrentText(typed);
    } else if (auto* lines = qobject_cast<QPlainTextEdit*>(&found)) {
        lines->setPlainText(typed);
    } else {
        control<QLineEdit>(name).setText(typed);
    }
}

void Controls::leave(const char* name) {
    QFocusEvent left(QEvent::FocusOut, Qt::TabFocusReason);
    QCoreApplication::sendEvent(&control(name), &left);
}

void Controls::press(const char* name, Qt::Key key, Qt::KeyboardModifiers with) {
    QTest::keyClick(&control(name), key, with);
}

bool Controls::isRed(const char* name) {
    return control(name).palette().color(QPalette::Base) == QColor(255, 0, 0);
}

std::string Controls::row(const char* name, int row) {
    auto& from = list(name);
    std::string cells;
    for (int i = 0; row >= 0 && i < from.model()->columnCount(); ++i) {
        cells += (i == 0 ? "" : "|") + from.cellText(row, i);
    }
    return cells;
}

std::vector<std::string> Controls::column(const char* name, int column) {
    auto& from = list(name);
    std::vector<std::string> cells;
    cells.reserve(static_cast<std::size_t>(from.rows()));
    for (int row = 0; row < from.rows(); ++row) {
        cells.push_back(from.cellText(row, column));
    }
    return cells;
}

int Controls::rowOf(const char* name, const std::string& key) {
    const auto keys = column(name);
    const auto found = std::find(keys.begin(), keys.end(), key);
    return found == keys.end() ? -1 : static_cast<int>(found - keys.begin());
}

void Controls::choose(const char* name, const std::string& key) {
    const int row = rowOf(name, key);
    ASSERT_NE(row, -1) << key << " in " << name;
    list(name).choose(row);
    emit list(name).rowClicked(row);
}

void Controls::activate(const char* name, const std::string& key) {
    choose(name, key);
    emit list(name).rowActivated(rowOf(name, key));
}

}  // namespace support
