#pragma once

#include <QLineEdit>
#include <vector>

#include "map/run/mapsearch.h"
#include "platform/forms/timer.h"

class QCompleter;
class QStandardItemModel;

namespace map {

/// A box that finds runs, stops, schools and places while the planner types; Enter takes the first
/// one or the one that Down led to.
class SearchBox : public QLineEdit {
    Q_OBJECT

public:
    explicit SearchBox(QWidget* parent = nullptr);

    /// Shows what was found below the box.
    void offer(std::vector<SearchHit> hits);
    [[nodiscard]] const std::vector<SearchHit>& offered() const { return hits_; }

signals:
    /// The planner has typed, and paused.
    void offerWanted();
    void taken(const map::SearchHit& hit);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void take(int row);

    std::vector<SearchHit> hits_;
    forms::Timer pause_;
    QStandardItemModel* found_;
    QCompleter* popup_;
};

}  // namespace map
