#pragma once

#include <vector>

#include "map/run/mapsearch.h"
#include "platform/controls/foundline.h"
#include "platform/forms/timer.h"

namespace map {

/// A box that finds runs, stops, schools and places; it wants to offer them when the planner has
/// typed, and paused.
class SearchBox : public controls::FoundLine {
    Q_OBJECT

public:
    explicit SearchBox(QWidget* parent = nullptr);

    /// Shows what was found below the box.
    void offer(std::vector<SearchHit> hits);
    [[nodiscard]] const std::vector<SearchHit>& offered() const { return hits_; }

signals:
    void taken(const map::SearchHit& hit);

protected:
    void take(const QModelIndex& row) override;

private:
    std::vector<SearchHit> hits_;
    forms::Timer pause_;
};

}  // namespace map
