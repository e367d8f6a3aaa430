#pragma once

#include <memory>
#include <vector>

#include "platform/forms/timer.h"
#include "reports/catalog/preparation.h"
#include "reports/page/layout.h"
#include "reports/preview/reportoutput.h"
#include "startup/forms/trappedform.h"

namespace Ui {
class ReportPreview;
}

namespace reports {

/// A prepared report on the screen as it will be on paper. It opens on the first page; the others
/// are laid out while the planner reads.
class ReportPreview : public startup::TrappedForm {
    Q_OBJECT

public:
    explicit ReportPreview(forms::Form* owner = nullptr);
    ~ReportPreview() override;

    /// The report to show, in place of any other one.
    void receive(std::shared_ptr<Prepared> prepared, Request request, int copies);

    void PrintIt_Click();
    void ExportIt_Click();
    void Exit_Click();
    void LayOut_Timer();
    void PageNumber_Change();
    void Zoom_Change();
    void Find_Change();
    void FindNext_Click();
    void FindPrevious_Click();
    void Contents_ClickItem(int row);

    /// Whether all pages are laid out.
    [[nodiscard]] bool isWhole() const { return isWhole_; }

protected:
    void Form_Load() override;
    bool Form_QueryUnload() override;
    void Form_Unload() override;
    [[nodiscard]] Message lockedMessage() const override;

private:
    void wireTools();
    void wirePages();
    void wireKeys();
    void begin();
    void showGrown();
    void showTitle();
    void addContents(std::size_t firstPage);
    void showPage(int page);
    void showZoom();
    void goToHit(int step);
    void showHitCount();
    [[nodiscard]] Format format() const;
    [[nodiscard]] const std::vector<Page>& pages() const { return layout_->pages().pages; }

    std::unique_ptr<Ui::ReportPreview> ui_;
    std::unique_ptr<ReportOutput> output_;
    forms::Timer LayOut;
    forms::Timer Timer1;  ///< clears the status
    std::shared_ptr<Prepared> prepared_;
    Request request_;
    int copies_ = 1;
    std::unique_ptr<Content> content_;
    std::unique_ptr<Layout> layout_;
    std::size_t shown_ = 0;  ///< so many pages are in the view, the search and the contents
    bool isWhole_ = false;
    /// Where the rows of the contents lead.
    struct Target {
        int page;
        float y;
    };
    std::vector<Target> targets_;
};

/// Shows a prepared report over a form, in the one preview that there is.
void showPreview(forms::Form& over, std::shared_ptr<Prepared> prepared, Request request,
                 int copies);

}  // namespace reports
