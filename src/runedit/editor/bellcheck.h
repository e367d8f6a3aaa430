#pragma once

#include <string>
#include <string_view>

#include "platform/ado/connection.h"
#include "platform/base/date.h"

/// The bell check that follows the calculation of a run's stop times: against the bell on the
/// editor's form, saved or not. The validation of a stored run has a check of its own.
namespace runedit {

enum class BellRule {
    NotEarlier,  ///< a run that takes students home does not leave before the bell
    NotLater,    ///< a run that brings students to school arrives by the bell
};

/// Replaces the run's bell warnings of both kinds by what it finds at its stops but turn points; a
/// stop's time that is missing counts as midnight. True when no stop breaks the rule. One unit of
/// work; raises jet::SqlError, store::StoreError.
bool recordBellCheck(ado::Connection& routing, std::string_view run, BellRule rule,
                     base::Date bell);

/// What the planner is told when the rule is broken.
struct BellMessage {
    std::string title;
    std::string text;
};
[[nodiscard]] BellMessage bellMessage(BellRule rule);

}  // namespace runedit
