#pragma once

#include <optional>

#include "platform/controls/tidybox.h"

namespace controls {

/// A box for a number with a decimal point. Anything may be typed; on leaving or Enter a number is
/// tidied (" 07.50" becomes "7.5") and rounded to the digits that the box has, any other text stays
/// for the form to refuse. The up and down keys count by one within the range.
class NumberBox : public TidyBox {
    Q_OBJECT
    /// Digits behind the point; 0 from the start, which takes whole numbers only and rounds none.
    Q_PROPERTY(int decimals READ decimals WRITE setDecimals)
    Q_PROPERTY(double minimum READ minimum WRITE setMinimum)
    Q_PROPERTY(double maximum READ maximum WRITE setMaximum)

public:
    explicit NumberBox(QWidget* parent = nullptr);

    /// The number as rounded; nothing for an empty box, a text that is no number or no whole one
    /// where it must be, or a number beyond the range.
    [[nodiscard]] std::optional<double> number() const;
    /// Without padding or trailing zeros.
    void setNumber(double number);
    [[nodiscard]] bool isBlank() const;
    void tidy() override;

    [[nodiscard]] int decimals() const { return decimals_; }
    void setDecimals(int decimals) { decimals_ = decimals; }
    [[nodiscard]] double minimum() const { return minimum_; }
    void setMinimum(double minimum) { minimum_ = minimum; }
    [[nodiscard]] double maximum() const { return maximum_; }
    void setMaximum(double maximum) { maximum_ = maximum; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void count(double step);

    int decimals_ = 0;
    double minimum_ = -999999999;
    double maximum_ = 999999999;
};

}  // namespace controls
