#pragma once

#include <QWidget>

class QBoxLayout;
class QPushButton;
namespace controls {
class NoteBox;
}

namespace startup {

/// A quiet line in a form: what others have changed of that which it shows, and a button that has
/// it read anew. Hidden until there is something to tell.
class ChangedNote : public QWidget {
    Q_OBJECT

public:
    explicit ChangedNote(QWidget* parent);
    /// Puts it at a place of a column (-1 is its end), best where it moves nothing that somebody is
    /// about to click, and behind a control of the same form in the order of Tab.
    void standIn(QBoxLayout& column, int place, QWidget* before);

    void tell(const QString& text);
    /// There is nothing to tell any more.
    void clear();

signals:
    /// The button was pressed.
    void readAnew();

private:
    controls::NoteBox* text_;
    QPushButton* button_;
};

/// "ANN changed this run at 10:32." Without a name others have.
[[nodiscard]] QString changedBy(const QString& what, const QString& who, const QString& when);

}  // namespace startup
