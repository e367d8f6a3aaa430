#include "tools/district/backup/backup.h"

#include <atomic>
#include <filesystem>
#include <set>
#include <thread>

#include <gmock/gmock.h>

#include "platform/store/base/copying.h"
#include "platform/store/open/open.h"
#include "platform/store/open/standstill.h"
#include "support/faultof.h"
#include "support/privateserver.h"
#include "tools/district/backup/restore.h"
#include "tools/district/backup/serverdump.h"
#include "tools/district/check/checks.h"
#include "tools/district/copy/copydistrict.h"
#include "tools/district/make/madedistrict.h"
#include "tools/district/place/centre.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

using data::DatabaseFile;
using support::faultOf;
using testing::AnyOf;
using testing::HasSubstr;

class Backup : public testing::Test {
protected:
    fs::path backUp(const fs::path& target, std::optional<std::size_t> keep = {}) const {
        Progress progress;
        return backUpDistrict({.folders = made_.folders(), .target = target, .keep = keep},
                              progress)
            .file;
    }
    static std::optional<fs::path> restore(const fs::path& file, const fs::path& folder) {
        Progress progress;
        return restoreDistrict(
            file, folder, [] { return true; }, progress);
    }
    static std::string faults(const fs::path& folder) {
        Progress progress;
        const auto report = checkDistrict({folder}, progress);
        return report.isSound() ? "" : report.text();
    }
    /// Every cell of every table.
    static std::string contents(const fs::path& folder) {
        std::string all;
        for (const DatabaseFile file : data::AllDatabaseFiles) {
            const auto database = store::open(Folders{folder}.database(file).string());
            for (const store::Table& table : data::tablesOf(file)) {
                const auto rows = database->prepare("SELECT * FROM \"" + table.name + "\"");
                while (rows->step()) {
                    for (int i = 0; i < rows->columnCount(); ++i) {
                        all += std::string(rows->text(i)) + "|";
                    }
                }
            }
        }
        return all;
    }
    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : fs::directory_iterator(place_.path())) {
            found.insert(entry.path().filename());
        }
        return found;
    }
    [[nodiscard]] fs::path at(const std::string& name) const { return place_.path() + name; }

    MadeDistrict made_{5};
    support::TemporaryFolder place_;
};

TEST_F(Backup, BringsEveryCellAndTheSettingsBackElsewhere) {
    const std::string ini = support::contentsOf(made_.folders().settings()) + "RequirePassword=1\n";
    writePrivateFile(made_.folders().settings(), ini);
    const fs::path file = backUp(at("b.tar.zst"));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(restore(file, at("new")), std::nullopt);
    EXPECT_EQ(contents(at("new")), contents(made_.folder()));
    EXPECT_EQ(faults(at("new")), "");
    EXPECT_THAT(support::contentsOf(at("new") / "vireo" / "route.ini"), HasSubstr("Password=1"));
    EXPECT_EQ(names(), (std::set<std::string>{"b.tar.zst", "new"}));
    const std::string unpack =
        "cd " + place_.path() +
        " && mkdir x && tar --zstd -xf b.tar.zst -C x"
        " && cd x && b2sum --quiet --check B2SUMS && test $(wc -l < B2SUMS) = 7";
    EXPECT_EQ(std::system(unpack.c_str()), 0) << "other tools take it apart";
}

TEST_F(Backup, BringsWhatBelongsToTheDistrictBesideItsDatabases) {
    const Folders folders = made_.folders();
    const std::string outside = place_.write("outside.txt", "Oak Street");
    const auto setClosed = [&](const std::string& table, const std::string& name,
                               const std::string& where = "") {
        made_.execute(DatabaseFile::Routing,
                      "UPDATE " + table + " SET GIS_CLOSEDSTREETFILENAME = '" + name + "'" + where);
    };
    setClosed("RUN", outside);
    setClosed("RUN", (folders.programs() / "mine.txt").string(),
              " WHERE RUN = (SELECT MAX(RUN) FROM RUN)");
    setClosed("District", "lists/closed.txt");
    keepSetting(folders, "Streets", (folders.data() / "town.streets").string());
    const std::vector<fs::path> names{"data/town.streets", "data/lists/closed.txt",
                                      "data/addresses.csv", "data/computed-travel.csv",
                                      "prog/mine.txt"};
    fs::create_directory(folders.data() / "lists");
    const auto write = [&](const std::string& text) {
        for (const fs::path& name : names) {
            writePrivateFile(folders.root / name, text + name.string());
        }
    };
    write("as backed up: ");
    Progress progress;
    const auto outcome = backUpDistrict({.folders = folders, .target = at("b.tar.zst")}, progress);
    EXPECT_THAT(outcome.leftOut, testing::ElementsAre(fs::path(outside)));
    write("as they were: ");
    fs::permissions(folders.root / names[0], fs::perms::group_read, fs::perm_options::add);
    restore(outcome.file, at("new"));
    const auto former = restore(outcome.file, folders.root).value();
    for (const fs::path& name : names) {
        for (const fs::path& root : {at("new"), folders.root}) {
            EXPECT_EQ(support::contentsOf((root / name).string()),
                      "as backed up: " + name.string());
        }
        EXPECT_EQ(support::contentsOf((former / name).string()), "as they were: " + name.string());
    }
    EXPECT_EQ(fs::status(folders.root / names[0]).permissions(),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    EXPECT_THAT(faults(at("new")), HasSubstr("new/data/town.streets is no street file"));
}

TEST_F(Backup, KeepsTheNewestOfItsKind) {
    place_.write("district-2020-01-01.tar.zst", "old");
    place_.write("district-2020-01-01.txt", "another kind");
    const fs::path first = backUp(at("district-1.tar.zst"));
    fs::last_write_time(first, fs::file_time_type::clock::now() - std::chrono::hours(1));
    fs::last_write_time(at("district-2020-01-01.tar.zst"), fs::last_write_time(first));
    fs::rename(at("district-2020-01-01.tar.zst"), at("district-0.tar.zst"));
    place_.write("district-7.tar.zst.making-abcdef", "left by a kill");
    backUp(at("district-2.tar.zst"), 1);
    EXPECT_EQ(names(), (std::set<std::string>{"district-2.tar.zst", "district-2020-01-01.txt"}));
    EXPECT_THAT(faultOf([&] { backUp(at("district-2.tar.zst"), 1); }), HasSubstr("already"));
    EXPECT_THAT(backUp(place_.path()).filename().string(),
                testing::MatchesRegex("district-[-0-9]+.tar.zst"));
}

TEST_F(Backup, TakesThePlaceOfADistrictAndKeepsTheRest) {
    const fs::path file = backUp(at("b.tar.zst"));
    const Folders folders = made_.folders();
    const std::string before = contents(folders.root);
    made_.execute(DatabaseFile::Routing, "DELETE FROM RUN");
    writePrivateFile(folders.reports() / "mine.txt", "a report");
    fs::permissions(folders.database(DatabaseFile::Trip), fs::perms::group_read,
                    fs::perm_options::add);
    {
        const auto somebody = made_.open(DatabaseFile::DeadCross);
        EXPECT_THAT(faultOf([&] { restore(file, folders.root); }), HasSubstr("DEADCROSS.mdb"));
    }
    EXPECT_EQ(made_.number("SELECT COUNT(*) FROM RUN"), 0);
    fs::resize_file(folders.database(DatabaseFile::RouteWrk),
                    100);  // a damaged one is no hindrance
    const auto former = restore(file, folders.root);
    ASSERT_TRUE(former);
    EXPECT_EQ(contents(folders.root), before);
    EXPECT_EQ(support::contentsOf(folders.reports() / "mine.txt"), "a report");
    EXPECT_TRUE(fs::exists(folders.programs() / "RouteWrk.mdb"));
    EXPECT_NE(
        fs::status(folders.database(DatabaseFile::Trip)).permissions() & fs::perms::group_read,
        fs::perms::none);
    EXPECT_EQ(store::open(*former / "data" / "routing.mdb")->execute("DELETE FROM RUN"), 0);
    EXPECT_THAT(faults(folders.root), HasSubstr("that others than their owner can read: 1,"));
    EXPECT_EQ(std::distance(fs::directory_iterator(folders.root.parent_path()), {}), 1);
}

TEST_F(Backup, RefusesWhatIsChangedOrCutShortAndChangesNothing) {
    const std::string whole = support::contentsOf(backUp(at("b.tar.zst")));
    for (std::size_t place = 50; place < whole.size(); place += whole.size() / 15) {
        std::string flipped = whole;
        flipped[place] = static_cast<char>(flipped[place] ^ 0x10);
        for (const std::string& bytes : {flipped, whole.substr(0, place)}) {
            const std::string broken = place_.write("broken", bytes);
            EXPECT_THAT(faultOf([&] { restore(broken, at("new")); }), HasSubstr(broken)) << place;
        }
    }
    EXPECT_EQ(names(), (std::set<std::string>{"b.tar.zst", "broken"}));
    const std::string routing = made_.folders().database(DatabaseFile::Routing);
    std::string pages = support::contentsOf(routing);
    pages.replace(pages.size() / 2, 8192, 8192, '\x55');
    writePrivateFile(routing, pages);
    EXPECT_THAT(faultOf([&] { backUp(at("c.tar.zst")); }), HasSubstr("routing.mdb is damaged"));
    EXPECT_EQ(names(), (std::set<std::string>{"b.tar.zst", "broken"}));
}

// A program that changes two files under both locks is seen before or after, never in between.
TEST_F(Backup, ReadsAllFilesAsTheyAreAtOneMoment) {
    std::vector<std::string> paths;
    for (const DatabaseFile file : {DatabaseFile::Routing, DatabaseFile::Trip}) {
        made_.execute(file, "CREATE TABLE COUNTED (N)");
        made_.execute(file, "INSERT INTO COUNTED VALUES (0)");
        paths.push_back(made_.folders().database(file).string());
    }
    std::atomic<bool> stop = false;
    std::thread writer([&] {
        const auto one = store::open(paths[0]);
        const auto other = store::open(paths[1]);
        while (!stop) {
            one->begin();
            other->begin();
            for (const auto* file : {&one, &other}) {
                (*file)->execute("UPDATE COUNTED SET N = N + 1");
                (*file)->commit();
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(3));
        }
    });
    const auto counted = [](store::Database& database) {
        const auto row = database.prepare("SELECT N FROM COUNTED");
        row->step();
        return row->integer(0);
    };
    std::set<std::int64_t> moments;
    for (int i = 0; i < 15; ++i) {
        const auto files = store::openAtOneMoment(paths);
        const auto first = counted(*files[0]);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        EXPECT_EQ(counted(*files[1]), first);
        EXPECT_EQ(counted(*files[0]), first);
        moments.insert(first);
    }
    stop = true;
    writer.join();
    EXPECT_GT(moments.size(), 5U) << "the writer is not kept waiting";
}

/// The same of a district on a server.
class ServerBackup : public Backup {
protected:
    void SetUp() override {
        server_ = support::PrivateServer::find();
        if (server_ == nullptr) {
            GTEST_SKIP() << "PostgreSQL's server is not installed";
        }
        there_ = server_->newPlace();
        Progress progress;
        copyDistrict(made_.folder(), there_, progress);
    }
    fs::path dump(const fs::path& target) const {
        Progress progress;
        return backUpDistrict({.folders = foldersOf(there_), .target = target}, progress).file;
    }
    std::string restored(const fs::path& file, const std::string& place, bool mayReplace) const {
        return faultOf([&] {
            Progress progress;
            restoreDistrict(
                file, place, [&] { return mayReplace; }, progress);
        });
    }
    /// The first table that is not as in the files that the district was copied from.
    std::string difference(const std::string& place) const {
        for (const DatabaseFile file : data::AllDatabaseFiles) {
            const auto one = made_.open(file);
            const auto other = store::open(foldersOf(place).database(file).string());
            for (const store::Table& table : one->catalog().tables()) {
                if (auto found = store::differenceOf(*one, *other, table); !found.empty()) {
                    return found;
                }
            }
        }
        return "";
    }
    void remove(const std::string& rows) const {
        store::open(there_ + "routing.mdb")->execute("DELETE FROM " + rows);
    }

    support::PrivateServer* server_ = nullptr;
    std::string there_;
};

TEST_F(ServerBackup, BringsEveryCellBackAndReplacesOnlyWhatItMay) {
    const fs::path file = dump(at("b.dump"));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    const fs::path named = dump(at(""));
    EXPECT_THAT(named.filename().string(), testing::MatchesRegex("one[-0-9]+.dump"));
    EXPECT_NE(dump(at("")), named) << "within the same second, mostly";
    const std::string elsewhere = server_->newPlace();
    EXPECT_EQ(restored(file, elsewhere, false), "");
    EXPECT_EQ(difference(elsewhere), "");
    const fs::path desktop = at("desktop");
    connectFolder(desktop, there_);
    remove("RUN");
    EXPECT_THAT(restored(file, desktop, false), HasSubstr("already; nothing was restored"));
    {
        const auto somebody = store::open(there_ + "trip.mdb");
        EXPECT_THAT(restored(file, desktop, true), HasSubstr("Somebody works"));
    }
    EXPECT_EQ(restored(file, desktop, true), "");
    EXPECT_EQ(difference(there_), "");
    const auto former = std::find_if(fs::directory_iterator(desktop), {},
                                     [](const auto& entry) { return isServerDump(entry.path()); });
    ASSERT_NE(former, fs::directory_iterator());
    EXPECT_EQ(restored(former->path(), desktop, true), "") << "as it was before, without runs";
    EXPECT_NE(difference(there_), "");
}

TEST_F(ServerBackup, LeavesTheDistrictAsItIsWhereTheBackUpIsNotSound) {
    const fs::path file = dump(at("b.dump"));
    const auto half = fs::file_size(file) / 2;
    std::string bytes = support::contentsOf(file);
    bytes[half] = static_cast<char>(~bytes[half]);
    const fs::path changed = place_.write("changed.dump", bytes);
    fs::resize_file(file, half);
    const fs::path desktop = at("desktop");
    connectFolder(desktop, there_);
    EXPECT_THAT(restored(file, desktop, true), HasSubstr("pg_restore"));
    EXPECT_THAT(restored(changed, desktop, true),  // whichever of the two stumbles first
                AnyOf(HasSubstr("pg_restore"), HasSubstr("psql")));
    EXPECT_THAT(restored(file, at("folder"), true), HasSubstr("name a place there"));
    EXPECT_THAT(restored(backUp(at("b.tar.zst")), there_, true), HasSubstr("restored to a folder"));
    EXPECT_EQ(difference(there_), "");
    EXPECT_TRUE(std::none_of(fs::directory_iterator(desktop), {}, [](const auto& entry) {
        return entry.path().extension() == ".dump";
    })) << "the same as what stands there";
    EXPECT_THAT(faultOf([&] { dump("/dev/full/b.dump"); }), HasSubstr("There is no folder"));
}

}  // namespace

}  // namespace tools::district
