#include "startup/districts/knowndistricts.h"

#include <QSettings>
#include <algorithm>
#include <cstdlib>
#include <thread>

#include <gmock/gmock.h>

#include "support/fakes.h"
#include "support/temporaryfolder.h"

namespace startup {

namespace {

using testing::ElementsAre;
using testing::SizeIs;

class KnownDistrictsTest : public testing::Test {
protected:
    KnownDistrictsTest() {
        ::setenv("XDG_CONFIG_HOME", home_.path().c_str(), 1);
        ::setenv("XDG_CONFIG_DIRS", (home_.path() + "machine").c_str(), 1);
    }

    [[nodiscard]] std::vector<std::string> folders() const {
        std::vector<std::string> folders;
        std::ranges::transform(known_.all(), std::back_inserter(folders), &KnownDistrict::folder);
        return folders;
    }

    support::TemporaryFolder home_;
    support::FakeClock clock_;
    KnownDistricts known_{home_.path() + "vireo/districts.ini"};
};

TEST_F(KnownDistrictsTest, TheLastOneUsedComesFirstAndAllIsKept) {
    const std::string odd = "/srv/\xE9t\xE9; [Four=Towns] %41";  // not UTF-8
    known_.add("/srv/b", "beta");
    known_.add("/srv/a", "Zeta");
    known_.use(odd, "Four Towns \xC3\xA9\"", "ANN B");
    EXPECT_THAT(folders(), ElementsAre(odd, "/srv/b", "/srv/a"));
    const KnownDistrict found = KnownDistricts().find(odd);
    EXPECT_EQ(found.name, "Four Towns \xC3\xA9\"");
    EXPECT_EQ(found.lastUser, "ANN B");
    EXPECT_EQ(found.lastUsed, clock_.time);
    clock_.time = clock_.time.plusSeconds(1);
    known_.use("/srv/a", "", "BO");
    EXPECT_EQ(known_.find("/srv/a").name, "Zeta")
        << "a name that could not be read takes none away";
    known_.remove("/srv/b");
    EXPECT_THAT(folders(), ElementsAre("/srv/a", odd));
    known_.add("/srv/b", "");
    EXPECT_THAT(folders(), SizeIs(3));
}

TEST_F(KnownDistrictsTest, FindsThoseOfTheUsualPlacesOnceUntilTheyAreTakenAway) {
    const std::string home = home_.path().substr(0, home_.path().size() - 1);
    const std::string settings = "[AppPaths]\ndatapath=" + home_.path() + "data/\n";
    home_.write("machine/vireo/route.ini", settings);
    EXPECT_THAT(folders(), ElementsAre(home + "/machine"));
    home_.write("shared/vireo/route.ini", settings);
    known_.add(home + "/shared", "Shared");
    EXPECT_THAT(folders(), ElementsAre(home + "/shared")) << "one district under two settings";
    known_.remove(home + "/shared");
    known_.remove(home + "/machine");
    EXPECT_THAT(folders(), ElementsAre());
}

TEST_F(KnownDistrictsTest, ADamagedListIsEmptyAndOfAnotherProgramNothingIsLost) {
    home_.write("vireo/districts.ini", "\x01\xFF\n]]=[\n[District-x\nFolder=relative\n");
    EXPECT_THAT(folders(), ElementsAre());
    home_.write("vireo/districts.ini", "[Later]\nThing=7\n[District-z]\nFolder=@ByteArray(/z)\n");
    known_.add("/srv/a", "A");
    EXPECT_THAT(folders(), ElementsAre("/srv/a", "/z"));
    EXPECT_THAT(support::contentsOf(home_.path() + "vireo/districts.ini"),
                testing::HasSubstr("Thing=7"));
}

TEST_F(KnownDistrictsTest, ProgramsThatWriteAtOnceLoseNothing) {
    constexpr int Each = 20;
    std::vector<std::thread> writers;
    for (const char* name : {"/a", "/b", "/c"}) {
        writers.emplace_back([name] {
            for (int i = 0; i < Each; ++i) {
                KnownDistricts().add(name + std::to_string(i), "X");
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    EXPECT_THAT(folders(), SizeIs(3 * Each));
}

}  // namespace

}  // namespace startup
