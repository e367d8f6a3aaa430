#include "map/window/searchbox.h"

#include <QStandardItemModel>
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
    : FoundLine(tr("Found on the map"), MostSeen, parent) {
    connect(this, &QLineEdit::textEdited, this, [this] { pause_.startOnce(PauseMs); });
    connect(&pause_, &forms::Timer::tick, this, &SearchBox::offerWanted);
}

void SearchBox::offer(std::vector<SearchHit> hits) {
    hits_ = std::move(hits);
    found().clear();
    for (const auto& hit : hits_) {
        found().appendRow(new QStandardItem(textOf(hit)));
    }
    if (hits_.empty()) {
        addHint(tr("No run, stop, school or address with these words."));
    }
    if (text().trimmed().isEmpty() || !isVisible()) {
        return hideFound();
    }
    showFound();
}

void SearchBox::take(const QModelIndex& row) {
    hideFound();
    if (row.isValid() && row.row() < static_cast<int>(hits_.size())) {
        const auto hit = hits_[static_cast<std::size_t>(row.row())];
        clear();
        emit taken(hit);
    }
}

}  // namespace map
