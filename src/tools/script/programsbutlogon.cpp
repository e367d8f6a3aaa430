#include "tools/script/programsbutlogon.h"

#include <filesystem>

namespace script {

void ProgramsButLogon::start(const std::string& program,
                             const std::vector<std::string>& arguments) {
    if (std::filesystem::path(program).filename() == "Logon.Exe") {
        tell_("The user is not known; the logon program is not started for a script.");
        return;
    }
    others_.start(program, arguments);
}

}  // namespace script
