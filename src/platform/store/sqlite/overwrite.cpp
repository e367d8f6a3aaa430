#include "platform/store/sqlite/overwrite.h"

#include <utility>

#include <sqlite3.h>
#include <sys/stat.h>

namespace store::sqlite {

namespace {

constexpr int RegionBytes = 32768;
// Bytes from the beginning of the shared memory, as the engine's file format lays them down.
constexpr int PageBytesAt = 14;
constexpr int FramesAt = 16;
constexpr int PagesAt = 20;
constexpr int SaltsAt = 32;
constexpr int DoneAt = 96;
constexpr int BegunAt = 128;

std::uint32_t numberAt(const volatile void* memory, int place) {
    const auto* bytes = static_cast<const volatile char*>(memory) + place;
    return *reinterpret_cast<const volatile std::uint32_t*>(bytes);
}

std::int64_t pageBytes(const volatile void* memory) {
    constexpr std::uint16_t Largest = 1;  // stands for 65536
    const auto* bytes = static_cast<const volatile char*>(memory) + PageBytesAt;
    const auto size = *reinterpret_cast<const volatile std::uint16_t*>(bytes);
    return size == Largest ? 65536 : size;
}

}  // namespace

OverwriteWatch::OverwriteWatch(sqlite3* handle, std::string name, std::string path)
    : handle_(handle), name_(std::move(name)), path_(std::move(path)) {
    static_cast<void>(isOverwritten());
}

bool OverwriteWatch::Written::isSame(const Written& other) const {
    return bytes == other.bytes && time.tv_sec == other.time.tv_sec &&
           time.tv_nsec == other.time.tv_nsec;
}

/// Frames come and go without it.
bool OverwriteWatch::Progress::isSame(const Progress& other) const {
    return salts[0] == other.salts[0] && salts[1] == other.salts[1] && done == other.done &&
           begun == other.begun;
}

OverwriteWatch::Written OverwriteWatch::written() const {
    struct stat status {};
    if (stat(path_.c_str(), &status) != 0) {
        return {};
    }
    return {status.st_mtim, status.st_size};
}

// Through the engine: closing a descriptor of our own would drop the locks that this process holds.
std::optional<OverwriteWatch::Progress> OverwriteWatch::progress() const {
    sqlite3_file* file = nullptr;
    sqlite3_file_control(handle_, name_.c_str(), SQLITE_FCNTL_FILE_POINTER, &file);
    if (file == nullptr || file->pMethods == nullptr || file->pMethods->iVersion < 2) {
        return std::nullopt;
    }
    volatile void* memory = nullptr;
    if (file->pMethods->xShmMap(file, 0, RegionBytes, 0, &memory) != SQLITE_OK ||
        memory == nullptr) {
        return std::nullopt;
    }
    const Progress seen{{numberAt(memory, SaltsAt), numberAt(memory, SaltsAt + 4)},
                        numberAt(memory, DoneAt),
                        numberAt(memory, BegunAt),
                        numberAt(memory, FramesAt),
                        numberAt(memory, PagesAt) * pageBytes(memory)};
    return seen.isSettled() ? std::optional(seen) : std::nullopt;
}

// What is begun is told before the file is written, and what is done after it: between two equal
// looks at a settled memory nobody brought the log into the file.
bool OverwriteWatch::isOverwritten() {
    const auto before = progress();
    const Written now = written();
    const auto after = progress();
    const bool certain = before && after && before->isSame(*after);
    const bool changed = written_.bytes >= 0 && !now.isSame(written_);
    if (changed && certain &&
        ((progress_ && progress_->isSame(*before)) || !before->fits(now.bytes))) {
        return true;
    }
    written_ = now;
    progress_ = certain ? before : std::nullopt;
    return false;
}

void OverwriteWatch::glance() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    if (now.tv_sec != glanced_) {
        glanced_ = now.tv_sec;
        static_cast<void>(isOverwritten());
    }
}

}  // namespace store::sqlite
