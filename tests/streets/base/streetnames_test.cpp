#include "streets/base/streetnames.h"

#include <utility>

#include <gmock/gmock.h>

namespace {

TEST(StreetNames, AreSpelledOutOnce) {
    const std::pair<const char*, const char*> names[] = {
        {"N High St", "North High Street"},
        {"  w.  5th   AVE ", "West 5th Avenue"},
        {"Wilson Blvd NE", "Wilson Boulevard Northeast"},
        {"St Clair Ave", "Saint Clair Avenue"},
        {"E St Clair Ave", "East Saint Clair Avenue"},
        {"Dr Martin Luther King Jr Blvd", "Doctor Martin Luther King Jr Boulevard"},
        {"Co Rd 12", "County Road 12"},
        {"State Rte 315", "State Route 315"},
        {"N Broadway", "North Broadway"},
        {"N St", "N Street"},
        {"E Street NW", "E Street Northwest"},
        {"Avenue N", "Avenue N"},
        {"Ct", "Ct"},
        {"Court Street", "Court Street"},
        {"Rue de l'Église", "Rue de l'Église"},
        {"", ""}};
    for (const auto& [shortened, whole] : names) {
        EXPECT_EQ(streets::spelledOut(shortened), whole);
        EXPECT_EQ(streets::spelledOut(whole), whole);
    }
}

}  // namespace
