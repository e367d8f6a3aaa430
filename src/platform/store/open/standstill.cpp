#include "platform/store/open/standstill.h"

#include <thread>

#include "platform/store/open/open.h"

namespace store {

namespace {

using Clock = std::chrono::steady_clock;

/// Another program's group operation leaves its file free for moments of this length.
constexpr std::chrono::milliseconds Glance{2};

std::vector<std::unique_ptr<Database>> opened(const std::vector<std::string>& paths) {
    std::vector<std::unique_ptr<Database>> files;
    files.reserve(paths.size());
    for (const std::string& path : paths) {
        files.push_back(open(path));
    }
    return files;
}

}  // namespace

StandStill::StandStill(const std::vector<std::string>& paths, std::chrono::milliseconds patience)
    : files_(opened(paths)) {
    for (const auto& file : files_) {
        file->setLockTimeout(0);
    }
    const auto end = Clock::now() + patience;
    while (!lockAll(Clock::now() >= end)) {
        std::this_thread::sleep_for(Glance);
    }
}

StandStill::~StandStill() { unlock(); }

bool StandStill::lockAll(bool isLastTime) {
    try {
        for (const auto& file : files_) {
            file->begin();
        }
    } catch (const StoreError& error) {
        unlock();
        if (isLastTime || error.fault() != Fault::Locked) {
            throw;
        }
        return false;
    }
    return true;
}

void StandStill::unlock() {
    for (const auto& file : files_) {
        try {
            if (file->inTransaction()) {
                file->rollback();
            }
        } catch (const StoreError&) {  // ends with the connection, then
        }
    }
}

std::vector<std::unique_ptr<Database>> openAtOneMoment(const std::vector<std::string>& paths,
                                                       std::chrono::milliseconds patience) {
    auto files = opened(paths);
    const StandStill still(paths, patience);
    for (const auto& file : files) {
        file->beginReading();
    }
    return files;
}

}  // namespace store
