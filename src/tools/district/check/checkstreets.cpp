#include "platform/base/error.h"
#include "platform/files/files.h"
#include "platform/store/base/location.h"
#include "streets/district/homes.h"
#include "tools/district/check/checkparts.h"
#include "tools/district/place/streetsof.h"

namespace tools::district {

namespace {

CheckFinding homesNotUnderstood(const Folders& folders) {
    CheckFinding finding{.what = "Homes that no map can show"};
    const auto file = folders.homes().string();
    if (files::exists(file)) {
        for (const std::string& fault : streets::homesIn(files::read(file)).faults) {
            finding.add(fault);
        }
    }
    return finding;
}

}  // namespace

void checkStreets(const Folders& folders, store::Database& database, CheckReport& report,
                  Progress& progress) {
    if (store::isServer(folders.root.string())) {
        return;
    }
    progress.begin("Looking the streets over", 0);
    CheckFinding unopened{.what = "Streets that cannot be driven on"};
    CheckFinding closed{.what = "Closed streets that are driven nevertheless"};
    try {
        const auto streets = openStreetsOf(folders, database);
        for (const std::string& remark : streets->remarks()) {
            closed.add(remark);
        }
    } catch (const base::RunTimeError& error) {
        unopened.add(error.what());
    }
    report.add(std::move(unopened));
    report.add(std::move(closed));
    report.add(homesNotUnderstood(folders));
}

}  // namespace tools::district
