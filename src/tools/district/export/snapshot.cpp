#include "tools/district/export/snapshot.h"

#include <string>

#include "data/schema/version.h"
#include "platform/store/open/standstill.h"
#include "tools/district/base/refuse.h"

namespace tools::district {

DistrictSnapshot::DistrictSnapshot(const Folders& folders) {
    std::vector<std::string> paths;
    paths.reserve(std::size(data::AllDatabaseFiles));
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        paths.push_back(folders.database(file).string());
    }
    databases_ = store::openAtOneMoment(paths);
    std::vector<data::FoundFile> found;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        found.push_back(data::lookAt(data::AllDatabaseFiles[i], paths[i], databases_[i]->mark(),
                                     databases_[i]->catalog()));
    }
    if (const auto complaint = data::versionComplaint(found, folders.root.string());
        !complaint.empty()) {
        refuse(complaint);
    }
}

store::Database& DistrictSnapshot::database(data::DatabaseFile file) const {
    return *databases_[static_cast<std::size_t>(file)];
}

}  // namespace tools::district
