#include "platform/store/sqlite/openfile.h"

#include <utility>

#include <sys/stat.h>

namespace store {

OpenFile::OpenFile(std::string path) : path_(std::move(path)) {
    struct stat status {};
    if (stat(path_.c_str(), &status) == 0) {
        device_ = status.st_dev;
        number_ = status.st_ino;
    }
}

bool OpenFile::isStillThere() const {
    struct stat status {};
    return stat(path_.c_str(), &status) == 0 && status.st_dev == device_ &&
           status.st_ino == number_;
}

}  // namespace store
