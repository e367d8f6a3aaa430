#pragma once

#include <QLabel>

namespace controls {

/// A line of text that ends in dots where there is no room for it; it shows whole on hovering.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QRect line() const;
    [[nodiscard]] bool isCut() const;
};

}  // namespace controls
