#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QTabWidget>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "platform/controls/layoutmemory.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/controls/timebox.h"
#include "platform/forms/formregistry.h"
#include "runsearch/search/frmTarn.h"
#include "startup/base/session.h"
#include "support/smalldistrict.h"
#include "support/testsession.h"

/// The real main form on a small district of its own. Controls are reached by their names, as a
/// planner's script does.
class FormTest : public testing::Test {
protected:
    struct Form : runsearch::frmTarn {
        using frmTarn::Form_Activate;
        using frmTarn::Form_QueryUnload;
    };

    FormTest() {
        forms::Application::instance().startAfresh();
        support::fillSmall(district);
        session.start(district.configFolder());
    }
    ~FormTest() override {
        forms::FormRegistry::instance().destroyAll();
        forms::Application::instance().startAfresh();
        controls::LayoutMemory::instance().forget();
    }

    Form& form() { return forms::FormRegistry::instance().load<Form>(); }

    template <class Control>
    Control& control(const char* name) {
        auto* found = form().findChild<Control*>(name);
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    controls::MultiColumnList& list(const char* name) {
        return control<controls::MultiColumnList>(name);
    }
    controls::MultiColumnCombo& combo(const char* name) {
        return control<controls::MultiColumnCombo>(name);
    }
    std::string label(const char* name) { return control<QLabel>(name).text().toStdString(); }
    bool isEnabled(const char* name) { return control<QWidget>(name).isEnabled(); }

    void type(const char* name, const std::string& text) {
        if (auto* box = form().findChild<controls::MultiColumnCombo*>(name)) {
            box->setText(text);
        } else {
            control<QLineEdit>(name).setText(QString::fromStdString(text));
        }
    }
    void check(const char* name, bool on = true) { control<QAbstractButton>(name).setChecked(on); }
    void select(const char* name, const std::vector<int>& rows) { list(name).selectRows(rows); }
    void click(const char* name) { control<QAbstractButton>(name).click(); }

    /// Clicks Find Now; the ids listed then, in ascending order.
    std::vector<std::string> found() {
        click("cmdSearch");
        std::vector<std::string> ids;
        for (int row = 0; row < list("RunList").rows(); ++row) {
            ids.push_back(list("RunList").cellText(row, 0));
        }
        std::sort(ids.begin(), ids.end());
        return ids;
    }

    /// The cells of the row with that id, apart by "|".
    std::string row(const std::string& id) {
        auto& runs = list("RunList");
        std::string line;
        for (int row = 0; row < runs.rows(); ++row) {
            if (runs.cellText(row, 0) == id) {
                for (int column = 0; column < runs.model()->columnCount(); ++column) {
                    line += (column == 0 ? "" : "|") + runs.cellText(row, column);
                }
            }
        }
        return line;
    }

    support::TestDistrict district;
    support::TestSession session;
};
