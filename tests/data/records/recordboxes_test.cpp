#include "data/records/recordboxes.h"

#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRadioButton>

#include "platform/controls/numberbox.h"
#include "platform/controls/timebox.h"
#include "support/controls.h"
#include "support/faultof.h"

namespace data {
namespace {

using base::Date;
using base::Value;
using enum FieldKind;

template <class Control>
Control& add(QWidget& form, const char* name) {
    auto* control = new Control(&form);
    control->setObjectName(name);
    return *control;
}

/// A form with one control of each kind, as the table of its fields names them.
class RecordBoxesTest : public testing::Test, public support::Controls {
protected:
    RecordBoxesTest() {
        add<QLineEdit>(window, "Name");
        add<controls::NumberBox>(window, "Miles").setDecimals(1);
        add<controls::TimeBox>(window, "Bell");
        add<controls::TimeBox>(window, "Arrival");
        add<QRadioButton>(window, "ToSchool");
        add<QRadioButton>(window, "Home");
        add<QLabel>(window, "Total");
        add<QPlainTextEdit>(window, "Note");
        auto& level = add<QComboBox>(window, "Level");
        level.addItem("High", "H");
        level.addItem("Low", "L");
    }
    QWidget& form() override { return window; }

    Record stored() const {
        Record record(fields);
        for (const auto& [column, value] : std::initializer_list<std::pair<const char*, Value>>{
                 {"NAME", " R1 "},
                 {"MILES", 1.25},
                 {"BELL", Date::of(1899, 12, 31, 8)},
                 {"ARRIVAL", Date::of(1899, 12, 31, 8)},
                 {"TOSCHOOL", true},
                 {"LEVEL", "h"}}) {
            record.set(column, value);
        }
        return record;
    }
    std::string refusalOf(const FieldTable& table) {
        return support::faultOf([&] { RecordBoxes(window, table); });
    }

    QWidget window;
    FieldTable fields{{"NAME", "Name", Key, "Name"},
                      {"MILES", "Miles", Number, "Miles"},
                      {"BELL", "Bell", Time, "Bell"},
                      {"ARRIVAL", "Arrival", DateTime, "Arrival"},
                      {"TOSCHOOL", "To school", YesNo, "ToSchool"},
                      {"LEVEL", "Level", Choice, "Level"},
                      {"NOTE", "Note", Text, "Note"},
                      {.column = "TOTAL",
                       .kind = Number,
                       .control = "Total",
                       .use = FieldUse::Shown,
                       .blank = 0}};
};

TEST_F(RecordBoxesTest, AreAllThereAndOfTheirKindFromTheStart) {
    EXPECT_EQ(refusalOf(fields), "");
    EXPECT_EQ(refusalOf({{"NAME", "Name", Key, "Nane"}}),
              "The form has no control \"Nane\" for the field \"NAME\".");
    EXPECT_EQ(refusalOf({{"NAME", "", Key, "Name"}, {"NOTE", "", Text, "Name"}}),
              "The control \"Name\" stands for two fields.");
    for (const auto& field : fields) {
        for (const auto kind : {Key, Choice, Time, Number, YesNo}) {
            const bool fits = kind == field.kind || (kind == Time && field.kind == DateTime);
            EXPECT_EQ(refusalOf({{field.column, "", kind, field.control}}).empty(), fits)
                << field.control << static_cast<int>(kind);
        }
    }
}

TEST_F(RecordBoxesTest, EnterOnlyWhatWasTouched) {
    RecordBoxes boxes(window, fields);
    boxes.show(stored());
    EXPECT_EQ(text("Name") + text("Miles") + text("Bell") + text("Level"), "R11.308:00 AMHigh");
    type("Bell", "8a");
    EXPECT_FALSE(boxes.areTouched());
    // A choice alone is entered as its control has it.
    EXPECT_EQ(boxes.entries().entered["MILES"], Value(1.25));
    EXPECT_EQ(boxes.entries().entered["LEVEL"], Value("H"));
    type("Name", " R2 ");
    type("Arrival", "9:00");
    check("Home");
    auto entered = boxes.entries().entered;
    EXPECT_EQ(entered.text("NAME"), "R2");
    EXPECT_EQ(entered["ARRIVAL"], Value(Date::of(1899, 12, 31, 9)));
    EXPECT_FALSE(entered.isYes("TOSCHOOL"));

    // The choice is shown no more among those of the next record.
    Record tall = stored();
    tall.set("LEVEL", "Tall");
    boxes.show(tall);
    EXPECT_EQ(boxes.unknownChoices(), "Level: \"Tall\" is none of the choices.");
    boxes.show(stored());
    EXPECT_EQ(boxes.unknownChoices(), "");
    EXPECT_EQ(control<QComboBox>("Level").count(), 2);
    EXPECT_TRUE(isChecked("ToSchool"));
}

}  // namespace
}  // namespace data
