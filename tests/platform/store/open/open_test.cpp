#include "platform/store/open/open.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <tuple>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "plainfile.h"
#include "platform/store/base/database.h"
#include "platform/store/base/filesystem.h"
#include "support/temporaryfolder.h"
#include "tables.h"

namespace {

using store::Fault;
using testing::AllOf;
using testing::HasSubstr;

/// What opening a file raises, checked to name the file.
store::StoreError openingOf(const std::string& path, int timeoutMs = 50) {
    auto error = refusalOf([&] { return store::open(path, timeoutMs); });
    EXPECT_THAT(error.description(), HasSubstr(path));
    return error;
}

class Open : public testing::Test {
protected:
    [[nodiscard]] std::string sampleFile(const std::string& name = "routing.mdb") const {
        const auto database = store::createFile(folder.path() + name);
        database->create(everyKind());
        database->begin();
        for (int i = 0; i < 2000; ++i) {
            database->execute("INSERT INTO STOPS (RUN) VALUES ('R" + std::to_string(i) + "')");
        }
        database->commit();
        return folder.path() + name;
    }

    const support::TemporaryFolder folder{support::TemporaryFolder::Place::Memory};
};
using CreateFile = Open;
using Link = Open;

TEST_F(Open, NeverCreatesAFile) {
    EXPECT_EQ(openingOf(folder.path() + "routing.mdb").fault(), Fault::Missing);
    EXPECT_EQ(openingOf(folder.path() + "no/such/folder.mdb").fault(), Fault::Missing);
    EXPECT_FALSE(std::filesystem::exists(folder.path() + "routing.mdb"));
}

TEST_F(Open, TellsWhatAFileIsInstead) {
    EXPECT_EQ(openingOf(folder.write("a", "")).fault(), Fault::NotADatabase);
    EXPECT_EQ(openingOf(folder.write("b", "[AppPaths]\n")).fault(), Fault::NotADatabase);
    EXPECT_EQ(openingOf(folder.write("c", std::string(4096, '\xff'))).fault(), Fault::NotADatabase);
    EXPECT_EQ(openingOf(std::filesystem::temp_directory_path()).fault(), Fault::NotADatabase);

    const std::string head("\0\1\0\0", 4);
    for (const char* mark : {"Standard Jet DB", "Standard ACE DB"}) {
        const auto refusal = openingOf(
            folder.write("d", head + mark + std::string(1, '\0') + std::string(4000, 'x')));
        EXPECT_EQ(refusal.fault(), Fault::OtherKind);
        EXPECT_THAT(refusal.description(), AllOf(HasSubstr("Access"), HasSubstr("imported")));
    }
}

TEST_F(Open, NoticesAFileThatLostItsEnd) {
    const std::string path = sampleFile();
    std::filesystem::resize_file(path, std::filesystem::file_size(path) - 4096);
    const auto refusal = openingOf(path);
    EXPECT_EQ(refusal.fault(), Fault::Damaged);
    EXPECT_THAT(refusal.description(), HasSubstr("4096 of"));
}

TEST_F(Open, NoticesADamagedTableList) {
    const std::string path = sampleFile();
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(100);
    file << std::string(3900, '\x7f');
    file.close();
    EXPECT_EQ(openingOf(path).fault(), Fault::Damaged);
}

TEST_F(Open, GivesUpOnALockedFileAfterTheTimeOut) {
    const std::string path = sampleFile();
    const PlainFile other(path);
    other.run("PRAGMA journal_mode = DELETE; BEGIN EXCLUSIVE");
    const auto refusal = openingOf(path, 200);
    EXPECT_EQ(refusal.fault(), Fault::Locked);
    EXPECT_THAT(refusal.description(), HasSubstr("within 0.2 seconds"));
    other.run("COMMIT");
    EXPECT_NO_THROW(store::open(path, 200));
}

TEST_F(Open, WritingWaitsForAnotherWriterAndThenSaysWhoIsInTheWay) {
    const auto database = store::open(sampleFile(), 50);
    const PlainFile other(folder.path() + "routing.mdb");
    other.run("BEGIN IMMEDIATE; UPDATE STOPS SET SEQ = 9");
    const auto refusal = refusalOf([&] { database->begin(); });
    EXPECT_EQ(refusal.fault(), Fault::Locked);
    EXPECT_THAT(refusal.description(), HasSubstr("routing.mdb"));
    other.run("ROLLBACK");
    database->begin();
    database->commit();
}

TEST_F(Open, AReadOnlyFileRefusesWritesInPlainWords) {
    constexpr uid_t Nobody = 65534;
    if (geteuid() == 0 && (chown(folder.path().c_str(), Nobody, 0) != 0 || seteuid(Nobody) != 0)) {
        GTEST_SKIP() << "cannot give up the right to write everything";
    }
    {
        const std::string path = sampleFile();
        EXPECT_NO_THROW(store::open(path)->requireWritable());
        chmod(path.c_str(), 0400);
        const auto database = store::open(path);
        EXPECT_EQ(refusalOf([&] { database->requireWritable(); }).fault(), Fault::ReadOnly);
        const auto refusal = refusalOf([&] { return database->execute("DELETE FROM STOPS"); });
        EXPECT_EQ(refusal.fault(), Fault::ReadOnly);
        EXPECT_THAT(refusal.description(), AllOf(HasSubstr(path), HasSubstr("read-only")));
    }
    if (getuid() == 0) {
        ASSERT_EQ(seteuid(0), 0);
    }
}

TEST_F(Open, WritesToAFileThatIsThereNoMoreAreRefused) {
    const std::string path = sampleFile();
    const auto newer = support::contentsOf(path);
    for (const char* beside : {"", "-wal", "-shm"}) {
        for (const bool isReplaced : {false, true}) {
            const std::string one = folder.write("one.mdb", newer);
            const auto database = store::open(one, 50);
            database->begin();
            database->execute("UPDATE STOPS SET SEQ = 1 WHERE ID = 1");
            std::filesystem::rename(one + beside, one + ".old");
            if (isReplaced) {
                folder.write(std::string("one.mdb") + beside, newer);
            }
            EXPECT_EQ(refusalOf([&] { database->commit(); }).fault(), Fault::Replaced);
            database->rollback();
            EXPECT_EQ(refusalOf([&] { database->begin(); }).fault(), Fault::Replaced);
            const auto refusal = refusalOf([&] { return database->execute("DELETE FROM STOPS"); });
            EXPECT_THAT(refusal.description(), AllOf(HasSubstr(one), HasSubstr("was replaced")));
            std::filesystem::rename(one + ".old", one + beside);
            EXPECT_EQ(database->execute("UPDATE STOPS SET SEQ = 1 WHERE ID = 1"), 1);
        }
    }
}

TEST_F(Open, WritesToAFileThatWasWrittenOverInPlaceAreRefused) {
    const std::string path = sampleFile();
    const auto older = support::contentsOf(path);
    const auto database = store::open(path, 50);
    const auto other = store::open(path, 50);
    // What programs of this kind bring into the file is theirs to write.
    for (const auto* writer : {&other, &database, &other}) {
        EXPECT_EQ((*writer)->execute("UPDATE STOPS SET SEQ = SEQ + 1"), 2000);
        EXPECT_EQ(database->execute("UPDATE STOPS SET SEQ = 1 WHERE ID = 1"), 1);
        (*writer)->checkpoint();
        EXPECT_EQ(database->execute("UPDATE STOPS SET SEQ = 1 WHERE ID = 2"), 1);
    }
    database->begin();
    std::ofstream(path, std::ios::binary | std::ios::trunc) << older;
    // The file's clock may not have ticked since.
    std::filesystem::last_write_time(
        path, std::filesystem::last_write_time(path) + std::chrono::seconds(1));
    EXPECT_EQ(refusalOf([&] { database->commit(); }).fault(), Fault::Replaced);
    database->rollback();
    EXPECT_EQ(refusalOf([&] { database->begin(); }).fault(), Fault::Replaced);
    EXPECT_EQ(refusalOf([&] { other->execute("DELETE FROM STOPS"); }).fault(), Fault::Replaced);
    EXPECT_EQ(support::contentsOf(path), older);
}

TEST_F(Open, FilesThatOtherMachinesSeeAreRefused) {
    struct : store::FileSystemPort {
        [[nodiscard]] std::uint32_t number(const std::string&) const override { return kind; }
        [[nodiscard]] std::string mountedAs(const std::string&) const override { return name; }
        std::uint32_t kind = 0;
        std::string name;
    } share;
    const std::string path = sampleFile();
    auto* const before = std::exchange(store::fileSystems(), &share);
    constexpr std::uint32_t Fuse = 0x65735546;
    for (const auto& [kind, name, said] : {std::tuple{0x6969U, "nfs4", "(NFS)"},
                                           {0xFF534D42U, "cifs", "(SMB/CIFS)"},
                                           {Fuse, "fuse.sshfs", "(sshfs)"},
                                           {Fuse, "", "(FUSE)"},
                                           {Fuse, "fuseblk", ""},
                                           {0xEF53U, "ext4", ""}}) {
        share.kind = kind;
        share.name = name;
        if (*said == '\0') {
            EXPECT_NO_THROW(store::open(path)) << name;
            continue;
        }
        const auto refusal = openingOf(path);
        EXPECT_EQ(refusal.fault(), Fault::Network);
        EXPECT_THAT(refusal.description(),
                    AllOf(HasSubstr(said), HasSubstr("a folder on this machine")));
    }
    store::fileSystems() = before;
}

TEST_F(Open, AFileSystemWithoutSharedMemoryIsRefused) {
    const std::string path = sampleFile();
    PlainFile(path).run("PRAGMA journal_mode = DELETE");
    sqlite3_vfs* const usual = sqlite3_vfs_find(nullptr);
    sqlite3_vfs_register(sqlite3_vfs_find("unix-dotfile"), 1);
    EXPECT_EQ(openingOf(path).fault(), Fault::Network);
    sqlite3_vfs_register(usual, 1);
}

TEST_F(Open, DamageInsideTheFileIsFoundAndNamed) {
    const std::string path = sampleFile();
    EXPECT_THAT(store::open(path)->damages(), testing::IsEmpty());
    breakIndex(path, "index_STOPS_RUN_SEQ", "DELETE FROM STOPS WHERE ID > 1000");
    EXPECT_THAT(
        store::open(path)->damages(),
        testing::ElementsAre("the index index_STOPS_RUN_SEQ does not hold the rows of its table"));
    std::fstream(path, std::ios::in | std::ios::out | std::ios::binary).seekp(-4096, std::ios::end)
        << std::string(4096, '\x7f');
    EXPECT_THAT(store::open(path)->damages(),
                testing::Contains(HasSubstr("its contents do not fit together (")));
}

TEST_F(Open, AFullDiskIsNamedAndLeavesTheFileAsItWas) {
    const auto database = store::open(sampleFile());
    database->execute("PRAGMA max_page_count = 1");
    const auto refusal = refusalOf([&] {
        for (int i = 0; i < 1000; ++i) {
            database->execute("INSERT INTO STOPS (RUN) VALUES (hex(randomblob(2000)))");
        }
    });
    EXPECT_EQ(refusal.fault(), Fault::Full);
    EXPECT_THAT(refusal.description(), HasSubstr("no room"));
    const PlainFile other(folder.path() + "routing.mdb");
    EXPECT_EQ(other.run("PRAGMA integrity_check"), "ok");
}

TEST_F(CreateFile, IsReadableByItsOwnerOnlyAndNeverReplacesAFile) {
    const std::string path = folder.path() + "trip.mdb";
    const auto database = store::createFile(path);
    database->create(everyKind());
    for (const std::string& name : {path, path + "-wal", path + "-shm"}) {
        struct stat status {};
        ASSERT_EQ(stat(name.c_str(), &status), 0) << name;
        EXPECT_EQ(status.st_mode & 0777, 0600U) << name;
    }
    EXPECT_THROW(store::createFile(path), store::StoreError);
    EXPECT_NE(database->catalog().find("stops"), nullptr);
}

TEST_F(Link, OwnTablesWinAndABadFileLeavesNothingBehind) {
    const auto trip = store::createFile(folder.path() + "trip.mdb");
    trip->create(
        {"VEHTYPE", {{"VEHTYPE", store::ColumnKind::Code}, {"HIGH", store::ColumnKind::Integer}}});
    trip->create({"EMPLOYEE", {{"EMPNUM", store::ColumnKind::Integer}}, {"EMPNUM"}});
    trip->execute("INSERT INTO EMPLOYEE VALUES (12)");
    const auto routing = store::createFile(folder.path() + "routing.mdb");
    routing->create({"VEHTYPE", {{"VEHTYPE", store::ColumnKind::Code}}});
    routing->link(folder.path() + "trip.mdb");

    ASSERT_NE(routing->catalog().find("EMPLOYEE"), nullptr);
    EXPECT_EQ(routing->catalog().find("VEHTYPE")->columns.size(), 1U);
    const auto rows =
        routing->prepare("SELECT EMPNUM FROM EMPLOYEE, (SELECT count(*) FROM VEHTYPE)");
    ASSERT_TRUE(rows->step());
    EXPECT_EQ(rows->integer(0), 12);

    const auto tables = routing->catalog().tables().size();
    EXPECT_THROW(routing->link(folder.write("x.mdb", "nothing")), store::StoreError);
    EXPECT_THROW(routing->link(folder.path() + "none.mdb"), store::StoreError);
    EXPECT_FALSE(std::filesystem::exists(folder.path() + "none.mdb"));
    EXPECT_EQ(routing->catalog().tables().size(), tables);
}

TEST_F(Link, AWriterOfALinkedFileIsNotInTheWay) {
    (void)sampleFile("trip.mdb");
    const auto routing = store::open(sampleFile(), 50);
    routing->link(folder.path() + "trip.mdb");
    const PlainFile tripWriter(folder.path() + "trip.mdb");
    tripWriter.run("BEGIN IMMEDIATE");
    routing->begin();
    EXPECT_EQ(routing->execute("UPDATE STOPS SET SEQ = 1 WHERE ID = 1"), 1);
    EXPECT_THROW(PlainFile(folder.path() + "routing.mdb").run("DELETE FROM STOPS"),
                 std::runtime_error);
    routing->commit();

    const PlainFile routingWriter(folder.path() + "routing.mdb");
    routingWriter.run("BEGIN IMMEDIATE");
    EXPECT_THROW(routing->begin(), store::StoreError);
    EXPECT_FALSE(routing->inTransaction());
}

TEST_F(Link, ClosingALookAtAFileKeepsTheLocksOfItsOtherConnections) {
    const auto trip = store::open(sampleFile("trip.mdb"), 50);
    trip->begin();
    trip->execute("UPDATE STOPS SET SEQ = 1");
    { const auto second = store::open(folder.path() + "trip.mdb", 50); }
    const pid_t child = fork();
    if (child == 0) {
        try {
            store::open(folder.path() + "trip.mdb", 50)->begin();
            _exit(1);
        } catch (const store::StoreError& error) {
            _exit(error.fault() == Fault::Locked ? 0 : 2);
        }
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    trip->commit();
}

TEST_F(Open, AWatchHearsOfOthersWritesAndOfWhoHasTheSameRecordOpen) {
    const std::string path = sampleFile();
    const auto database = store::open(path);
    const auto ann = store::watch(path, *database, "ANN");
    const auto ben = store::watch(path, *database, "BEN");
    database->execute("UPDATE STOPS SET SEQ = 1");
    EXPECT_FALSE(ann->look().any);
    PlainFile(path).run("UPDATE STOPS SET SEQ = 2");
    EXPECT_TRUE(ann->look().any);
    EXPECT_FALSE(ann->look().any);

    ann->open("R1");
    ben->open("R10");
    EXPECT_THAT(ann->others(), testing::IsEmpty());
    ben->open("R1");
    EXPECT_THAT(ann->others(), testing::ElementsAre("BEN"));
    const pid_t child = fork();
    if (child == 0) {
        store::watch(path, *database, "EVE").release()->open("R1");
        kill(getpid(), SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_THAT(ann->others(), testing::ElementsAre("BEN")) << "no ghost";
    ben->open("");
    ann->open("");
    EXPECT_FALSE(std::filesystem::exists(folder.path() + "open"));
}

TEST_F(Open, ACheckpointReachesTheFileItselfAndDurabilityIsAsAsked) {
    const auto database = store::open(sampleFile());
    const auto level = [&database] {
        const auto rows = database->prepare("PRAGMA synchronous");
        rows->step();
        return rows->integer(0);
    };
    EXPECT_EQ(level(), 2);
    database->setDurability(store::Durability::Crash);
    EXPECT_EQ(level(), 1);
    database->execute("UPDATE STOPS SET SEQ = 7");
    const std::string log = folder.path() + "routing.mdb-wal";
    EXPECT_GT(std::filesystem::file_size(log), 0U);
    database->checkpoint();
    EXPECT_EQ(std::filesystem::file_size(log), 0U);
    database->setDurability(store::Durability::PowerCut);
    EXPECT_EQ(level(), 2);
}

}  // namespace
