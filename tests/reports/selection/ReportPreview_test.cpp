#include "reports/preview/ReportPreview.h"

#include <QApplication>
#include <QClipboard>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include "reports/preview/pagestrip.h"
#include "reports/preview/pageview.h"
#include "support/formtest.h"

namespace reports {
namespace {

using testing::StartsWith;

/// A list of so many groups of 40 rows.
class LongContent : public Content {
public:
    explicit LongContent(int groups) : groups_(groups) {}

    [[nodiscard]] const Report& report() const override { return report_; }
    [[nodiscard]] const Options& options() const override { return options_; }
    [[nodiscard]] const Heading& heading() const override { return heading_; }
    [[nodiscard]] std::size_t size() const override {
        return static_cast<std::size_t>(groups_) * InGroup;
    }
    std::optional<Item> next() override {
        const int item = next_++;
        const int group = item / InGroup;
        if (group == groups_) {
            return std::nullopt;
        }
        return item % InGroup == 0
                   ? Item(GroupHead{0, "School " + std::to_string(group), "39 runs", false})
                   : Item(Row{{"Street of row " + std::to_string(item)}});
    }

private:
    static constexpr int InGroup = 40;
    static inline const Report report_{.id = "long",
                                       .title = "Long",
                                       .columns = {{"A", "Place", CellKind::Text, 300}},
                                       .groups = {{"G", "G", "run", false}}};
    Options options_;
    Heading heading_{.title = "Long list", .selection = "Many runs"};
    int groups_;
    int next_ = 0;
};

class LongReport : public Prepared {
public:
    explicit LongReport(int groups) : groups_(groups) {}
    [[nodiscard]] std::unique_ptr<Content> content() override {
        return std::make_unique<LongContent>(groups_);
    }
    [[nodiscard]] std::size_t runs() const override { return 1; }

private:
    int groups_;
};

class ReportPreviewForm : public support::FormTest<> {
protected:
    ReportPreview& form() override { return made<ReportPreview>(); }
    PageView& pages() { return control<PageView>("Pages"); }
    void open(int groups) {
        form().receive(std::make_shared<LongReport>(groups), {}, 1);
        form().showForm();
    }
    /// Whether there is ink in the middle of a page among those in small.
    bool isPainted(int page) {
        auto& strip = control<PageStrip>("Strip");
        QRect middle(0, 0, 84, 60);
        middle.moveCenter(strip.visualRect(strip.model()->index(page, 0)).center());
        const QImage seen = strip.viewport()->grab(middle).toImage();
        int ink = 0;
        for (int i = 0; i < seen.width() * seen.height(); ++i) {
            ink += qGray(seen.pixel(i % seen.width(), i / seen.width())) < 240 ? 1 : 0;
        }
        return ink > 0;
    }
    void layOutAll() {
        while (!form().isWhole()) {
            form().LayOut_Timer();
        }
    }
};

TEST_F(ReportPreviewForm, OpensOnItsFirstPageAndStaysUsableWhileTheOthersCome) {
    forms::WorkSlice::endAllAtOnce(true);
    open(900);
    EXPECT_EQ(pages().pageCount(), 1);
    EXPECT_EQ(text("PageCount"), "of 1 …");
    type("Find", "school");
    EXPECT_EQ(text("FindCount"), "1 of 2");
    for (int turn = 0; turn < 20; ++turn) {
        form().LayOut_Timer();
    }
    const int some = pages().pageCount();
    EXPECT_GT(some, 10);
    type("PageNumber", "9");
    leave("PageNumber");
    EXPECT_EQ(pages().page(), 8);
    forms::WorkSlice::endAllAtOnce(false);
    layOutAll();
    EXPECT_GT(pages().pageCount(), 700);
    EXPECT_EQ(pages().page(), 8);
    EXPECT_EQ(text("FindCount"), "1 of 900");
    EXPECT_EQ(list("Contents").rows(), 900);
    EXPECT_EQ(text("PageCount"), "of " + std::to_string(pages().pageCount()));
    EXPECT_TRUE(QTest::qWaitFor([this] { return isPainted(7) && isPainted(8); }));
}

TEST_F(ReportPreviewForm, ShowsAnotherReportOrGoesWhileOneIsLaidOut) {
    open(900);
    form().receive(std::make_shared<LongReport>(1), {}, 1);
    layOutAll();
    EXPECT_EQ(list("Contents").rows(), 1);
    form().receive(std::make_shared<LongReport>(900), {}, 1);
    click("Exit");
    EXPECT_EQ(opened("ReportPreview"), nullptr);
}

TEST_F(ReportPreviewForm, GoesThroughWhatItFindsRoundTheEnds) {
    open(30);
    layOutAll();
    type("Find", "school 2");
    EXPECT_EQ(text("FindCount"), "1 of 11");
    click("FindPrevious");
    EXPECT_EQ(text("FindCount"), "11 of 11");
    const int last = pages().page();
    click("FindNext");
    EXPECT_EQ(text("FindCount"), "1 of 11");
    EXPECT_LT(pages().page(), last);
    choose("Contents", "School 29");
    EXPECT_GE(pages().page(), last);
    pages().select(pages().hits().back());
    pages().copy();
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "School 2");
    pages().selectEverything();
    pages().copy();
    EXPECT_THAT(QApplication::clipboard()->text().toStdString(),
                StartsWith("School 0 39 runs\nStreet of row 1\n"));
}

TEST_F(ReportPreviewForm, ZoomsAroundWhatIsSeen) {
    open(30);
    layOutAll();
    EXPECT_EQ(text("Zoom"), "Fit Width");
    pages().goTo(5, 300);
    const int page = pages().page();
    type("Zoom", "200");
    leave("Zoom");
    EXPECT_EQ(text("Zoom"), "200 %");
    EXPECT_EQ(pages().page(), page);
    click("ZoomIn");
    EXPECT_EQ(pages().zoom(), 2.5);
    pages().setZoom(100);
    EXPECT_EQ(pages().zoom(), PageView::MostZoom);
    type("Zoom", "Fit Page");
    leave("Zoom");
    press("Pages", Qt::Key_PageDown);
    EXPECT_EQ(pages().page(), page + 1);
    press("Pages", Qt::Key_End);
    EXPECT_EQ(pages().page(), pages().pageCount() - 1);
    click("Exit");
    forms::Application::instance().startAfresh();
    open(2);
    EXPECT_EQ(text("Zoom"), "Fit Page");
}

}  // namespace
}  // namespace reports
