#pragma once

#include <QLineEdit>

namespace controls {

/// A box in which anything may be typed; on leaving or Enter it is tidied.
class TidyBox : public QLineEdit {
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

    /// Writes what was typed as the box writes it; a text that it does not understand stays.
    virtual void tidy() = 0;

protected:
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace controls
