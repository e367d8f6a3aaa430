#pragma once

#include <QElapsedTimer>
#include <QTreeView>

namespace controls {

class TableModel;

/// The list that drops down from a combo: rows with column headers. Typing looks for a row whose
/// first column starts with the letters, otherwise for one that contains them anywhere.
class ComboPopup : public QTreeView {
    Q_OBJECT

public:
    /// `rows` gives the captions and widths; the popup may show a selection of its rows.
    explicit ComboPopup(const TableModel& rows, QWidget* parent = nullptr);

    /// Gives the columns the widths of the table (scaled by the font) or what their texts take;
    /// returns what the popup takes in pixels, scroll bar included.
    int fitColumns();

    void keyboardSearch(const QString& letters) override;

private:
    const TableModel& rows_;
    QString typed_;
    QElapsedTimer sinceTyped_;
};

}  // namespace controls
