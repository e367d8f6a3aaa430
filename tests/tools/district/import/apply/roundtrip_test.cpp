#include <filesystem>
#include <set>
#include <sstream>

#include "importing.h"
#include "platform/store/open/open.h"
#include "tools/district/export/tables.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

class WholeTables : public Importing {
protected:
    [[nodiscard]] std::map<std::string, std::string> exported(const Folders& folders,
                                                              const std::string& name) {
        const fs::path target = temporary_.path() + name;
        fs::create_directories(target);
        writeTables(DistrictSnapshot(folders), target, false, progress_);
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::directory_iterator(target)) {
            files[entry.path().filename()] = support::contentsOf(entry.path());
        }
        return files;
    }
};

}  // namespace

// The two districts may keep their rows in another order; the lines must be the same.
TEST_F(WholeTables, ComeBackCellByCell) {
    const Folders sample{temporary_.path() + "sample"};
    createDistrict({.folder = sample.root}, progress_);
    store::open(sample.database(data::DatabaseFile::Routing).string())
        ->execute(
            "UPDATE RUN SET COMMENT = ' a \"b\"' || char(13) || char(10) || 'é', "
            "DESCRIPTION = '' WHERE RUN = '104-2'");
    const auto files = exported(sample, "first");
    options_.rules.replaced = {"VEHTYPE", "QDSCU_PP", "QDSCU"};
    const ImportResult result = import(files);
    EXPECT_EQ(result.outcome.refused, 0) << result.outcome.rejections.front().reason;
    const auto sorted = [](const std::string& text) {
        std::multiset<std::string> lines;
        std::istringstream all(text);
        for (std::string line; std::getline(all, line);) {
            lines.insert(line);
        }
        return lines;
    };
    const auto back = exported(folders_, "second");
    for (const auto& [name, text] : files) {
        EXPECT_TRUE(sorted(back.at(name)) == sorted(text)) << name;
    }
    EXPECT_EQ(faults(), "");
    EXPECT_FALSE(import(files).isWritten);
}

}  // namespace tools::district
