#include "platform/controls/numberbox.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

using controls::NumberBox;

std::optional<double> read(NumberBox& box, const char* text) {
    box.setText(text);
    return box.number();
}

TEST(NumberBox, ReadsOnlyWhatAPlannerMeansAsANumber) {
    NumberBox box;
    box.setDecimals(2);
    box.setMinimum(-10);
    box.setMaximum(100);
    EXPECT_EQ(read(box, " 07.50 "), 7.5);
    EXPECT_EQ(read(box, "-.5"), -0.5);
    EXPECT_EQ(read(box, "+3."), 3.0);
    EXPECT_EQ(read(box, "1.005"), 1.01);
    EXPECT_EQ(read(box, "-10.004"), -10);
    for (const char* text :
         {"", " ", "100.005", "1e1", "1,000", "nan", "12x", "--1", ".", "101", "-11"}) {
        EXPECT_EQ(read(box, text), std::nullopt) << text;
    }
    box.setDecimals(0);
    EXPECT_EQ(read(box, "5.0"), 5.0);
    EXPECT_EQ(read(box, "5.1"), std::nullopt);
}

TEST(NumberBox, TidiesAndCountsWithinItsRange) {
    NumberBox box;
    box.setDecimals(1);
    box.setMaximum(9);
    box.setText(" 08.50");
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(box.text(), "8.5");
    QTest::keyClick(&box, Qt::Key_Up);
    EXPECT_EQ(box.text(), "9");
    QTest::keyClick(&box, Qt::Key_Down);
    EXPECT_EQ(box.text(), "8");
    box.setText("soon");
    QTest::keyClick(&box, Qt::Key_Up);
    EXPECT_EQ(box.text(), "soon");
    box.setNumber(-0.01);
    EXPECT_EQ(box.text(), "0");
}

}  // namespace
