#pragma once

#include <memory>
#include <vector>

#include "help/guide/guide.h"
#include "startup/forms/trappedform.h"

class QTreeWidgetItem;

namespace Ui {
class GuideWindow;
}

namespace help {

/// The guide: contents or what a search found at the left, a page at the right. It belongs to no
/// form and keeps the program alive for none.
class GuideWindow : public startup::TrappedForm {
    Q_OBJECT

public:
    GuideWindow();
    ~GuideWindow() override;

    /// Shows the window so that it can be used, whatever is open.
    void showBeside();
    void goTo(const Place& place);
    [[nodiscard]] const Place& place() const { return visited_[at_].place; }

    void Back_Click();
    void Forward_Click();
    void Home_Click();
    void Contents_Click(QTreeWidgetItem& item);
    void Search_Change();
    void Hits_Click(int row);
    void Find_Change();
    void FindNext_Click();
    void FindPrevious_Click();
    void PrintIt_Click();
    void PageText_FollowLink(const QUrl& link);

protected:
    void Form_Load() override;
    bool Form_QueryUnload() override;
    bool event(QEvent* event) override;
    void reject() override;

private:
    /// Where the reader was, and how far down.
    struct Visit {
        Place place;
        int scrolled = 0;
    };

    void wireTools();
    void wirePage();
    void wireKeys();
    void fillContents();
    void show(const Place& place, int scrolled);
    void visit(std::size_t at);
    void followInContents(const Place& place);
    void followIcons();
    void goToMark(int step);
    void showMarkCount(int count);
    void enterFirstHit();
    void status(const QString& text);

    std::unique_ptr<Ui::GuideWindow> ui_;
    std::vector<Visit> visited_{Visit{}};
    std::size_t at_ = 0;
    std::vector<Place> hits_;
    int marks_ = 0;
};

}  // namespace help
