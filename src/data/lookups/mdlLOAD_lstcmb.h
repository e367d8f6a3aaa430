#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "startup/base/connectionglobal.h"

/// Fills a form's combos and lists from the code tables. Each procedure is given the form and finds
/// the control by its name: a multi-column combo or list gets captions, widths and one row a
/// record, a plain combo one text a record ("12:Smith, Ann", "B7: Bus 7"). What was in the control
/// is replaced; no row is chosen afterwards.
namespace data {

/// What Load_cmbLOCCODE, Load_cmbRunFamily, Load_cmbSchool, Load_cmbTRIPTYPE and Load_cmbVehType
/// ask on a connection, for who asks all of them at once (ado::ReadAhead).
[[nodiscard]] std::vector<std::string> questionsOfARun(const startup::ConnectionGlobal& connection);

void Load_cmbAid(QWidget& form);
void Load_cmbEmployee(QWidget& form);
void Load_cmbGarage(QWidget& form);
void Load_cmbLOCCODE(QWidget& form);
void Load_cmbRoute(QWidget& form);
void Load_cmbRUN(QWidget& form);
void Load_cmbRunFamily(QWidget& form);
void Load_cmbSchool(QWidget& form);
void Load_cmbSCHOOLTYPE(QWidget& form);
void Load_cmbSTOPTYPE(QWidget& form);
void Load_cmbTRIPTYPE(QWidget& form);
void Load_cmbVehicle(QWidget& form);
void Load_cmbVehType(QWidget& form);
void Load_lstSchool(QWidget& form);
void Load_lstSchool_With_SchoolType(QWidget& form);
void Load_lstSpecNeeds(QWidget& form);
void Load_lstTripType(QWidget& form);

}  // namespace data
