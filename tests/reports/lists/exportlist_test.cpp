#include "reports/lists/exportlist.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <gmock/gmock.h>

#include "platform/forms/filedialog.h"
#include "platform/forms/listexporter.h"
#include "reports/lists/listfile.h"
#include "startup/base/session.h"
#include "support/formtest.h"

namespace reports {

namespace {

using controls::MultiColumnList;
using testing::HasSubstr;
using testing::StartsWith;

class ListForm : public forms::Form {
public:
    ListForm() : Form("ListForm") {
        setWindowTitle("Run Search - 3 runs");
        list_ = new MultiColumnList(this);
        list_->setObjectName("RunList");
    }

protected:
    void formLoad() override {
        table::TextTable table;
        table.columns = {{"Run"},
                         {"Riders", 0, table::CellKind::Number},
                         {"Miles", 0, table::CellKind::Decimal},
                         {"Start", 0, table::CellKind::Time}};
        table.hiddenFields = {"ID"};
        const auto add = [&](const char* run, const base::Value& riders, const base::Value& miles,
                             const base::Value& start) {
            const auto row = table.addRow();
            table.set(row, 0, run);
            table.set(row, 1, riders);
            table.set(row, 2, miles);
            table.set(row, 3, start);
            table.set(row, 4, "hidden");
        };
        add("103-PM, \"late\"", 12, 3.256, base::Date::timeOfDay(15, 5));
        add("101-AM", {}, 1.5, {});
        add("102 Zoë", 7, {}, base::Date::timeOfDay(7, 30));
        list_->setTable(std::move(table));
    }

private:
    MultiColumnList* list_;
};

class ExportList : public support::FormTest<> {
protected:
    ExportList() {
        forms::listExporter() = exportList;
        forms::listPrinter() = printList;
        forms::setFileChooser([this](const forms::FileQuestion& asked) {
            asked_ = asked;
            return QString::fromStdString(chosen_);
        });
        startup::gSecurityOn = false;
    }
    ~ExportList() override {
        forms::listExporter() = {};
        forms::listPrinter() = {};
        forms::setFileChooser({});
    }
    ListForm& form() override { return loaded<ListForm>(); }

    /// Chooses "Export List…" in the list's menu, and a file of that name; what it holds then.
    std::string exported(const std::string& name) {
        chosen_ = name.starts_with('/') ? name : folder_.path() + name;
        choose("&Export List…");
        return support::contentsOf(chosen_);
    }

    void choose(const char* inMenu) {
        QMenu menu;
        list("RunList").fillMenu(menu);
        const auto actions = menu.actions();
        const auto found = std::ranges::find(actions, QString(inMenu), &QAction::text);
        ASSERT_TRUE(found != actions.end());
        (*found)->trigger();
    }

    /// How often the preview that is open finds a text on its pages.
    static std::string foundOnPages(const char* text) {
        forms::Form& preview = *opened("ReportPreview");
        preview.findChild<QLineEdit*>("Find")->setText(text);
        return preview.findChild<QLabel*>("FindCount")->text().toStdString();
    }

    support::TemporaryFolder folder_;
    forms::FileQuestion asked_;
    std::string chosen_;
};

TEST_F(ExportList, WritesTheRowsAsShownInTheirOrder) {
    list("RunList").toggleSort(0);
    EXPECT_EQ(exported("runs.CSV"),
              "\xEF\xBB\xBFRun,Riders,Miles,Start\r\n"
              "101-AM,0,1.50,\r\n"
              "102 Zoë,7,0.00,07:30 AM\r\n"
              "\"103-PM, \"\"late\"\"\",12,3.26,03:05 PM\r\n");
    EXPECT_THAT(asked_.startAt.toStdString(), testing::EndsWith("/Run Search.csv"));
    EXPECT_TRUE(asked_.isToWrite);
    EXPECT_EQ(lastTitle(), "");
}

TEST_F(ExportList, WritesAWorkbookOfNumbersAndTimes) {
    list("RunList").toggleSort(0);
    EXPECT_THAT(exported("runs.xlsx"), StartsWith("PK"));
    const std::string read =
        "/usr/bin/python3 -c \"import openpyxl,sys; "
        "rows=list(openpyxl.load_workbook(sys.argv[1]).active"
        ".iter_rows(min_row=3,values_only=True));"
        " sys.exit(rows[0]!=('Run','Riders','Miles','Start') or rows[1][1:3]!=(0,1.5)"
        " or rows[1][3] is not None or str(rows[2][3])!='07:30:00' or rows[3][2]!=3.256"
        " or len(rows)!=4 or rows[2][0]!='102 Zoë')\" " +
        chosen_;
    EXPECT_EQ(std::system(read.c_str()), 0);
}

TEST_F(ExportList, PrintsTheRowsAsShownUnderTheFormsNameAndTheFilter) {
    list("RunList").setFilter("late");
    startup::gSecurityOn = true;
    choose("P&rint List…");
    EXPECT_EQ(lastTitle(), "Do Not Have Authority");
    EXPECT_EQ(opened("ReportPreview"), nullptr);
    startup::gSecurityOn = false;
    choose("P&rint List…");
    EXPECT_EQ(foundOnPages("103-PM, \"late\""), "1 of 1");
    EXPECT_EQ(foundOnPages("3.26"), "1 of 1");
    EXPECT_EQ(foundOnPages("Zoë"), "none");
    const forms::Form& preview = *opened("ReportPreview");
    EXPECT_EQ(preview.findChild<QLabel*>("Title")->text(), "Run Search");
    EXPECT_EQ(preview.findChild<QLabel*>("Selection")->text(), "1 of 3 rows, filtered by “late”");
}

TEST_F(ExportList, TellsWhatWentWrongAndLeavesTheFileAlone) {
    const std::string there = folder_.write("there.csv", "mine");
    EXPECT_EQ(exported("/proc/none/runs.csv"), "");
    EXPECT_EQ(lastTitle(), "List Not Exported");
    EXPECT_THAT(session.boxes.shown.back().concerns, HasSubstr("/proc/none"));
    exported("/proc/none/runs.xlsx");
    EXPECT_THAT(lastText(), HasSubstr("choose another folder"));
    exported("runs.doc");
    EXPECT_THAT(lastText(), HasSubstr(".csv or .xlsx"));
    EXPECT_FALSE(std::filesystem::exists(chosen_));

    list("RunList").setHasMore(true);
    answer(base::MsgAnswer::Cancel);
    EXPECT_EQ(exported("there.csv"), "mine");
    EXPECT_EQ(lastTitle(), "Not All Rows Are Listed");
    startup::gSecurityOn = true;
    EXPECT_EQ(exported("there.csv"), "mine");
    EXPECT_EQ(lastTitle(), "Do Not Have Authority");
    EXPECT_TRUE(std::filesystem::exists(there));
}

TEST_F(ExportList, AStoppedListLeavesNoFile) {
    form();
    const auto path = folder_.path() + "stopped.csv";
    EXPECT_FALSE(writeList(list("RunList").shown(), {}, ListFile::Csv, path,
                           [](double done) { return done < 0.5; }));
    EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace

}  // namespace reports
