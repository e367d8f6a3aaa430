#include "tools/district/make/create.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/faultof.h"
#include "tools/district/make/madedistrict.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

std::string refusalOf(const fs::path& folder) {
    Progress progress;
    return support::faultOf([&] { createDistrict({.folder = folder, .runs = 1}, progress); });
}

std::size_t entriesOf(const fs::path& folder) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

}  // namespace

TEST(Create, OnlyTheOwnerReadsADistrict) {
    const auto before = ::umask(0);
    const MadeDistrict made(2);
    ::umask(before);
    for (const auto& entry : fs::recursive_directory_iterator(made.folder())) {
        if (entry.is_symlink()) {  // a companion program, open to all
            continue;
        }
        const auto mode = entry.status().permissions();
        EXPECT_EQ(mode, entry.is_directory() ? fs::perms::owner_all
                                             : fs::perms::owner_read | fs::perms::owner_write)
            << entry.path();
    }
    EXPECT_EQ(fs::status(made.folder()).permissions(), fs::perms::owner_all);
}

TEST(Create, TheSettingsNameTheFolderWhereItEndsUp) {
    const MadeDistrict made(2);
    const std::string root = made.folder();
    EXPECT_THAT(support::contentsOf(root + "/vireo/route.ini"),
                testing::EndsWith("\n[AppPaths]\ndatapath=" + root + "/data/\nprogpath=" + root +
                                  "/prog/\nVIREOpath=" + root +
                                  "/common/\n\n[AppSettings]\nERRORHANDLING=True\n"
                                  "MAPSoftware=ArcView3.2\n\n[District]\n"
                                  "Streets=grid 1320 29.3333\n"));
    EXPECT_TRUE(fs::is_directory(root + "/data/RouteRpts"));
    EXPECT_EQ(made.number("SELECT COUNT(*) FROM StartEnd WHERE StartorEnd = 'End' AND Pickup = 1 "
                          "AND UpdateMap = 1 AND VehCapacity = 0"),
              1)
        << "what the map reads before the first run is handed over";
}

TEST(Create, RefusesAFolderThatHoldsSomething) {
    const MadeDistrict made(2);
    EXPECT_THAT(refusalOf(made.folder()), testing::HasSubstr("There is a district in "));
    EXPECT_THAT(refusalOf(made.folder() + "/"), testing::HasSubstr("There is a district in "));
    const support::TemporaryFolder other;
    const support::TemporaryFolder empty;
    EXPECT_EQ(refusalOf(empty.path()), "");
    const std::string file = other.write("notes.txt", "mine");
    EXPECT_THAT(refusalOf(other.path()), testing::HasSubstr("is not empty"));
    EXPECT_THAT(refusalOf(file), testing::HasSubstr("is a file, not a folder"));
    EXPECT_THAT(refusalOf(file + "/below"), testing::HasSubstr("cannot be made"));
    EXPECT_THAT(refusalOf(other.path() + std::string(240, 'x')), testing::HasSubstr("too long"));
    EXPECT_EQ(entriesOf(other.path()), 1U);
}

TEST(Create, AFailureLeavesNothingBehind) {
    const support::TemporaryFolder folder;
    try {
        const FolderInTheMaking making(folder.path() + "district");
        EXPECT_EQ(entriesOf(folder.path()), 1U);
        throw Interrupted{};
    } catch (const Interrupted&) {
        EXPECT_EQ(entriesOf(folder.path()), 0U);
    }
}

}  // namespace tools::district
