#include "stops/triprecord/tripfieldboxes.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPlainTextEdit>
#include <algorithm>

#include "platform/base/text.h"
#include "platform/controls/numberbox.h"
#include "platform/controls/qtext.h"
#include "platform/controls/refused.h"
#include "platform/controls/timebox.h"

namespace stops {

namespace {

using controls::fromQt;
using controls::NumberBox;
using controls::TimeBox;
using controls::toQt;

QString contentOf(const QWidget* control) {
    if (const auto* line = qobject_cast<const QLineEdit*>(control)) {
        return line->text();
    }
    if (const auto* combo = qobject_cast<const QComboBox*>(control)) {
        return combo->currentText();
    }
    if (const auto* box = qobject_cast<const QCheckBox*>(control)) {
        return box->isChecked() ? "1" : "0";
    }
    return qobject_cast<const QPlainTextEdit*>(control)->toPlainText();
}

void showNumber(NumberBox& box, const base::Value& value) {
    if (value.isInteger() || value.isDouble()) {
        box.setNumber(value.asNumber());
    } else {
        box.setText(value.isNull() ? QString() : toQt(value.asText()));
    }
}

void showTime(TimeBox& box, const base::Value& value) {
    const auto text = value.isDate() ? value.asDate().timeValue().text()
                                     : (value.isNull() ? std::string() : value.asText());
    box.setText(toQt(text));
    box.tidy();
}

/// A side that is neither left nor right keeps a line of its own.
void showSide(QComboBox& combo, const std::string& side) {
    combo.clear();
    combo.addItem(QString(), QString());
    combo.addItem(QObject::tr("Right"), QStringLiteral("right"));
    combo.addItem(QObject::tr("Left"), QStringLiteral("left"));
    int row = combo.findData(toQt(side), Qt::UserRole, Qt::MatchFixedString);
    if (row < 0) {
        combo.addItem(toQt(side), toQt(side));
        row = combo.count() - 1;
    }
    combo.setCurrentIndex(row);
}

/// What was typed as it stands, blanks alone as nothing.
base::Value typedText(const QLineEdit& box) {
    const auto text = fromQt(box.text());
    return base::trim(text).empty() ? base::Value() : base::Value(text);
}

base::Value typedNumber(const NumberBox& box) {
    const auto number = box.number();
    return number ? base::Value(*number) : typedText(box);
}

/// A time of day is on the day of the time before it: a run may drive past midnight.
base::Value typedTime(const TimeBox& box, const base::Value& before) {
    const auto time = base::Date::parse(box.tidied());
    if (!time || *time != time->timeValue()) {
        return typedText(box);
    }
    return before.isDate() ? before.asDate().dateValue().plusSeconds(time->seconds) : *time;
}

}  // namespace

void TripFieldBoxes::show(const TripFields& stored) {
    stored_ = stored;
    for (const TripField field : AllTripFields) {
        showField(field, stored[field]);
        shown_[static_cast<std::size_t>(field)] = contentOf(control(field));
    }
    paintRed(std::nullopt);
}

void TripFieldBoxes::showTyped(const TripFields& fields) {
    for (const TripField field : AllTripFields) {
        if (fields[field] != stored_[field]) {
            showField(field, fields[field]);
        }
    }
}

bool TripFieldBoxes::areTouched() const {
    return std::ranges::any_of(AllTripFields, [this](TripField field) { return isTouched(field); });
}

TripFields TripFieldBoxes::entered() const {
    TripFields fields = stored_;
    for (const TripField field : AllTripFields) {
        if (isTouched(field)) {
            fields[field] = read(field);
        }
    }
    return fields;
}

void TripFieldBoxes::paintRed(std::optional<TripField> field) {
    for (const TripField each : AllTripFields) {
        controls::showRefused(*control(each), each == field);
    }
}

void TripFieldBoxes::focus(TripField field) {
    control(field)->setFocus();
    if (auto* line = qobject_cast<QLineEdit*>(control(field))) {
        line->selectAll();
    }
}

bool TripFieldBoxes::isTouched(TripField field) const {
    return contentOf(control(field)) != shown_[static_cast<std::size_t>(field)];
}

void TripFieldBoxes::showField(TripField field, const base::Value& value) {
    QWidget* box = control(field);
    if (auto* number = qobject_cast<NumberBox*>(box)) {
        showNumber(*number, value);
    } else if (auto* time = qobject_cast<TimeBox*>(box)) {
        showTime(*time, value);
    } else if (auto* side = qobject_cast<QComboBox*>(box)) {
        showSide(*side, value.asText());
    } else if (auto* check = qobject_cast<QCheckBox*>(box)) {
        check->setChecked(value.asBoolean());
    } else if (auto* text = qobject_cast<QPlainTextEdit*>(box)) {
        text->setPlainText(toQt(value.asText()));
    }
}

base::Value TripFieldBoxes::read(TripField field) const {
    QWidget* box = control(field);
    if (const auto* number = qobject_cast<NumberBox*>(box)) {
        return typedNumber(*number);
    }
    if (const auto* time = qobject_cast<TimeBox*>(box)) {
        return typedTime(*time, stored_[field]);
    }
    if (const auto* side = qobject_cast<QComboBox*>(box)) {
        return fromQt(side->currentData().toString());
    }
    if (const auto* check = qobject_cast<QCheckBox*>(box)) {
        return check->isChecked();
    }
    return fromQt(contentOf(box));
}

}  // namespace stops
