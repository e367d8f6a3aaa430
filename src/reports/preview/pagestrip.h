#pragma once

#include <QListView>
#include <memory>

#include "reports/page/layout.h"

namespace reports {

class PagePictures;
class PageStripModel;

/// The pages of a report in small, one of them current. Pages count from 0.
class PageStrip : public QListView {
    Q_OBJECT

public:
    explicit PageStrip(QWidget* parent = nullptr);
    ~PageStrip() override;

    /// The pages outlive the strip, or another showPages().
    void showPages(const Pages* pages);
    /// More pages are laid out.
    void grow();
    /// All pages are laid out: they bear their number in all.
    void complete();
    /// Makes a page current without a signal.
    void follow(int page);

    /// Room for a page beside the scroll bar.
    [[nodiscard]] QSize sizeHint() const override;

signals:
    /// The user made a page current.
    void pageChosen(int page);

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    PageStripModel* model_;
    std::unique_ptr<PagePictures> pictures_;
    bool following_ = false;
};

}  // namespace reports
