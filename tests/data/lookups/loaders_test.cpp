#include <QApplication>
#include <QComboBox>
#include <QWidget>

#include <gmock/gmock.h>

#include "data/lookups/mdlLOAD_lstcmb.h"
#include "platform/base/error.h"
#include "platform/controls/multicolumnlist.h"
#include "support/smalldistrict.h"
#include "support/testsession.h"

namespace data {
namespace {

TEST(Loaders, FillTheControlOfTheFormThatHasTheName) {
    support::TestDistrict district;
    support::fillSmall(district);
    const support::TestSession session;
    session.start(district.configFolder());
    QWidget form;
    QComboBox drivers(&form);
    drivers.setObjectName("cmbEmployee");
    drivers.addItem("left over");
    controls::MultiColumnList needs(&form);
    needs.setObjectName("lstSpecNeeds");

    Load_cmbEmployee(form);
    EXPECT_EQ(drivers.count(), 3);
    EXPECT_EQ(drivers.itemText(2), "12:Smith, Ann");
    EXPECT_EQ(drivers.currentIndex(), -1);

    Load_lstSpecNeeds(form);
    EXPECT_EQ(needs.cellText(0, 1), "Wheelchair");
    EXPECT_EQ(needs.table().columns[1].widthTwips, 3000);

    EXPECT_THROW(Load_cmbVehicle(form), base::EndProgram);
    ASSERT_EQ(session.boxes.shown.size(), 1U);
    EXPECT_THAT(session.boxes.shown[0].text, testing::HasSubstr("Load_cmbVehicle of Module"));
}

}  // namespace
}  // namespace data
