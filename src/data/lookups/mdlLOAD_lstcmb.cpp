#include "data/lookups/mdlLOAD_lstcmb.h"

#include <QComboBox>
#include <algorithm>
#include <stdexcept>

#include <fmt/format.h>

#include "data/lists/listreader.h"
#include "platform/base/text.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/controls/qtext.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"

namespace data {

namespace {

using startup::gcnTrip;
using table::CellKind;
using table::TextTable;

constexpr std::size_t MostColumns = 8;

/// What a loader shows.
struct ListLookup {
    std::string_view sql;
    ListColumn columns[MostColumns];
    const startup::ConnectionGlobal& connection = startup::gcnRouting;
    /// What stands between key and text where a plain combo shows both as one: "12:Smith, Ann".
    std::string_view plainSeparator = {};
    void (*onRow)(TextTable& table, std::size_t row) = nullptr;
};

void fillPlain(QComboBox& combo, const TextTable& table, std::string_view separator) {
    combo.clear();
    for (std::size_t row = 0; row < table.rowCount(); ++row) {
        combo.addItem(controls::toQt(fmt::format("{}{}{}", base::trim(table.text(row, 0)),
                                                 separator, base::trim(table.text(row, 1)))));
    }
    combo.setCurrentIndex(-1);
}

void fill(QWidget& form, const char* name, const ListLookup& lookup) {
    const auto* end = std::ranges::find(lookup.columns, "", &ListColumn::field);
    auto table = readList({lookup.columns, end}, lookup.sql, *lookup.connection, lookup.onRow);
    auto* control = form.findChild<QWidget*>(name);
    if (auto* list = qobject_cast<controls::MultiColumnList*>(control)) {
        list->setTable(std::move(table));
    } else if (auto* combo = qobject_cast<controls::MultiColumnCombo*>(control)) {
        combo->setTable(std::move(table));
    } else if (auto* plain = qobject_cast<QComboBox*>(control);
               plain && !lookup.plainSeparator.empty()) {
        fillPlain(*plain, table, lookup.plainSeparator);
    } else {
        throw std::logic_error(
            fmt::format("no list or combo {} on {}", name, form.objectName().toStdString()));
    }
}

void load(std::string_view procedure, QWidget& form, const char* control,
          const ListLookup& lookup) {
    startup::trapped(procedure, "mdlLOAD_lstcmb", [&] { fill(form, control, lookup); });
}

constexpr ListColumn Description{"Description", "Description", 3000};

void joinNames(TextTable& staff, std::size_t row) {
    const auto name = fmt::format("{}, {}", base::trim(staff.text(row, "LastName")),
                                  base::trim(staff.text(row, "FirstName")));
    staff.setText(row, staff.columnOf("LastName"), base::trim(name));
}

}  // namespace

constexpr ListLookup Staff{
    "SELECT EMPLOYEE.EMPNUM, EMPLOYEE.LASTNAME, EMPLOYEE.FIRSTNAME FROM EMPLOYEE ORDER BY "
    "EMPLOYEE.LASTNAME, EMPLOYEE.FIRSTNAME;",
    {{"Employee Number", "EmpNum", 1500}, {"Employee Name", "LastName", 3000}, hidden("FirstName")},
    gcnTrip,
    ":",
    joinNames};
void Load_cmbAid(QWidget& form) { load(__func__, form, "cmbAid", Staff); }
void Load_cmbEmployee(QWidget& form) { load(__func__, form, "cmbEmployee", Staff); }

constexpr ListLookup Garages{
    "SELECT STOP.STOPID, STOP.DESCRIPTION From STOP Where (STOP.STOPTYPE = 'GARAGE') AND "
    "(STOP.ACTIVE = True) ORDER BY STOP.STOPID",
    {{"Garage", "StopID", 1500}, Description}};
void Load_cmbGarage(QWidget& form) { load(__func__, form, "cmbGarage", Garages); }

constexpr ListLookup LocCodes{
    "SELECT LOCCODE.LOCCODE, LOCCODE.DESCRIPTION From LOCCODE Where (LOCCODE.ACTIVE = True) ORDER "
    "BY LOCCODE.LOCCODE",
    {{"Location Code", "LocCode", 1500}, Description}};
void Load_cmbLOCCODE(QWidget& form) { load(__func__, form, "cmbLOCCODE", LocCodes); }

constexpr ListLookup Routes{
    "SELECT ROUTE.ROUTEID, ROUTE.ROUTENAME FROM ROUTE ORDER BY ROUTE.ROUTEID, ROUTE.ROUTENAME;",
    {{"Route #", "RouteID", 1500}, {"Name", "RouteName", 3000}}};
void Load_cmbRoute(QWidget& form) { load(__func__, form, "cmbRoute", Routes); }

constexpr ListLookup Runs{
    "SELECT RUN.RUN, RUN.DESCRIPTION FROM RUN Where (RUN.ACTIVE = True) ORDER BY RUN.RUN",
    {{"Run", "Run", 1500}, Description}};
void Load_cmbRUN(QWidget& form) { load(__func__, form, "cmbRUN", Runs); }

constexpr ListLookup RunFamilies{
    "SELECT RUNFAMILY.RUNFAMILY, RUNFAMILY.DESCRIPTION FROM RUNFAMILY ORDER BY RUNFAMILY;",
    {{"Run Family", "RunFamily", 2000}, Description}};
void Load_cmbRunFamily(QWidget& form) { load(__func__, form, "cmbRunFamily", RunFamilies); }

constexpr ListLookup Schools{
    "SELECT SCHOOL.SCHOOL, SCHOOL.SCHOOLNAME From SCHOOL Where (SCHOOL.ACTIVE = True) ORDER BY "
    "SCHOOL.SCHOOLNAME",
    {{"School", "School", 1500}, {"School Name", "SchoolName", 3000}}};
void Load_cmbSchool(QWidget& form) { load(__func__, form, "cmbSchool", Schools); }
void Load_lstSchool(QWidget& form) { load(__func__, form, "lstSchool", Schools); }

constexpr ListLookup SchoolsWithType{
    "SELECT SCHOOL.SCHOOL, SCHOOL.SCHOOLNAME, SCHOOL.SCHOOLTYPE From SCHOOL Where (SCHOOL.ACTIVE = "
    "True) ORDER BY SCHOOL.SCHOOLNAME",
    {{"School", "School", 1500},
     {"School Name", "SchoolName", 3000},
     {"School Type", "SchoolType", 3000}}};
void Load_lstSchool_With_SchoolType(QWidget& form) {
    load(__func__, form, "lstSchool", SchoolsWithType);
}

constexpr ListLookup SchoolTypes{
    "SELECT SCHOOLTYPE.SCHOOLTYPE, SCHOOLTYPE.DESCRIPTION From SCHOOLTYPE Where (SCHOOLTYPE.ACTIVE "
    "= True) order by SCHOOLTYPE.SCHOOLTYPE",
    {{"School Type", "SchoolType", 1500}, Description}};
void Load_cmbSCHOOLTYPE(QWidget& form) { load(__func__, form, "cmbSchoolType", SchoolTypes); }

constexpr ListLookup StopTypes{
    "SELECT STOPTYPE.STOPTYPE, STOPTYPE.DESCRIPTION FROM STOPTYPE Where (STOPTYPE.Active = True) "
    "ORDER BY STOPTYPE.STOPTYPE",
    {{"", "Stoptype", 1500}, {"", "Description", 3000}}};
void Load_cmbSTOPTYPE(QWidget& form) { load(__func__, form, "cmbSTOPTYPE", StopTypes); }

constexpr ListLookup TripTypes{
    "SELECT TRIPTYPE.TRIPTYPE, TRIPTYPE.DESCRIPTION FROM TRIPTYPE Where (TRIPTYPE.ACTIVE = True) "
    "ORDER BY TRIPTYPE.TRIPTYPE",
    {{"Trip Type", "TripType", 1500}, Description}};
void Load_cmbTRIPTYPE(QWidget& form) { load(__func__, form, "cmbTripType", TripTypes); }

constexpr ListLookup ListedTripTypes{
    "SELECT TRIPTYPE.TRIPTYPE, TRIPTYPE.DESCRIPTION From TRIPTYPE Where (TRIPTYPE.ACTIVE = True) "
    "ORDER BY TRIPTYPE.TRIPTYPE",
    {{"TripType", "TripType", 2500}, Description}};
void Load_lstTripType(QWidget& form) { load(__func__, form, "lstTripType", ListedTripTypes); }

constexpr ListLookup Vehicles{
    "SELECT VEHICLE.VEHICLE, VEHICLE.VEHDESC FROM VEHICLE ORDER BY VEHICLE.VEHICLE;",
    {{"Vehicle #", "Vehicle", 1500}, {"Description", "VehDesc", 3000}},
    gcnTrip,
    ": "};
void Load_cmbVehicle(QWidget& form) { load(__func__, form, "cmbVehicle", Vehicles); }

constexpr ListLookup VehTypes{
    "SELECT VEHTYPE.VEHTYPE, VEHTYPE.VTYPDESC, VEHTYPE.HIGH, VEHTYPE.MEDIUM, VEHTYPE.LOW, "
    "VEHTYPE.HIGHOVERFILL, VEHTYPE.MEDIUMOVERFILL, VEHTYPE.LOWOVERFILL FROM VEHTYPE Where "
    "(VehType.ACTIVE = True) order BY VEHTYPE;",
    {{"Vehicle Type", "VehType", 1500},
     {"Description", "VTYPDESC", 3000},
     {"High Capacity", "high", 1300, CellKind::Number},
     {"Med Capacity", "medium", 1300, CellKind::Number},
     {"Low Capacity", "low", 1300, CellKind::Number},
     {"High OverFill", "HighOverFill", 1300, CellKind::Number},
     {"Med OverFill", "MediumOverFill", 1300, CellKind::Number},
     {"Low OverFill", "LowOverFill", 1300, CellKind::Number}},
    gcnTrip};
void Load_cmbVehType(QWidget& form) { load(__func__, form, "cmbVEHTYPE", VehTypes); }

constexpr ListLookup SpecialNeeds{
    "SELECT SPECIALNEEDS.SPECIALNEEDS_CODE, SPECIALNEEDS.DESCRIPTION From SPECIALNEEDS ORDER BY "
    "SPECIALNEEDS.SPECIALNEEDS_CODE",
    {{"Special Needs", "SpecialNeeds_Code", 1500}, Description}};
void Load_lstSpecNeeds(QWidget& form) { load(__func__, form, "lstSpecNeeds", SpecialNeeds); }

std::vector<std::string> questionsOfARun(const startup::ConnectionGlobal& connection) {
    std::vector<std::string> questions;
    for (const auto* lookup : {&LocCodes, &RunFamilies, &Schools, &TripTypes, &VehTypes}) {
        if (&lookup->connection == &connection) {
            questions.emplace_back(lookup->sql);
        }
    }
    return questions;
}

}  // namespace data
