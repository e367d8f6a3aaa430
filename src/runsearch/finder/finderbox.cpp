#include "runsearch/finder/finderbox.h"

#include <QStandardItemModel>

#include "platform/controls/qtext.h"
#include "platform/forms/operation.h"

namespace runsearch {

using controls::fromQt;
using controls::toQt;

constexpr std::size_t MostOffered = 12;
constexpr std::size_t RowsAtOnce = 200;
constexpr int SliceMs = 20;

FinderBox::FinderBox(QWidget* parent)
    : FoundLine(tr("Runs found"), static_cast<int>(MostOffered) + 1, parent) {
    setPlaceholderText(tr("Find a run (Ctrl+K)"));
    setAccessibleName(tr("Find a run"));
    setToolTip(
        tr("Finds runs of the whole district by id, description, school or stop.  Enter "
           "opens the run."));
    setClearButtonEnabled(true);
    connect(this, &QLineEdit::textEdited, this, &FinderBox::offerWanted);
}

FinderBox::~FinderBox() = default;

QSize FinderBox::sizeHint() const {
    constexpr int Characters = 26;
    const QSize size = QLineEdit::sizeHint();
    return {Characters * fontMetrics().averageCharWidth() + size.height(), size.height()};
}

void FinderBox::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    if (isStale_) {
        emit readingWanted();
    }
}

bool FinderBox::readOn(ado::Connection& routing) {
    if (isStale_) {
        isStale_ = false;
        reading_ = std::make_unique<RunIndex>(routing);
    }
    const forms::WorkSlice slice(SliceMs);
    do {
        reading_->readOn(RowsAtOnce);
    } while (!reading_->isWhole() && !slice.isOver());
    if (reading_->isWhole()) {
        index_ = std::move(reading_);
        if (hasFocus() && !text().trimmed().isEmpty()) {
            offer();
        }
    }
    return reading_ != nullptr;
}

/// Before the first reading is done, among what is read so far.
void FinderBox::offer() {
    const RunIndex* searched = index_ ? index_.get() : reading_.get();
    found().clear();
    if (searched == nullptr || text().trimmed().isEmpty()) {
        return hideFound();
    }
    for (const auto& run : searched->find(fromQt(text()), MostOffered)) {
        addRow(run);
    }
    if (!searched->isWhole()) {
        addHint(tr("Still reading the runs and stops of the district…"));
    } else if (found().rowCount() == 0) {
        addHint(tr("No run has all these words."));
    }
    showFound();
}

void FinderBox::addRow(const FoundRun& run) {
    auto* item = new QStandardItem(
        toQt(run.run + "   " + run.description + (run.why.empty() ? "" : "   (" + run.why + ")")));
    item->setData(toQt(run.run), Qt::UserRole);
    found().appendRow(item);
}

void FinderBox::take(const QModelIndex& row) {
    const auto run = fromQt(row.data(Qt::UserRole).toString());
    hideFound();
    if (!run.empty()) {
        clear();
        emit taken(run);
    }
}

}  // namespace runsearch
