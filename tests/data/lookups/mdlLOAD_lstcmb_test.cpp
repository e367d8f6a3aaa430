#include "data/lookups/mdlLOAD_lstcmb.h"

#include <QComboBox>
#include <memory>

#include "platform/base/error.h"
#include "support/formtest.h"

namespace data {
namespace {

using controls::MultiColumnList;

/// A form that has the controls a test gives it.
class Loaders : public support::FormTest<> {
protected:
    QWidget& form() override { return form_; }
    template <class Control>
    Control& put(const char* name) {
        auto* control = new Control(&form_);
        control->setObjectName(name);
        return *control;
    }
    /// What a loader puts into a list of that name.
    std::string loaded(const char* name, void (*load)(QWidget&)) {
        const std::unique_ptr<MultiColumnList> list(&put<MultiColumnList>(name));
        load(form_);
        std::vector<std::string> rows;
        while (static_cast<int>(rows.size()) < list->rows()) {
            rows.push_back(row(name, static_cast<int>(rows.size())));
        }
        return support::joined(rows, "; ");
    }

private:
    QWidget form_;
};

TEST_F(Loaders, FillTheControlOfTheirNameInTheOrderAsked) {
    const struct {
        const char* control;
        void (*load)(QWidget&);
        const char* rows;
    } cases[] = {
        {"cmbAid", Load_cmbAid, "7|Adams, Bo; 9|Smith,; 12|Smith, Ann"},
        {"cmbEmployee", Load_cmbEmployee, "7|Adams, Bo; 9|Smith,; 12|Smith, Ann"},
        {"cmbGarage", Load_cmbGarage, "G1|Yard"},
        {"cmbLOCCODE", Load_cmbLOCCODE, "NORTH|North yard"},
        {"cmbRoute", Load_cmbRoute, "R1|North loop; R2| "},
        {"cmbRUN", Load_cmbRUN, "101-AM|Oak morning; 102-AM|Pine 100%; 201-PM|Oak [late]"},
        {"cmbRunFamily", Load_cmbRunFamily, "REG|Regular; SPORT| "},
        {"cmbSchool", Load_cmbSchool, "ASH|Ash School; OAK|Oak School; PINE|Pine School"},
        {"cmbSchoolType", Load_cmbSCHOOLTYPE, "ADULT| ; ELEM|Elementary; HIGH|High"},
        {"cmbSTOPTYPE", Load_cmbSTOPTYPE, "REGULAR|Regular"},
        {"cmbTripType", Load_cmbTRIPTYPE, "AM|Morning; PM|Afternoon"},
        {"cmbVehicle", Load_cmbVehicle, "B7|Bus 7; B8| "},
        {"cmbVEHTYPE", Load_cmbVehType, "LARGE|Large bus|72|60|48|6|5|0"},
        {"lstSchool", Load_lstSchool, "ASH|Ash School; OAK|Oak School; PINE|Pine School"},
        {"lstSchool", Load_lstSchool_With_SchoolType,
         "ASH|Ash School|ELEM; OAK|Oak School|ELEM; PINE|Pine School|HIGH"},
        {"lstSpecNeeds", Load_lstSpecNeeds, "WC|Wheelchair"},
        {"lstTripType", Load_lstTripType, "AM|Morning; PM|Afternoon"},
    };
    for (const auto& [control, load, rows] : cases) {
        EXPECT_EQ(loaded(control, load), rows) << control;
    }
}

TEST_F(Loaders, ShowKeyAndTextAsOneInAPlainCombo) {
    auto& drivers = put<QComboBox>("cmbEmployee");
    drivers.addItem("left over");
    auto& vehicles = put<QComboBox>("cmbVehicle");
    Load_cmbEmployee(form());
    Load_cmbVehicle(form());
    EXPECT_EQ(drivers.count(), 3);
    EXPECT_EQ(drivers.itemText(1), "9:Smith,");
    EXPECT_EQ(drivers.itemText(2), "12:Smith, Ann");
    EXPECT_EQ(drivers.currentIndex(), -1);
    EXPECT_EQ(vehicles.itemText(0), "B7: Bus 7");
    EXPECT_EQ(vehicles.itemText(1), "B8: ");
}

TEST_F(Loaders, ReportAFormWithoutTheirControl) {
    EXPECT_THROW(Load_cmbVehicle(form()), base::EndProgram);
    EXPECT_THAT(lastText(), testing::HasSubstr("Load_cmbVehicle of Module: mdlLOAD_lstcmb."));
}

}  // namespace
}  // namespace data
