#include "map/window/searchbox.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QStandardItemModel>
#include <algorithm>
#include <utility>

#include "platform/controls/qtext.h"

namespace map {

using controls::toQt;

namespace {

constexpr int PauseMs = 200;
constexpr int MostSeen = 12;

QString textOf(const SearchHit& hit) {
    auto name = toQt(hit.name);
    switch (hit.kind) {
        case SearchHit::Kind::Run:
            return SearchBox::tr("Run %1   %2").arg(toQt(hit.key), name);
        case SearchHit::Kind::Stop:
            return SearchBox::tr("Stop %1   %2").arg(toQt(hit.key), name);
        case SearchHit::Kind::School:
            return SearchBox::tr("School   %1").arg(name);
        case SearchHit::Kind::Place:
            break;
    }
    return name;
}

}  // namespace

SearchBox::SearchBox(QWidget* parent)
    : QLineEdit(parent),
      found_(new QStandardItemModel(this)),
      popup_(new QCompleter(found_, this)) {
    popup_->setWidget(this);
    popup_->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    popup_->setMaxVisibleItems(MostSeen);
    popup_->popup()->setAccessibleName(tr("Found on the map"));
    connect(popup_, qOverload<const QModelIndex&>(&QCompleter::activated), this,
            [this](const QModelIndex& row) { take(row.row()); });
    connect(this, &QLineEdit::textEdited, this, [this] { pause_.startOnce(PauseMs); });
    connect(&pause_, &forms::Timer::tick, this, &SearchBox::offerWanted);
}

void SearchBox::offer(std::vector<SearchHit> hits) {
    hits_ = std::move(hits);
    found_->clear();
    for (const auto& hit : hits_) {
        found_->appendRow(new QStandardItem(textOf(hit)));
    }
    if (hits_.empty()) {
        auto* hint = new QStandardItem(tr("No run, stop, school or address with these words."));
        hint->setFlags(Qt::NoItemFlags);
        found_->appendRow(hint);
    }
    if (text().trimmed().isEmpty() || !isVisible()) {
        return popup_->popup()->hide();
    }
    popup_->popup()->setMinimumWidth(
        std::min(popup_->popup()->sizeHintForColumn(0) + 2 * height(), window()->width() / 2));
    popup_->complete();
}

void SearchBox::take(int row) {
    popup_->popup()->hide();
    if (row >= 0 && row < static_cast<int>(hits_.size())) {
        const auto hit = hits_[static_cast<std::size_t>(row)];
        clear();
        emit taken(hit);
    }
}

void SearchBox::keyPressEvent(QKeyEvent* event) {
    QAbstractItemView& rows = *popup_->popup();
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!rows.isVisible()) {
                emit offerWanted();
            }
            return take(std::max(0, rows.currentIndex().row()));
        case Qt::Key_Escape:
            if (rows.isVisible()) {
                return rows.hide();
            }
            return text().isEmpty() ? event->ignore() : clear();
        default:
            QLineEdit::keyPressEvent(event);
    }
}

}  // namespace map
