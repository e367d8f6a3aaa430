#pragma once

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <string>

#include <gmock/gmock.h>

#include "platform/ado/recordset.h"
#include "platform/controls/layoutmemory.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/forms/formregistry.h"
#include "runedit/editor/Run.h"
#include "startup/base/session.h"
#include "support/smalldistrict.h"
#include "support/testsession.h"

/// The real run editor on a small district of its own, and another program on the same files. The
/// run 101-AM has 2 minutes of loading at S3 and 10 minutes of driving to S1.
class RunTest : public testing::Test {
protected:
    struct Form : runedit::Run {
        using Run::Form_Activate;
    };

    RunTest() {
        forms::Application::instance().startAfresh();
        support::fillSmall(district);
        byOthers(
            "UPDATE STOP_TRIPTYPE SET LOAD_TIME=2, NUM_STUDENTS=50 WHERE RUN='101-AM' AND "
            "RUNSEQ=1");
        byOthers(
            "UPDATE STOP_TRIPTYPE SET LOAD_TIME=0, TIME_TOSTOP=10 WHERE RUN='101-AM' AND "
            "RUNSEQ=2");
        byOthers("UPDATE STOP SET XPOS=1, YPOS=1");
        byOthers("UPDATE District SET CHECKRUNNUMPASS=1");
        byOthers("UPDATE RUN SET VEHTYPE='SMALL', PICKUP=1, CREATEDBY='BO' WHERE RUN='101-AM'");
        session.start(district.configFolder());
        startup::gCommandLine = "ANN";
    }
    ~RunTest() override {
        forms::FormRegistry::instance().destroyAll();
        forms::Application::instance().startAfresh();
        controls::LayoutMemory::instance().forget();
    }

    /// Opens a run, or a new one for "".
    Form& open(const std::string& run = "101-AM") {
        forms::Application::instance().startAfresh();  // closing the only form ended the program
        auto& form = forms::FormRegistry::instance().make<Form>();
        if (run.empty()) {
            form.editNew();
        } else {
            form.edit(run);
        }
        form.showForm();
        return form;
    }
    Form& form() { return forms::FormRegistry::instance().make<Form>(); }

    template <class Control>
    Control& control(const char* name) {
        auto* found = form().findChild<Control*>(name);
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    bool isEnabled(const char* name) { return control<QWidget>(name).isEnabled(); }
    bool isRed(const char* name) {
        return control<QWidget>(name).palette().color(QPalette::Base) == QColor(255, 0, 0);
    }
    std::string text(const char* name) {
        if (auto* box = form().findChild<QLineEdit*>(name)) {
            return box->text().toStdString();
        }
        if (auto* combo = form().findChild<QComboBox*>(name)) {
            return combo->currentText().toStdString();
        }
        return control<QLabel>(name).text().toStdString();
    }
    void type(const char* name, const std::string& text) {
        const auto typed = QString::fromStdString(text);
        if (auto* box = form().findChild<QLineEdit*>(name)) {
            box->setText(typed);
        } else if (auto* lines = form().findChild<QPlainTextEdit*>(name)) {
            lines->setPlainText(typed);
        } else if (auto* keys = form().findChild<controls::MultiColumnCombo*>(name)) {
            keys->setText(text);
        } else {
            control<QComboBox>(name).setCurrentText(typed);
        }
    }
    void click(const char* name) { control<QAbstractButton>(name).click(); }
    void check(const char* name, bool on = true) { control<QAbstractButton>(name).setChecked(on); }
    controls::MultiColumnList& list(const char* name) {
        return control<controls::MultiColumnList>(name);
    }

    void byOthers(const std::string& statement) {
        district.sql(data::DatabaseFile::Routing, statement);
    }
    /// One value of the routing database as text; "Null".
    static std::string stored(const std::string& sql) {
        ado::Recordset row;
        row.Open(sql, *startup::gcnRouting);
        return row.Eof() ? "no row" : row.Fields(0).isNull() ? "Null" : row.Fields(0).asText();
    }
    static std::string storedRun(const std::string& column, const std::string& run = "101-AM") {
        return stored("Select " + column + " From RUN Where RUN='" + run + "'");
    }

    /// The title of the box shown last; "" where none was.
    std::string lastTitle() {
        return session.boxes.shown.empty() ? "" : session.boxes.shown.back().title;
    }
    std::vector<std::string> titles() {
        std::vector<std::string> all;
        for (const auto& box : session.boxes.shown) {
            all.push_back(box.title);
        }
        session.boxes.shown.clear();
        return all;
    }

    support::TestDistrict district;
    support::TestSession session;
};
