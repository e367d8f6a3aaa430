#include "platform/controls/numberbox.h"

#include <QKeyEvent>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>

namespace controls {

namespace {

// A text that an "e", a group separator or "nan" would make a number is a slip of the fingers here.
bool looksLikeNumber(const QString& text, bool isWhole) {
    static const QRegularExpression form(QStringLiteral(R"(^[+-]?(\d+(?:\.(\d*))?|\.(\d+))$)"));
    const auto match = form.match(text);
    if (!match.hasMatch()) {
        return false;
    }
    QString fraction = match.captured(2) + match.captured(3);
    while (fraction.endsWith('0')) {
        fraction.chop(1);
    }
    return !isWhole || fraction.isEmpty();
}

/// Halves away from 0, also those that have no exact binary form.
double rounded(double number, int decimals) {
    constexpr double ToNearestHalf = 1 + 1e-12;
    const double scale = std::pow(10, decimals);
    return std::round(number * scale * ToNearestHalf) / scale + 0.0;  // no -0
}

}  // namespace

NumberBox::NumberBox(QWidget* parent) : TidyBox(parent) {
    setAlignment(Qt::AlignRight);
    setMaxLength(20);
}

std::optional<double> NumberBox::number() const {
    const QString typed = text().trimmed();
    if (!looksLikeNumber(typed, decimals_ == 0)) {
        return std::nullopt;
    }
    const double number = rounded(typed.toDouble(), decimals_);
    if (number < minimum_ || number > maximum_) {
        return std::nullopt;
    }
    return number;
}

void NumberBox::setNumber(double number) {
    QString shown = QString::number(number, 'f', decimals_);
    if (shown.contains('.')) {
        while (shown.endsWith('0')) {
            shown.chop(1);
        }
        if (shown.endsWith('.')) {
            shown.chop(1);
        }
    }
    setText(shown == "-0" ? QStringLiteral("0") : shown);
}

bool NumberBox::isBlank() const { return text().trimmed().isEmpty(); }

void NumberBox::tidy() {
    if (const auto typed = number()) {
        setNumber(*typed);
    }
}

void NumberBox::count(double step) {
    if (isReadOnly() || (!isBlank() && !number())) {
        return;
    }
    setNumber(std::clamp(number().value_or(0) + step, minimum_, maximum_));
}

void NumberBox::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down) {
        count(event->key() == Qt::Key_Up ? 1 : -1);
        return;
    }
    TidyBox::keyPressEvent(event);
}

}  // namespace controls
