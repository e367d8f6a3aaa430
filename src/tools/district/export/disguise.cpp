#include "tools/district/export/disguise.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "tools/district/make/names.h"
#include "tools/district/make/random.h"

namespace tools::district {

namespace {

using base::Value;

constexpr std::array Streets{"Maple", "Oak", "Cedar", "Elm", "Prairie", "Lake", "Hill", "Mill"};

/// The same person always gets the same; another purpose gets something else.
Random randomOf(std::int64_t person, std::uint64_t purpose) {
    return Random(static_cast<std::uint64_t>(person) * 4 + purpose);
}

Value anyLastName(std::int64_t person) {
    Random random = randomOf(person, 0);
    return lastName(random);
}

Value anyFirstName(std::int64_t person) {
    Random random = randomOf(person, 1);
    return firstName(random);
}

Value anyAddress(std::int64_t person) {
    Random random = randomOf(person, 2);
    const auto number = random.between(1, 999);
    return fmt::format("{} {} St", number, random.pick(Streets));
}

Value anyPhone(std::int64_t person) { return fmt::format("555-01{:02}", person % 100); }

Value anyNumber(std::int64_t person) { return fmt::format("S{:06}", person); }

Value nothing(std::int64_t /*person*/) { return {}; }

constexpr std::array Disguises = {
    Disguise{"STUDENT", "STUID", "INT_STUID", anyNumber},
    Disguise{"STUDENT", "LASTNAME", "INT_STUID", anyLastName},
    Disguise{"STUDENT", "FIRSTNAME", "INT_STUID", anyFirstName},
    Disguise{"STU_ADDR", "ADDR1", "ADDRESSID", anyAddress},
    Disguise{"STU_ADDR", "ADDR2", "ADDRESSID", nothing},
    Disguise{"STU_ADDR", "PHONE", "ADDRESSID", anyPhone},
    Disguise{"STU_ADDR", "COMMENT", "ADDRESSID", nothing},
    Disguise{"EMPLOYEE", "LASTNAME", "EMPNUM", anyLastName},
    Disguise{"EMPLOYEE", "FIRSTNAME", "EMPNUM", anyFirstName},
    Disguise{"QDSCU", "QDSC2", "QDSC1", nothing},
};

}  // namespace

const Disguise* disguiseOf(std::string_view table, std::string_view column) {
    const auto* const found = std::ranges::find_if(Disguises, [&](const Disguise& one) {
        return base::equalsNoCase(one.table, table) && base::equalsNoCase(one.column, column);
    });
    return found == Disguises.end() ? nullptr : found;
}

}  // namespace tools::district
