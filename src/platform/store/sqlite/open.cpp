#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/store/base/filesystem.h"
#include "platform/store/sqlite/database.h"
#include "platform/store/sqlite/engine.h"

namespace store {

namespace sqlite {

namespace {

using Header = std::array<unsigned char, 100>;

constexpr std::string_view OwnMark{"SQLite format 3\0", 16};
constexpr std::size_t AccessMarkAt = 4;
constexpr std::string_view AccessMarks[] = {"Standard Jet DB", "Standard ACE DB", "Jet System DB"};

std::string_view textOf(const Header& header) {
    return {reinterpret_cast<const char*>(header.data()), header.size()};
}

std::uint32_t numberAt(const Header& header, std::size_t place) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        number = number << 8 | header[place + i];
    }
    return number;
}

void checkMark(const Header& header, const std::string& path) {
    for (const std::string_view mark : AccessMarks) {
        if (textOf(header).substr(AccessMarkAt).starts_with(mark)) {
            raiseAccessFile(path);
        }
    }
    if (!textOf(header).starts_with(OwnMark)) {
        raiseNotADatabase(path);
    }
}

/// A file that lost its end: the header counts more pages than there are. Says nothing while
/// changes wait in a log beside the file, nor where an old tool left the count out of date.
void checkLength(const Header& header, std::int64_t size, const std::string& path) {
    struct stat log {};
    const bool hasLog = stat((path + "-wal").c_str(), &log) == 0 && log.st_size > 0;
    const bool isCurrent = numberAt(header, 24) == numberAt(header, 92);
    const std::int64_t half = header[16] * 256 + header[17];
    const std::int64_t pageSize = half == 1 ? 65536 : half;
    const std::int64_t expected = pageSize * numberAt(header, 28);
    if (!hasLog && isCurrent && size < expected) {
        raiseDamaged(path, fmt::format("{} of {} bytes are missing", expected - size, expected));
    }
}

void execute(const Source& source, const char* sql) {
    check(source, sqlite3_exec(source.handle, sql, nullptr, nullptr, nullptr));
}

/// Every connection: work tables stay off the disk (they hold children's data), a name in double
/// quotes is never taken for a text, foreign files cannot smuggle in functions.
void applySettings(const Source& source) {
    sqlite3_busy_timeout(source.handle, source.lockTimeoutMs);
    sqlite3_extended_result_codes(source.handle, 1);
    sqlite3_db_config(source.handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(source.handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(source.handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    execute(source, "PRAGMA temp_store = MEMORY");
    execute(source, "PRAGMA cache_size = -16000");
}

/// Writes a log beside the file from now on. The engine answers with the journal that it keeps
/// instead where programs cannot share memory there; that of a file that this user cannot write
/// stays as another tool left it.
void keepLogBeside(const Source& source) {
    std::string journal;
    const auto keep = [](void* to, int, char** cells, char**) {
        *static_cast<std::string*>(to) = cells[0];
        return 0;
    };
    const int code =
        sqlite3_exec(source.handle, "PRAGMA main.journal_mode = WAL", keep, &journal, nullptr);
    if ((code & 0xff) == SQLITE_READONLY || sqlite3_db_readonly(source.handle, "main") == 1) {
        return;
    }
    check(source, code);
    if (journal != "wal") {
        raiseOnNetwork(source.path, "a file system without memory that programs can share");
    }
    execute(source, "PRAGMA main.synchronous = FULL");
}

/// The engine's count of its memory costs a third of the time to prepare a statement, and nobody
/// asks for it. Has no effect where the engine is in use already.
void stopCountingMemory() {
    [[maybe_unused]] static const int once = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
}

void requireFile(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        if (errno == ENOENT || errno == ENOTDIR) {
            raiseMissing(path);
        }
        throw StoreError(Fault::Other,
                         fmt::format("The database file \"{}\" cannot be reached: {}.", path,
                                     std::generic_category().message(errno)));
    }
    if (!S_ISREG(status.st_mode)) {
        raiseNotADatabase(path);
    }
    if (access(path.c_str(), R_OK) != 0) {
        throw StoreError(
            Fault::Other,
            fmt::format("The database file \"{}\" may not be read by this user.", path));
    }
}

}  // namespace

void refuseNetwork(const std::string& path) {
    if (const std::string network = networkOf(path); !network.empty()) {
        raiseOnNetwork(path, network);
    }
}

// The header is read through the engine: closing a descriptor of our own would drop the locks that
// other connections of this process hold on the file.
void checkHeader(const Source& source, const std::string& attachedAs, const std::string& path) {
    sqlite3_file* file = nullptr;
    check(source, sqlite3_file_control(source.handle, attachedAs.c_str(), SQLITE_FCNTL_FILE_POINTER,
                                       &file));
    sqlite3_int64 size = 0;
    check(source, file->pMethods->xFileSize(file, &size));
    Header header{};
    const int code = file->pMethods->xRead(file, header.data(), static_cast<int>(header.size()), 0);
    if (code != SQLITE_IOERR_SHORT_READ) {
        check(source, code);
    }
    checkMark(header, path);
    checkLength(header, size, path);
}

void openFile(Source& source, std::unique_ptr<sqlite3, int (*)(sqlite3*)>& handle,
              Sharing sharing) {
    stopCountingMemory();
    requireFile(source.path);
    refuseNetwork(source.path);
    const int code = sqlite3_open_v2(source.path.c_str(), &source.handle,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    handle.reset(source.handle);
    check(source, code);
    checkHeader(source, "main", source.path);
    if (sharing == Sharing::Alone) {  // before anything else reads the file
        execute(source, "PRAGMA locking_mode = EXCLUSIVE");
    }
    applySettings(source);
    keepLogBeside(source);
}

void createEmpty(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600);
    if (descriptor < 0) {
        throw StoreError(Fault::Other,
                         fmt::format("The database file \"{}\" cannot be created: {}.", path,
                                     std::generic_category().message(errno)));
    }
    close(descriptor);
}

std::unique_ptr<Database> createDatabase(const std::string& path) {
    createEmpty(path);
    stopCountingMemory();
    sqlite3* made = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &made, SQLITE_OPEN_READWRITE, nullptr);
    const Source source{made, path, LockTimeoutMs, nullptr};
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> handle(made, sqlite3_close_v2);
    check(source, code);
    check(source, sqlite3_exec(made, "PRAGMA journal_mode = WAL", nullptr, nullptr, nullptr));
    return std::make_unique<SqliteDatabase>(path, LockTimeoutMs);
}

std::unique_ptr<Database> open(const std::string& path, int lockTimeoutMs) {
    return std::make_unique<SqliteDatabase>(path, lockTimeoutMs);
}

std::unique_ptr<Database> openAlone(const std::string& path) {
    constexpr int DoNotWait = 0;
    return std::make_unique<SqliteDatabase>(path, DoNotWait, Sharing::Alone);
}

void removeDatabase(const std::string& path) {
    for (const std::string_view beside : {"", "-wal", "-shm"}) {
        std::remove((path + std::string(beside)).c_str());
    }
}

std::string version() { return sqlite3_libversion(); }

}  // namespace sqlite

}  // namespace store
