#include "runsearch/finder/finderbox.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QStandardItemModel>
#include <algorithm>

#include "platform/controls/qtext.h"
#include "platform/forms/operation.h"

namespace runsearch {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr std::size_t MostOffered = 12;
constexpr std::size_t RowsAtOnce = 200;
constexpr int SliceMs = 20;

}  // namespace

FinderBox::FinderBox(QWidget* parent)
    : QLineEdit(parent),
      found_(new QStandardItemModel(this)),
      popup_(new QCompleter(found_, this)) {
    setPlaceholderText(tr("Find a run (Ctrl+K)"));
    setAccessibleName(tr("Find a run"));
    setToolTip(
        tr("Finds runs of the whole district by id, description, school or stop.  Enter "
           "opens the run."));
    setClearButtonEnabled(true);
    popup_->setWidget(this);
    popup_->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    popup_->setMaxVisibleItems(static_cast<int>(MostOffered) + 1);
    popup_->popup()->setAccessibleName(tr("Runs found"));
    connect(popup_, qOverload<const QModelIndex&>(&QCompleter::activated), this,
            [this](const QModelIndex& row) { take(row); });
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
    found_->clear();
    if (searched == nullptr || text().trimmed().isEmpty()) {
        return popup_->popup()->hide();
    }
    for (const auto& run : searched->find(fromQt(text()), MostOffered)) {
        addRow(run);
    }
    if (!searched->isWhole()) {
        addHint(tr("Still reading the runs and stops of the district…"));
    } else if (found_->rowCount() == 0) {
        addHint(tr("No run has all these words."));
    }
    popup_->popup()->setMinimumWidth(
        std::min(popup_->popup()->sizeHintForColumn(0) + 2 * height(), window()->width() * 3 / 4));
    popup_->complete();
}

void FinderBox::addRow(const FoundRun& found) {
    auto* item = new QStandardItem(toQt(found.run + "   " + found.description +
                                        (found.why.empty() ? "" : "   (" + found.why + ")")));
    item->setData(toQt(found.run), Qt::UserRole);
    found_->appendRow(item);
}

void FinderBox::addHint(const QString& hint) {
    auto* item = new QStandardItem(hint);
    item->setFlags(Qt::NoItemFlags);
    item->setForeground(palette().text());
    found_->appendRow(item);
}

void FinderBox::take(const QModelIndex& row) {
    const auto run = fromQt(row.data(Qt::UserRole).toString());
    popup_->popup()->hide();
    if (!run.empty()) {
        clear();
        emit taken(run);
    }
}

void FinderBox::keyPressEvent(QKeyEvent* event) {
    QAbstractItemView& rows = *popup_->popup();
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!rows.isVisible()) {
                emit offerWanted();
            }
            return take(rows.currentIndex().isValid() ? rows.currentIndex()
                                                      : popup_->completionModel()->index(0, 0));
        case Qt::Key_Escape:
            if (rows.isVisible()) {
                return rows.hide();
            }
            return text().isEmpty() ? event->ignore() : clear();
        default:
            QLineEdit::keyPressEvent(event);
    }
}

}  // namespace runsearch
