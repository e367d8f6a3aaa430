#include "tools/district/make/create.h"

#include "platform/files/installation.h"
#include "streets/district/districtstreets.h"
#include "tools/district/base/folders.h"
#include "tools/district/make/companions.h"
#include "tools/district/make/generator.h"
#include "tools/district/make/plan.h"
#include "tools/district/make/sample.h"
#include "tools/district/make/writer.h"
#include "tools/district/place/centre.h"

namespace tools::district {

namespace {

District districtFor(const CreateOptions& options) {
    if (options.empty) {
        District district;
        district.name = options.empty->name;
        return district;
    }
    if (options.runs) {
        return generateDistrict(*options.runs, options.seed);
    }
    District district = sampleDistrict(readPlan(embeddedPlan()));
    district.licence = embeddedLicence();
    return district;
}

}  // namespace

void createDistrict(const CreateOptions& options, Progress& progress) {
    FolderInTheMaking folder(options.folder);
    progress.begin("Planning", 1);
    const District district = districtFor(options);
    writeDistrict(district, options.empty ? startingRows(options.empty->administrator) : codeRows(),
                  folder.folders(), progress);
    writeSettings(folder.folders(), folder.wanted());
    if (!options.empty) {
        keepSetting(folder.folders(), "Streets", streets::textOf(streets::Grid()));
    }
    if (!district.licence.empty()) {
        writePrivateFile(folder.folders().data() / "LICENSE-RSRB01.txt", district.licence);
    }
    linkCompanions(files::installation().companions, folder.folders().programs());
    folder.finish();
}

}  // namespace tools::district
