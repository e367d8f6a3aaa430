#include "platform/controls/timebox.h"

#include "platform/base/timetext.h"
#include "platform/controls/boxwidth.h"
#include "platform/controls/qtext.h"

namespace controls {

TimeBox::TimeBox(QWidget* parent) : TidyBox(parent) {
    setPlaceholderText(QStringLiteral("hh:mm AM"));
    setMaxLength(40);
}

QSize TimeBox::sizeHint() const {
    return sizeForText(*this, QLineEdit::minimumSizeHint(), QStringLiteral("00:00:00 AM"));
}

QSize TimeBox::minimumSizeHint() const {
    return sizeForText(*this, QLineEdit::minimumSizeHint(), QStringLiteral("00:00 AM"));
}

std::string TimeBox::tidied() const { return base::tidyTime(fromQt(text())); }

void TimeBox::tidy() {
    const QString tidy = toQt(tidied());
    if (tidy != text()) {
        setText(tidy);
    }
}

}  // namespace controls
