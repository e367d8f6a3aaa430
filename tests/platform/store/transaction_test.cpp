#include <csignal>
#include <filesystem>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "plainfile.h"
#include "platform/store/database.h"
#include "support/temporaryfolder.h"
#include "tables.h"

namespace {

class Transactions : public testing::Test {
protected:
    Transactions() {
        const auto database = store::createFile(path);
        database->create(everyKind());
        database->execute("INSERT INTO STOPS (SEQ) VALUES (1), (2)");
    }
    [[nodiscard]] std::string seqs() const {
        return PlainFile(path).run("SELECT group_concat(SEQ) FROM STOPS");
    }

    support::TemporaryFolder folder{support::TemporaryFolder::Place::Memory};
    std::string path = folder.path() + "t.mdb";
};

TEST_F(Transactions, OfAKilledProgramAreRolledBack) {
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
        const auto database = store::open(path);
        database->begin();
        database->execute("UPDATE STOPS SET SEQ = SEQ + 10");
        database->execute("DELETE FROM STOPS WHERE ID = 1");
        const bool told = write(ready[1], "x", 1) == 1;
        pause();
        _exit(told ? 0 : 1);
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    kill(child, SIGKILL);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    close(ready[0]);
    close(ready[1]);

    EXPECT_EQ(seqs(), "1,2");
    const auto database = store::open(path, 100);
    database->begin();
    database->commit();
}

TEST_F(Transactions, AreCommittedOrRolledBackAsAWhole) {
    const auto database = store::open(path);
    EXPECT_FALSE(database->inTransaction());
    database->begin();
    EXPECT_TRUE(database->inTransaction());
    database->execute("UPDATE STOPS SET SEQ = 5");
    EXPECT_EQ(seqs(), "1,2");
    database->rollback();
    EXPECT_EQ(seqs(), "1,2");
    database->begin();
    database->execute("UPDATE STOPS SET SEQ = 5");
    database->commit();
    EXPECT_EQ(seqs(), "5,5");
    EXPECT_THROW(database->commit(), store::StoreError);
}

TEST_F(Transactions, ReachTheFileItselfByACheckpoint) {
    const auto database = store::open(path);
    database->setDurability(store::Durability::Crash);
    database->execute("UPDATE STOPS SET SEQ = 7");
    EXPECT_GT(std::filesystem::file_size(path + "-wal"), 0U);
    database->checkpoint();
    EXPECT_EQ(std::filesystem::file_size(path + "-wal"), 0U);
    EXPECT_EQ(seqs(), "7,7");
}

TEST_F(Transactions, DurabilityIsAsAsked) {
    const auto database = store::open(path);
    const auto level = [&database] {
        const auto rows = database->prepare("PRAGMA synchronous");
        rows->step();
        return rows->integer(0);
    };
    EXPECT_EQ(level(), 2);
    database->setDurability(store::Durability::Crash);
    EXPECT_EQ(level(), 1);
    database->setDurability(store::Durability::PowerCut);
    EXPECT_EQ(level(), 2);
}

}  // namespace
