#include "startup/version/districtversion.h"

#include <filesystem>
#include <vector>

#include "data/schema/version.h"
#include "platform/base/ports.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/session.h"

namespace startup {

std::string versionComplaint(std::initializer_list<OpenFile> files) {
    std::vector<data::FoundFile> found;
    for (const auto& [file, connection] : files) {
        found.push_back(data::lookAt(file, std::string(data::fileName(file)), connection.mark(),
                                     connection.catalog()));
    }
    const std::filesystem::path settings(gIniFile);
    return data::versionComplaint(found, settings.parent_path().parent_path().string());
}

void requireVersion(std::initializer_list<OpenFile> files) {
    if (const std::string complaint = versionComplaint(files); !complaint.empty()) {
        base::MsgBox(complaint, "District and Program Do Not Fit", base::MsgIcon::Exclamation);
        ShutDown(1);
    }
}

}  // namespace startup
