#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

#include "platform/controls/rowdelegate.h"
#include "platform/store/base/watch.h"
#include "runsearch/search/runcomparison.h"

namespace runsearch {

/// Which runs of the run list others have changed or deleted since it was filled. Where they are
/// not told one by one the list is compared with the district in small turns.
class ChangedRuns {
public:
    /// The list was filled anew by a question; it outlives what is found here.
    void begin(const table::TextTable& shown, bool withRouting, std::string question);
    /// There is no list any more.
    void end();

    /// What others have written. True where there is something to compare in turns.
    [[nodiscard]] bool hear(const store::Changes& changes);
    /// A turn; the milliseconds until the next one, 0 for none. Raises store::StoreError.
    [[nodiscard]] int takeTurn(ado::Connection& connection);

    void giveUpComparing() { comparison_.reset(); }

    [[nodiscard]] bool contains(std::string_view run) const;
    [[nodiscard]] std::size_t count() const { return changed_.size(); }

private:
    void findListed();

    const table::TextTable* shown_ = nullptr;
    bool withRouting_ = false;
    std::string question_;
    std::unordered_set<std::string> listed_;
    std::unordered_set<std::string> changed_;
    std::unique_ptr<RunComparison> comparison_;
    bool isStale_ = false;  ///< others have written since the comparison began
};

/// The first column of the run list, with a bar before a run that others have changed.
class ChangedRunDelegate : public controls::RowDelegate {
    Q_OBJECT

public:
    ChangedRunDelegate(controls::MultiColumnList& list, const ChangedRuns& runs)
        : RowDelegate(list), runs_(runs) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    const ChangedRuns& runs_;
};

}  // namespace runsearch
