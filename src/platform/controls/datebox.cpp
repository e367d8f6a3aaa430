#include "platform/controls/datebox.h"

#include <QAction>
#include <QCalendarWidget>
#include <QKeyEvent>
#include <QScreen>
#include <QTextCharFormat>
#include <QToolButton>
#include <algorithm>
#include <utility>

#include "platform/base/datetext.h"
#include "platform/base/ports.h"
#include "platform/controls/boxwidth.h"
#include "platform/controls/qtext.h"
#include "platform/controls/signs.h"

namespace controls {

namespace {

/// Plain days and arrows instead of the toolkit's coloured ones.
void dress(QCalendarWidget& calendar) {
    calendar.setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    calendar.setFirstDayOfWeek(Qt::Sunday);
    QTextCharFormat plain;
    plain.setForeground(calendar.palette().text());
    for (const auto day : {Qt::Saturday, Qt::Sunday}) {
        calendar.setWeekdayTextFormat(day, plain);
    }
    for (const auto& [name, arrow] : {std::pair{"qt_calendar_prevmonth", Qt::LeftArrow},
                                      {"qt_calendar_nextmonth", Qt::RightArrow}}) {
        if (auto* button = calendar.findChild<QToolButton*>(name)) {
            button->setIcon({});
            button->setArrowType(arrow);
            QPalette colours = button->palette();
            for (const auto role : {QPalette::ButtonText, QPalette::WindowText, QPalette::Text}) {
                colours.setColor(role, colours.color(QPalette::HighlightedText));
            }
            button->setPalette(colours);
        }
    }
}

QDate qtDay(const base::Date& day) {
    return QDate(1899, 12, 30).addDays(day.seconds / base::Date::SecondsPerDay);
}

}  // namespace

DateBox::DateBox(QWidget* parent) : TidyBox(parent) {
    setPlaceholderText(QStringLiteral("m/d/yyyy"));
    setMaxLength(40);
    QAction* sign =
        addAction(signIcon(Sign::Calendar, QPalette::PlaceholderText), TrailingPosition);
    sign->setText(tr("Calendar"));
    sign->setToolTip(tr("Choose from a calendar (F4)"));
    connect(sign, &QAction::triggered, this, [this] { openCalendar(); });
}

QSize DateBox::minimumSizeHint() const {
    return sizeForText(*this, QLineEdit::minimumSizeHint(), QStringLiteral("00/00/0000"));
}

void DateBox::tidy() {
    if (const auto day = base::typedDay(fromQt(text()))) {
        setText(toQt(day->text()));
    } else if (text().trimmed().isEmpty()) {
        clear();
    }
}

void DateBox::openCalendar() {
    if (calendar_ == nullptr) {
        calendar_ = new QCalendarWidget(this);
        calendar_->setWindowFlags(Qt::Popup);
        dress(*calendar_);
        connect(calendar_, &QCalendarWidget::clicked, this, [this](QDate day) { take(day); });
        connect(calendar_, &QCalendarWidget::activated, this, [this](QDate day) { take(day); });
    }
    const auto typed = base::typedDay(fromQt(text()));
    calendar_->setSelectedDate(qtDay(typed.value_or(base::ports().clock->now())));
    calendar_->adjustSize();
    const QRect room = screen()->availableGeometry();
    QPoint place = mapToGlobal(QPoint(0, height()));
    if (place.y() + calendar_->height() > room.bottom()) {
        place.setY(mapToGlobal(QPoint()).y() - calendar_->height());
    }
    place.setX(std::min(place.x(), room.right() - calendar_->width()));
    calendar_->move(place);
    calendar_->show();
    calendar_->setFocus();
}

void DateBox::take(QDate day) {
    setText(toQt(base::Date::of(day.year(), day.month(), day.day()).text()));
    calendar_->hide();
    setFocus();
}

void DateBox::keyPressEvent(QKeyEvent* event) {
    const bool opens = event->key() == Qt::Key_F4 ||
                       (event->key() == Qt::Key_Down && event->modifiers() == Qt::AltModifier);
    if (opens) {
        openCalendar();
        return;
    }
    TidyBox::keyPressEvent(event);
}

}  // namespace controls
