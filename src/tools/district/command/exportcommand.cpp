#include "tools/district/command/exportcommand.h"

#include <ostream>

#include <fmt/format.h>

#include "tools/district/base/newfolder.h"
#include "tools/district/base/progress.h"
#include "tools/district/export/tables.h"

namespace tools::district {

void runExport(const ExportOptions& options, std::ostream& out) {
    Progress progress;
    NewFolder folder(options.target);
    const DistrictSnapshot district(options.folders);
    const auto written = writeTables(district, folder.path(), options.withoutNames, progress);
    folder.finish();
    progress.clear();
    out << fmt::format("Wrote {} rows of {} tables{} to {}.\n", written.rows, written.tables,
                       options.withoutNames ? " without names" : "", folder.wanted().string());
}

}  // namespace tools::district
