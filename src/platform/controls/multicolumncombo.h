#pragma once

#include <QComboBox>
#include <string>

#include "platform/table/texttable.h"

namespace controls {

class TableModel;

/// A combo box over rows of several columns; its text is the first column. Any text may be typed:
/// one that is the first column of a row (without regard to case) makes that row the current one,
/// any other leaves no row current. Typing offers the rows that contain the text anywhere; where it
/// is one alone, Enter, Tab and leaving take it. The wheel changes nothing.
class MultiColumnCombo : public QComboBox {
    Q_OBJECT

public:
    explicit MultiColumnCombo(QWidget* parent = nullptr);

    /// Replaces the rows; no row is chosen and the text is empty afterwards.
    void setTable(table::TextTable table);
    [[nodiscard]] const table::TextTable& table() const;

    [[nodiscard]] std::string text() const;
    /// Shows a text as if it had been typed, without the signal.
    void setText(const std::string& text);

    /// The row that the text belongs to (from 0), -1 for none.
    [[nodiscard]] int chosenRow() const { return currentIndex(); }
    /// A column (from 0) of the chosen row; "" where none is chosen.
    [[nodiscard]] std::string columnText(int column) const;
    /// Whether it holds a text that belongs to no row.
    [[nodiscard]] bool isUnknown() const;
    /// Takes the row that a typed text alone fits, as Enter and leaving do.
    void takeOnlyFit();
    /// No row and an empty text; the rows stay.
    void clearChoice();

    void showPopup() override;

signals:
    /// The user chose a row from the list, with the arrow keys, or by typing what it alone fits.
    void chosen(int row);
    /// The focus left the control for another one.
    void left();

protected:
    void wheelEvent(QWheelEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void offerRowsWhileTyping();
    void makeRoomForCaptions();
    void matchTyped(const QString& typed);
    void setRowKeepingText(int row);

    TableModel* model_;
    bool typed_ = false;  ///< by the user, since the text was set
};

}  // namespace controls
