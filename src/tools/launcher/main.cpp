#include <cstdio>
#include <cstdlib>

#include <fmt/format.h>

#include "help/viewer/guidedesk.h"
#include "platform/forms/formregistry.h"
#include "startup/base/applicationinfo.h"
#include "startup/desktop/desktopprogram.h"
#include "startup/desktop/selfdescription.h"
#include "startup/districts/knowndistricts.h"
#include "tools/launcher/districtchooser.h"
#include "tools/launcher/districtlook.h"
#include "tools/launcher/newdistrictform.h"

namespace {

using tools::launcher::DistrictChooser;
using tools::launcher::NewDistrictForm;

constexpr auto Help =
    "Usage: vireo [FOLDER]\n"
    "       vireo --choose\n\n"
    "Opens the district in a folder, or the only one that this desktop knows; asks where there\n"
    "are several, and helps to make one where there is none.\n\n"
    "  --choose       shows the list of districts in any case\n"
    "  --help         this text\n"
    "  --version      the program's version";

struct Wish {
    std::string folder = {};
    bool choose = false;
};

/// The toolkit's own options are taken away later; what looks like one is left to it.
Wish wishOf(int argc, char** argv) {
    Wish wish;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--choose") {
            wish.choose = true;
        } else if (word.empty() || word.starts_with('-') || !wish.folder.empty()) {
            fmt::print(stderr, "\"{}\" is not understood.\n\n{}\n", word, Help);
            std::exit(2);
        } else {
            wish.folder = tools::launcher::districtFolderOf(word);
        }
    }
    return wish;
}

void start(const Wish& wish) {
    help::offerGuide();
    auto& forms = forms::FormRegistry::instance();
    const auto known = startup::KnownDistricts().all();
    if (!wish.folder.empty()) {
        forms.make<DistrictChooser>().openWithoutAsking(wish.folder);
    } else if (known.empty()) {
        forms.make<NewDistrictForm>().showForm();
    } else if (known.size() == 1 && !wish.choose) {
        forms.make<DistrictChooser>().openWithoutAsking(known.front().folder);
    } else {
        forms.make<DistrictChooser>().showForm();
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (startup::isAnsweredAtOnce(argc, argv, Help)) {
        return 0;
    }
    const Wish wish = wishOf(argc, argv);
    startup::applicationInfo().title = "Districts";
    return startup::runOnDesktop(argc, argv, "vireo", [&] { start(wish); });
}
