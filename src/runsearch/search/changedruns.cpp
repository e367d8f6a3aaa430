#include "runsearch/search/changedruns.h"

#include <QPainter>

#include "platform/base/text.h"
#include "platform/controls/qtext.h"

namespace runsearch {

namespace {

std::string keyOf(std::string_view run) { return base::uppered(base::trim(run)); }

}  // namespace

void ChangedRuns::begin(const table::TextTable& shown, bool withRouting, std::string question) {
    end();
    shown_ = &shown;
    withRouting_ = withRouting;
    question_ = std::move(question);
}

void ChangedRuns::end() {
    comparison_.reset();
    shown_ = nullptr;
    isStale_ = false;
    listed_.clear();
    changed_.clear();
}

void ChangedRuns::findListed() {
    if (!listed_.empty()) {
        return;
    }
    listed_.reserve(shown_->rowCount());
    for (std::size_t row = 0; row < shown_->rowCount(); ++row) {
        listed_.insert(keyOf(shown_->text(row, 0)));
    }
}

bool ChangedRuns::hear(const store::Changes& changes) {
    if (shown_ == nullptr || !changes.any) {
        return false;
    }
    isStale_ = isStale_ || !changes.areAllTold;
    if (!changes.areAllTold) {
        return true;
    }
    findListed();
    for (const store::ToldRow& row : changes.rows) {
        if (const std::string key = keyOf(row.value); listed_.contains(key)) {
            changed_.insert(key);
        }
    }
    return false;
}

int ChangedRuns::takeTurn(ado::Connection& connection) {
    constexpr std::size_t RowsATurn = 250;
    constexpr int AtOnceMs = 1;
    constexpr int LaterMs = 2000;
    if (shown_ == nullptr) {
        return 0;
    }
    if (comparison_ == nullptr) {
        isStale_ = false;
        comparison_ = std::make_unique<RunComparison>(*shown_, withRouting_, question_, connection);
    }
    if (comparison_->goOn(RowsATurn)) {
        return AtOnceMs;
    }
    for (const std::string& run : comparison_->changed()) {
        changed_.insert(keyOf(run));
    }
    comparison_.reset();
    return isStale_ ? LaterMs : 0;
}

bool ChangedRuns::contains(std::string_view run) const { return changed_.contains(keyOf(run)); }

void ChangedRunDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
    RowDelegate::paint(painter, option, index);
    const auto run = controls::fromQt(index.siblingAtColumn(0).data().toString());
    if (runs_.count() > 0 && runs_.contains(run)) {
        constexpr int Parts = 5;
        const bool isSelected = (option.state & QStyle::State_Selected) != 0;
        QRect bar = option.rect;
        bar.setWidth(std::max(option.fontMetrics.height() / Parts, 3));
        painter->fillRect(bar, option.palette.color(isSelected ? QPalette::HighlightedText
                                                               : QPalette::WindowText));
    }
}

}  // namespace runsearch
