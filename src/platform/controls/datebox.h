#pragma once

#include "platform/controls/tidybox.h"

class QCalendarWidget;

namespace controls {

/// A box for a day. Anything may be typed; on leaving or Enter a day is tidied ("1/5/26" becomes
/// "1/5/2026"), any other text stays for the form to refuse. Empty is "". F4, Alt+Down or a click
/// on the sign at its end opens a calendar to choose from.
class DateBox : public TidyBox {
    Q_OBJECT

public:
    explicit DateBox(QWidget* parent = nullptr);

    void tidy() override;
    void openCalendar();

    /// Wide enough for every day, however large the font.
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void take(QDate day);

    QCalendarWidget* calendar_ = nullptr;  ///< made when it is first opened
};

}  // namespace controls
