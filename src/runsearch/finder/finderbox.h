#pragma once

#include <memory>
#include <string>

#include "platform/controls/foundline.h"
#include "runsearch/finder/runindex.h"

namespace runsearch {

/// A box that finds runs: those that fit best stand below it. Who owns it reads for it whenever it
/// wants to, which is when it is entered first, and again after forget().
class FinderBox : public controls::FoundLine {
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
    /// The user took a run; it may be gone by now.
    void taken(const std::string& run);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void take(const QModelIndex& row) override;

private:
    void addRow(const FoundRun& run);

    std::unique_ptr<RunIndex> index_;    ///< what is searched
    std::unique_ptr<RunIndex> reading_;  ///< what will be, once it is whole
    bool isStale_ = true;
};

}  // namespace runsearch
