#include "data/records/recordboxes.h"

#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <stdexcept>

#include "platform/controls/numberbox.h"
#include "platform/controls/timebox.h"
#include "support/controls.h"
#include "support/fakes.h"

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
        try {
            RecordBoxes boxes(window, table);
        } catch (const std::logic_error& error) {
            return error.what();
        }
        return "";
    }

    QWidget window;
    FieldTable fields{{"NAME", "Name", Key, "Name"},
                      {"MILES", "Miles", Number, "Miles"},
                      {"BELL", "Bell", Time, "Bell"},
                      {"ARRIVAL", "Arrival", DateTime, "Arrival"},
                      {"TOSCHOOL", "To school", YesNo, "ToSchool"},
                      {"LEVEL", "Level", Choice, "Level"},
                      {"NOTE", "Note", Text, "Note", {atMost(5)}},
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
    EXPECT_EQ(text("Name") + text("Miles") + text("Bell") + text("Arrival") + text("Level"),
              "R11.308:00 AM08:00 AMHigh");
    EXPECT_EQ(text("Total"), "0");
    EXPECT_TRUE(isChecked("ToSchool"));
    type("Bell", "8a");
    EXPECT_FALSE(boxes.areTouched());
    // The choice alone is entered as its control has it.
    EXPECT_EQ(boxes.entries().entered["MILES"], Value(1.25));
    EXPECT_EQ(boxes.entries().entered["LEVEL"], Value("H"));

    type("Name", " R2 ");
    type("Bell", "2/1/2026 9:00");
    type("Arrival", "9:00");
    type("Note", " ");
    check("Home");
    EXPECT_TRUE(boxes.areTouched());
    auto entered = boxes.entries().entered;
    EXPECT_EQ(entered.text("NAME"), "R2");
    EXPECT_EQ(entered["BELL"], Value(Date::timeOfDay(9, 0)));
    EXPECT_EQ(entered["ARRIVAL"], Value(Date::of(1899, 12, 31, 9)));
    EXPECT_TRUE(entered["NOTE"].isNull());
    EXPECT_FALSE(entered.isYes("TOSCHOOL"));

    // Others change one field of those that were touched, and one that was not.
    Record now = stored();
    now.set("NAME", "R3");
    now.set("MILES", 7);
    boxes.refresh(now);
    EXPECT_EQ(text("Name") + text("Miles"), " R2 7");
    EXPECT_EQ(changesByOthers(boxes.entries(), now),
              "Name: was \"R1\", is now \"R3\", you entered \"R2\"");
    boxes.takeOver(now);
    EXPECT_EQ(changesByOthers(boxes.entries(), now), "");
    EXPECT_EQ(boxes.entries().entered.text("NAME"), "R2");
    boxes.show(now);
    EXPECT_TRUE(isChecked("ToSchool"));
    EXPECT_FALSE(boxes.areTouched());
}

TEST_F(RecordBoxesTest, ShowAStoredTextThatIsNoChoiceInRed) {
    RecordBoxes boxes(window, fields);
    Record record = stored();
    record.set("LEVEL", "Tall");
    boxes.show(record);
    EXPECT_EQ(text("Level"), "Tall");
    EXPECT_TRUE(isRed("Level"));
    EXPECT_EQ(boxes.unknownChoices(), "Level: \"Tall\" is none of the choices.");
    EXPECT_EQ(boxes.entries().entered.text("LEVEL"), "Tall");
    type("Level", "Low");
    boxes.clearRefusals();
    EXPECT_FALSE(isRed("Level"));
    EXPECT_EQ(boxes.unknownChoices(), "");
    boxes.show(stored());
    EXPECT_EQ(control<QComboBox>("Level").count(), 2);
}

TEST_F(RecordBoxesTest, RefuseWhatWasTouchedInTheOrderOfTheCodes) {
    support::FakeBoxes shown;
    const auto refusing = [](const char* title, int code, bool ofStored) {
        return Rule{[title](const Field&, const Entries&) {
                        return Fault{title, "text"};
                    },
                    code, ofStored};
    };
    fields[0].rules = {refusing("later", 2, true)};
    fields[1].rules = {refusing("when touched", 1, false)};
    RecordBoxes boxes(window, fields);
    boxes.show(stored());
    EXPECT_EQ(boxes.refuseFault(boxes.entries())->title, "later");
    type("Miles", "x");
    type("Note", "123456");
    const auto fault = boxes.refuseFault(boxes.entries());
    EXPECT_EQ(fault->title, "Note Too Long");
    EXPECT_TRUE(isRed("Note"));
    type("Note", "12345");
    EXPECT_EQ(boxes.refuseFault(boxes.entries())->code, 1);
    EXPECT_TRUE(isRed("Miles"));
    EXPECT_FALSE(isRed("Note"));
}

}  // namespace
}  // namespace data
