#pragma once

#include <QLineEdit>
#include <memory>
#include <string>

#include "runsearch/finder/runindex.h"

class QCompleter;
class QStandardItemModel;

namespace runsearch {

/// A box that finds runs while the user types: those that fit best stand below it, Enter takes the
/// first one or the one that Down led to. Who owns it reads for it whenever it wants to, which is
/// when it is entered first, and again after forget().
class FinderBox : public QLineEdit {
    Q_OBJECT

public:
    explicit FinderBox(QWidget* parent = nullptr);
    ~FinderBox() override;

    /// Runs may have changed: what is searched is read anew when the box is entered again.
    void forget() { isStale_ = true; }
    /// Reads on for some milliseconds; true while there is more. Raises what RunIndex raises.
    [[nodiscard]] bool readOn(ado::Connection& routing);
    /// Shows what fits the text. Raises what RunIndex raises.
    void offer();
    [[nodiscard]] QSize sizeHint() const override;

signals:
    void readingWanted();
    void offerWanted();
    /// The user took a run; it may be gone by now.
    void taken(const std::string& run);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void addRow(const FoundRun& found);
    void addHint(const QString& hint);
    void take(const QModelIndex& row);

    std::unique_ptr<RunIndex> index_;    ///< what is searched
    std::unique_ptr<RunIndex> reading_;  ///< what will be, once it is whole
    QStandardItemModel* found_;
    QCompleter* popup_;
    bool isStale_ = true;
};

}  // namespace runsearch
