#pragma once

#include <string>

#include "platform/controls/tidybox.h"

namespace controls {

/// A box for a time of day. Anything may be typed; on leaving or Enter a time is tidied ("7:5 am"
/// becomes "07:05 AM"), any other text stays for the form to refuse. Empty is "".
class TimeBox : public TidyBox {
    Q_OBJECT

public:
    explicit TimeBox(QWidget* parent = nullptr);

    /// The text as it would be after leaving.
    [[nodiscard]] std::string tidied() const;
    void tidy() override;

    /// Wide enough for every time, however large the font.
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
};

}  // namespace controls
