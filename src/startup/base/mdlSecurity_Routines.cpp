#include "startup/base/mdlSecurity_Routines.h"

#include <limits>

#include "platform/ado/recordset.h"
#include "platform/base/error.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "startup/base/mdlNONULL.h"
#include "startup/base/trap.h"

namespace startup {

namespace {

constexpr const char* BuiltInAccount = "R.T.E.";

std::int16_t permissionPoints() {
    ado::Recordset points("SELECT QDSCPP.* FROM QDSCPP WHERE QDSCPP.PRODUCT='ROUTING'", *gcnQDSC,
                          ado::CursorType::Static);
    if (points.Eof()) {
        return 0;
    }
    points.MoveLast();
    const std::int64_t count = points.RecordCount();
    if (count > std::numeric_limits<std::int16_t>::max()) {
        base::raise(base::errors::Overflow);
    }
    return static_cast<std::int16_t>(count);
}

bool hasEmptyPassword(ado::Recordset& users) {
    const std::string password = NoNullString(users["QDSC2"].Value()).asText();
    return base::trim(password).empty();
}

void loadAuthorities(const std::string& user) {
    ado::Recordset rows(
        "SELECT QDSCU_PP.* FROM QDSCU_PP WHERE QDSCU_PP.PRODUCT='ROUTING' AND QDSCU_PP.QDSC1='" +
            user + "' ORDER BY QDSCU_PP.PERM",
        *gcnQDSC);
    for (std::size_t index = 1; !rows.Eof(); ++index, rows.MoveNext()) {
        if (index >= gPermCode.size()) {
            base::raise(base::errors::SubscriptOutOfRange);
        }
        gPermAuthority[index] = rows["Authority"].asBoolean();
        gPermCode[index] = rows["Perm"].asText();
    }
}

bool isRefused(const std::string& user) {
    gPermCount = permissionPoints();
    gPermAuthority.assign(static_cast<std::size_t>(gPermCount) + 1, false);
    gPermCode.assign(static_cast<std::size_t>(gPermCount) + 1, {});
    ado::Recordset users("SELECT QDSCU.* FROM QDSCU WHERE QDSCU.QDSC1='" + user + "'", *gcnQDSC);
    if (users.Eof()) {
        return true;
    }
    gSecurityOn = !(hasEmptyPassword(users) && user == BuiltInAccount);
    if (gSecurityOn) {
        loadAuthorities(user);
    }
    return false;
}

bool isGranted(const std::string& code) {
    bool isGranted = false;
    for (std::size_t index = 1; index < gPermCode.size(); ++index) {
        if (gPermCode[index] == code) {
            isGranted = gPermAuthority[index];
        }
    }
    return isGranted;
}

}  // namespace

bool LoadUserPermissions(const std::string& user) {
    return trapped("LoadUserPermissions", "mdlSecurity_Routines", [&] { return isRefused(user); });
}

bool HasAuthority(const std::string& code, bool tell) {
    return trapped("HasAuthority", "mdlSecurity_Routines", [&] {
        const bool mayProceed = !gSecurityOn || isGranted(code);
        if (tell && !mayProceed) {
            base::MsgBox(
                "Oops, you do not have authority to perform this task with the Vireo GIS Routing "
                "Software.  Please check with your Vireo GIS Routing Security Administrator if you "
                "feel this is a mistake.",
                "Do Not Have Authority", base::MsgIcon::Information);
        }
        return mayProceed;
    });
}

}  // namespace startup
