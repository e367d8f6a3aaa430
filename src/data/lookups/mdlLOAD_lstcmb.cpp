#include "data/lookups/mdlLOAD_lstcmb.h"

#include <QComboBox>
#include <stdexcept>

#include <fmt/format.h>

#include "data/lookups/readlist.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/controls/qtext.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"

namespace data {

namespace {

void fillPlain(QComboBox& combo, const std::vector<std::string>& items) {
    QStringList texts;
    for (const auto& item : items) {
        texts << controls::toQt(item);
    }
    combo.clear();
    combo.addItems(texts);
    combo.setCurrentIndex(-1);
}

void fill(QWidget& form, const ListLookup& lookup) {
    auto& connection = lookup.source == Source::Trip ? *startup::gcnTrip : *startup::gcnRouting;
    auto* control = form.findChild<QWidget*>(controls::toQt(lookup.control));
    if (auto* list = qobject_cast<controls::MultiColumnList*>(control)) {
        list->setTable(readList(lookup, connection));
    } else if (auto* combo = qobject_cast<controls::MultiColumnCombo*>(control)) {
        combo->setTable(readList(lookup, connection));
    } else if (auto* plain = qobject_cast<QComboBox*>(control);
               plain && !lookup.plainSeparator.empty()) {
        fillPlain(*plain, readPlainList(lookup, connection));
    } else {
        throw std::logic_error(fmt::format("{}: no list or combo {} on {}", lookup.procedure,
                                           lookup.control, form.objectName().toStdString()));
    }
}

void load(QWidget& form, std::string_view procedure) {
    startup::trapped(procedure, "mdlLOAD_lstcmb", [&] { fill(form, listLookup(procedure)); });
}

}  // namespace

void Load_cmbAid(QWidget& form) { load(form, "Load_cmbAid"); }
void Load_cmbEmployee(QWidget& form) { load(form, "Load_cmbEmployee"); }
void Load_cmbGarage(QWidget& form) { load(form, "Load_cmbGarage"); }
void Load_cmbLOCCODE(QWidget& form) { load(form, "Load_cmbLOCCODE"); }
void Load_cmbRoute(QWidget& form) { load(form, "Load_cmbRoute"); }
void Load_cmbRUN(QWidget& form) { load(form, "Load_cmbRUN"); }
void Load_cmbRunFamily(QWidget& form) { load(form, "Load_cmbRunFamily"); }
void Load_cmbSchool(QWidget& form) { load(form, "Load_cmbSchool"); }
void Load_cmbSCHOOLTYPE(QWidget& form) { load(form, "Load_cmbSCHOOLTYPE"); }
void Load_cmbSTOPTYPE(QWidget& form) { load(form, "Load_cmbSTOPTYPE"); }
void Load_cmbTRIPTYPE(QWidget& form) { load(form, "Load_cmbTRIPTYPE"); }
void Load_cmbVehicle(QWidget& form) { load(form, "Load_cmbVehicle"); }
void Load_cmbVehType(QWidget& form) { load(form, "Load_cmbVehType"); }
void Load_lstSchool(QWidget& form) { load(form, "Load_lstSchool"); }
void Load_lstSchool_With_SchoolType(QWidget& form) { load(form, "Load_lstSchool_With_SchoolType"); }
void Load_lstSpecNeeds(QWidget& form) { load(form, "Load_lstSpecNeeds"); }
void Load_lstTripType(QWidget& form) { load(form, "Load_lstTripType"); }

}  // namespace data
