#pragma once

#include <QAbstractButton>
#include <QWidget>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/controls/multicolumncombo.h"
#include "platform/controls/multicolumnlist.h"

namespace support {

/// A form's controls by their names, used as a planner uses them. A name that the form lacks fails
/// the test.
class Controls {
public:
    virtual ~Controls() = default;
    /// The form that is meant by all below.
    virtual QWidget& form() = 0;

    template <class Control = QWidget>
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

    /// What a box, combo box, label or button shows.
    std::string text(const char* name);
    /// Puts a text in place of what the box or combo box holds.
    void type(const char* name, const std::string& text);
    /// The focus leaves the box.
    void leave(const char* name);
    void press(const char* name, Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier);
    void click(const char* name) { control<QAbstractButton>(name).click(); }
    void check(const char* name, bool on = true) { control<QAbstractButton>(name).setChecked(on); }
    bool isChecked(const char* name) { return control<QAbstractButton>(name).isChecked(); }
    bool isEnabled(const char* name) { return control(name).isEnabled(); }
    /// Whether it is seen once the form is.
    bool isShown(const char* name) { return control(name).isVisibleTo(&form()); }
    /// Whether the box is marked as refused.
    bool isRed(const char* name);

    // Rows of a list, from 0 in the order shown.
    void select(const char* name, const std::vector<int>& rows) { list(name).selectRows(rows); }
    /// Its cells parted by "|"; "" for none.
    std::string row(const char* name, int row);
    std::vector<std::string> column(const char* name, int column = 0);
    /// The row whose first cell is that; -1 for none.
    int rowOf(const char* name, const std::string& key);
    /// A click on that row, or a double click.
    void choose(const char* name, const std::string& key);
    void activate(const char* name, const std::string& key);
};

/// The controls of one given form.
class ControlsOf : public Controls {
public:
    explicit ControlsOf(QWidget& form) : form_(form) {}
    QWidget& form() override { return form_; }

private:
    QWidget& form_;
};

}  // namespace support
