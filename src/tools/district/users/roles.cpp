#include "tools/district/users/roles.h"

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/store/base/ddl.h"
#include "tools/district/base/refuse.h"

namespace tools::district {

namespace {

bool isThere(store::Database& district, std::string_view role) {
    const auto row = district.prepare("SELECT 1 FROM pg_roles WHERE rolname = ?");
    row->bind(0, role);
    return row->step();
}

}  // namespace

std::string roleOf(std::string_view user) { return base::lowered(user); }

std::set<std::string> plannersIn(store::Database& district) {
    const auto row = district.prepare(
        "SELECT m.rolname FROM pg_roles g JOIN pg_auth_members a ON a.roleid = g.oid JOIN pg_roles"
        " m ON m.oid = a.member WHERE g.rolname = ?");
    row->bind(0, PlannersRole);
    std::set<std::string> planners;
    while (row->step()) {
        planners.emplace(row->text(0));
    }
    return planners;
}

void makePlanner(store::Database& district, const std::string& role) {
    if (!isThere(district, PlannersRole)) {
        refuse(fmt::format("The server has no role {} yet: roles.sql makes it.", PlannersRole));
    }
    const std::string name = store::quoted(role);
    try {
        district.execute(isThere(district, role)
                             ? fmt::format("GRANT {} TO {}", PlannersRole, name)
                             : fmt::format("CREATE ROLE {} LOGIN IN ROLE {}", name, PlannersRole));
    } catch (const store::StoreError& error) {
        if (error.fault() != store::Fault::ReadOnly) {
            throw;
        }
        refuse(
            fmt::format("Roles are made by an administrator of the server: name the place as "
                        "one, postgresql://postgres@server/database/. ({})",
                        error.what()));
    }
}

}  // namespace tools::district
