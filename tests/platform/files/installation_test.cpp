#include "platform/files/installation.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "platform/files/files.h"
#include "support/temporaryfolder.h"

namespace {

namespace fs = std::filesystem;

TEST(Installation, IsTheSameSeenFromAProgramAndFromACompanion) {
    const support::TemporaryFolder prefix;
    const std::string root = fs::canonical(prefix.path()).string();
    const auto seen = files::installationAround(root + "/bin");
    EXPECT_EQ(seen.companions, root + "/libexec/vireo");
    EXPECT_EQ(seen.guide, root + "/share/vireo/guide");
    const auto back = files::installationAround(seen.companions);
    EXPECT_EQ(back.programs, root + "/bin");
    EXPECT_EQ(back.guide, seen.guide);
}

TEST(Installation, HasTheSameShapeInTheBuildFolder) {
    const auto built = files::installation();
    EXPECT_EQ(built.programs, files::programFolder());
    EXPECT_EQ(built.companions, files::programFolder());
    EXPECT_TRUE(fs::exists(built.guide + "/finding-runs.md"));
}

}  // namespace
