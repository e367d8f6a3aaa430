#pragma once

#include <QLineEdit>

class QCompleter;
class QModelIndex;
class QStandardItemModel;

namespace controls {

/// A line that finds things while the user types: they stand below it, Enter takes the first one or
/// the one that Down led to, Escape hides them and then clears the line.
class FoundLine : public QLineEdit {
    Q_OBJECT

public:
    /// `rows` says to screen readers what stands below.
    FoundLine(const QString& rows, int mostSeen, QWidget* parent);

signals:
    /// What fits the text should be shown.
    void offerWanted();

protected:
    virtual void take(const QModelIndex& row) = 0;
    /// What was found; a row that nobody can take says why there is nothing.
    [[nodiscard]] QStandardItemModel& found() const { return *found_; }
    void addHint(const QString& hint);
    void showFound();
    void hideFound();
    void keyPressEvent(QKeyEvent* event) override;

private:
    QStandardItemModel* found_;
    QCompleter* popup_;
};

}  // namespace controls
