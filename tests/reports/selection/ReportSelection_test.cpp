#include "reports/selection/ReportSelection.h"

#include <QTimer>
#include <filesystem>

#include <gmock/gmock.h>

#include "platform/ado/session.h"
#include "platform/files/files.h"
#include "platform/forms/filedialog.h"
#include "platform/forms/printerdialog.h"
#include "platform/store/open/open.h"
#include "reports/preview/ReportPreview.h"
#include "reports/printing/printservice.h"
#include "reports/selection/choices.h"
#include "reports/selection/runreport.h"
#include "startup/base/session.h"
#include "support/childprogram.h"
#include "support/formtest.h"

namespace reports {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::StartsWith;

class ReportSelectionForm : public support::FormTest<> {
protected:
    ReportSelectionForm() {
        forms::setFileChooser([this](const forms::FileQuestion& question) {
            asked = question;
            return file;
        });
    }
    void TearDown() override {
        forms::setFileChooser({});
        forms::setPrinterChooser({});
        printing::setService({});
        FormTest::TearDown();
    }
    ReportSelection& form() override {
        auto& made = FormTest::made<ReportSelection>([this] { return runs; });
        made.reportGroup("RUNSEARCH");
        made.load();
        return made;
    }
    std::string exported(const std::string& name) {
        file = QString::fromStdString(district.dataPath() + name);
        click("ExportIt");
        return lastTitle();
    }

    RunsForReports runs{"SELECT * FROM RUN", "all runs", 4};
    QString file;
    forms::FileQuestion asked;
};

TEST_F(ReportSelectionForm, GivesNothingToAUserWithoutThePermission) {
    startup::gSecurityOn = true;
    auto& refused = FormTest::made<ReportSelection>([this] { return runs; });
    refused.showForm();
    EXPECT_EQ(opened("ReportSelection"), nullptr);
    EXPECT_THAT(titles(), ElementsAre("Do Not Have Authority"));
    startup::gSecurityOn = false;
    form().showForm();
    startup::gSecurityOn = true;
    previewRun(form(), "run-stops", "101-AM");
    EXPECT_EQ(opened("ReportPreview"), nullptr);
}

TEST_F(ReportSelectionForm, RemembersWhatWasChosenForEachReport) {
    form().sortField(1, "Run");
    choose("Reports", "Run stop list");
    control<QComboBox>("Paper").setCurrentIndex(1);
    control<QComboBox>("PageBreaks").setCurrentIndex(2);
    control<QComboBox>("Sort1").setCurrentIndex(3);
    check("Descending1");
    choose("Reports", "Run list");
    EXPECT_EQ(text("Paper"), usualPaper() == Paper::A4 ? "A4" : "Letter");
    EXPECT_EQ(text("Sort1"), "Run");
    EXPECT_EQ(text("Orientation"), "Landscape");
    choose("Reports", "Run stop list");
    form().unload();
    forms::Application::instance().startAfresh();
    EXPECT_EQ(list("Reports").chosenKey(), "Run stop list");
    EXPECT_EQ(text("Paper") + text("PageBreaks") + text("Sort1"), "A4for each routeEnd time");
    EXPECT_TRUE(isChecked("Descending1"));
    EXPECT_FALSE(isShown("ConfidentialNote"));
    choose("Reports", "Driver instructions");
    check("StudentNames");
    EXPECT_TRUE(isShown("ConfidentialNote"));
}

TEST_F(ReportSelectionForm, ShowsTheRunsThatTheCallerHasNow) {
    form().showForm();
    EXPECT_EQ(text("Selection"), "4 runs: all runs");
    runs = {"SELECT * FROM RUN WHERE RUN='103-PM'", "run 103…", 1};
    click("Preview");
    support::ControlsOf preview(*opened("ReportPreview"));
    EXPECT_EQ(preview.text("Selection"), "Run 103…");
    preview.type("Find", "103-pm");
    EXPECT_EQ(preview.text("FindCount"), "1 of 1");
    preview.type("Find", "101-AM");
    EXPECT_EQ(preview.text("FindCount"), "none");

    runs.question = "SELECT * FROM RUN WHERE RUN='GONE'";
    click("Preview");
    EXPECT_EQ(lastTitle(), "Nothing to Show");
    check("OnlyChanged");
    type("ChangedSince", "soon");
    click("Preview");
    EXPECT_EQ(lastTitle(), "Invalid Date");
}

TEST_F(ReportSelectionForm, ExportsWhereThePlannerWantsAndTellsWhatCannotBeWritten) {
    form().showForm();
    control<QComboBox>("FileFormat").setCurrentIndex(static_cast<int>(Format::Csv));
    EXPECT_EQ(exported("list"), "");
    EXPECT_EQ(asked.title, "Export Report");
    EXPECT_EQ(asked.startAt.toStdString(), startup::gReportPath + "/VIREOReport.csv");
    EXPECT_TRUE(asked.filter.startsWith("CSV (*.csv);;PDF (*.pdf)")) << asked.filter.toStdString();
    EXPECT_THAT(files::read(district.dataPath() + "list.csv"), HasSubstr("101-AM"));
    EXPECT_TRUE(isShown("SavedBar"));
    EXPECT_EQ(std::filesystem::status(startup::gReportPath).permissions(),
              std::filesystem::status(district.dataPath()).permissions());
    EXPECT_EQ(exported("list.pdf"), "");
    EXPECT_THAT(files::read(district.dataPath() + "list.pdf"), StartsWith("%PDF"));

    EXPECT_EQ(exported("missing/list.pdf"), "Not Exported");
    EXPECT_FALSE(isShown("SavedBar"));
    std::filesystem::create_directory(district.dataPath() + "folder.html");
    EXPECT_EQ(exported("folder.html"), "Not Exported");
    EXPECT_TRUE(std::filesystem::is_empty(district.dataPath() + "folder.html"));
}

TEST_F(ReportSelectionForm, StopsAnExportAndLeavesNoFile) {
    form().showForm();
    forms::WorkSlice::endAllAtOnce(true);
    QTimer impatience;
    QObject::connect(&impatience, &QTimer::timeout, [this] {
        if (form().isBusy()) {
            control<QAbstractButton>("Stop").click();
        }
    });
    impatience.start(0);
    EXPECT_EQ(exported("list.csv"), "");
    forms::WorkSlice::endAllAtOnce(false);
    EXPECT_FALSE(files::exists(district.dataPath() + "list.csv"));
    EXPECT_FALSE(isShown("SavedBar"));
}

TEST_F(ReportSelectionForm, TellsOfALockedReportFileAndPreparesOnceItIsFree) {
    form().showForm();
    startup::gcnVIREORpt->session()->database().setLockTimeout(1);
    {
        const auto other = store::open(district.path(data::DatabaseFile::VIREORpt));
        other->begin();
        click("Preview");
        EXPECT_EQ(lastTitle(), "Database in Use");
    }
    EXPECT_EQ(opened("ReportPreview"), nullptr);
    click("Preview");
    EXPECT_NE(opened("ReportPreview"), nullptr);
    EXPECT_FALSE(ending());
}

TEST_F(ReportSelectionForm, OffersAFileWhereNothingPrints) {
    form().showForm();
    using Printers = std::optional<std::vector<std::string>>;
    for (const Printers& there : {Printers(), Printers(std::in_place)}) {
        printing::setService({[there] { return there; }, [](const auto&) { return "never"; }});
        asked = {};
        answer(base::MsgAnswer::Yes);
        click("PrintIt");
        EXPECT_EQ(lastTitle(), "Not Printed");
        EXPECT_TRUE(asked.startAt.endsWith("/VIREOReport.pdf"));
    }
}

TEST_F(ReportSelectionForm, HandsThePrinterAPrivateFileThatIsGoneAfterwards) {
    form().showForm();
    std::string path;
    std::string refusal;
    std::vector<std::pair<std::string, std::string>> options;
    printing::setService({[] { return std::optional(std::vector<std::string>{"office"}); },
                          [&](const printing::PrintJob& job) {
                              path = job.file;
                              options = job.options;
                              EXPECT_EQ(job.printer, "office");
                              EXPECT_THAT(files::read(path), StartsWith("%PDF"));
                              const auto folder = std::filesystem::path(path).parent_path();
                              EXPECT_EQ(std::filesystem::status(folder).permissions(),
                                        std::filesystem::perms::owner_all);
                              return refusal;
                          }});
    forms::setPrinterChooser([](const forms::PrintQuestion& question) {
        EXPECT_EQ(question.copies, 1);
        EXPECT_TRUE(question.isLandscape);
        return forms::PrintChoice{"office", "", {{"copies", "2"}}};
    });
    click("PrintIt");
    EXPECT_EQ(text("StatusMsg"), "Sent to office.");
    EXPECT_THAT(options, Contains(Pair("copies", "2")));
    constexpr int Patience = 500;
    for (int turn = 0; turn < Patience && files::exists(path); ++turn) {
        forms::pause(10);
    }
    EXPECT_FALSE(files::exists(path));
    EXPECT_THAT(titles(), IsEmpty());
    refusal = "The printer is on fire";
    click("PrintIt");
    EXPECT_THAT(lastText(), HasSubstr(refusal));
}

TEST_F(ReportSelectionForm, APrintServiceThatTakesNoFileSaysWhy) {
    support::ChildProgram server("python3", {"-um", "http.server", "0", "--bind", "127.0.0.1"});
    const std::string line = server.readLine();
    const std::string port = line.substr(line.find(" port ") + 6);
    const std::string place = "127.0.0.1:" + port.substr(0, port.find(' '));
    ASSERT_EQ(::setenv("CUPS_SERVER", place.c_str(), 1), 0);
    const auto any = district.path(data::DatabaseFile::VIREORpt);
    EXPECT_NE(printing::service().print({"office", "Runs", any, {}}), "");
    ::unsetenv("CUPS_SERVER");
}

}  // namespace
}  // namespace reports
