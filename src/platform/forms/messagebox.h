#pragma once

#include <QDialog>

#include "platform/base/ports.h"

class QDialogButtonBox;
class QHBoxLayout;
class QScrollArea;
class QVBoxLayout;

namespace forms {

/// One message or question on the desktop: the first line of a message bold, what it concerns below
/// behind a rule, "Details…" folded away. Texts stand as they are given; what is higher than the
/// screen scrolls above the buttons.
class MessageBox : public QDialog {
    Q_OBJECT

public:
    explicit MessageBox(const base::MsgRequest& request, QWidget* owner = nullptr);

    /// What was pressed; Escape and closing give the answer that changes nothing (Cancel, else No,
    /// else OK).
    [[nodiscard]] base::MsgAnswer answer() const { return answer_; }

protected:
    /// A button's letter presses it, with Alt or without; Ctrl+C copies the box as text; page keys
    /// scroll.
    void keyPressEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] QWidget* textColumn();
    void fillScroll(QWidget* column);
    void addButtons(QHBoxLayout& row);
    /// The folded details, to be laid out below the row; null where there are none.
    [[nodiscard]] QWidget* addDetails(QHBoxLayout& row);
    [[nodiscard]] int textWidth() const;
    [[nodiscard]] bool pressByLetter(int key);
    void scroll(int key);

    base::MsgRequest request_;
    base::MsgAnswer answer_;
    QScrollArea* scroll_;
    QDialogButtonBox* buttons_;
};

}  // namespace forms
