#pragma once

#include "tools/district/make/random.h"
#include "tools/district/travel/model.h"

namespace tools::district {

/// What the sample and a generated district have in common: people, vehicles, findings.

/// Adds that many students who board at the stop; some have special needs. Returns nothing; ids go
/// on from the last student's.
void addStudents(District& district, const School& school, const Stop& stop, int count,
                 Random& random);

/// Gives every route a vehicle that fits its runs (a few do not, as in life), a driver, and some an
/// aide; its runs get the vehicle's type and a capacity level.
void staffRoutes(District& district, Random& random);

/// Records, run by run, what the rules of a validation find: too many passengers, right-side stops
/// served from the left, rides that are too long, needs that the vehicle cannot carry.
void recordFindings(District& district);

/// The way between two stops as the dead-head table holds it.
[[nodiscard]] Travel travelBetween(const Stop& from, const Stop& to);

/// Which side a stop is served from: right-side stops nearly always from the right.
[[nodiscard]] bool servedFromTheRight(const Stop& stop, Random& random);

/// A weekday in the school year, between 7 in the morning and 5 in the afternoon.
[[nodiscard]] base::Date officeTime(base::Date day, Random& random);

/// Made by one user some time before `asOf`, changed since by another.
[[nodiscard]] Audit auditBefore(base::Date asOf, Random& random);

}  // namespace tools::district
