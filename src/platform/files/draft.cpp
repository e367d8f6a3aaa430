#include "platform/files/draft.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

#include "platform/files/handles.h"

namespace files {

constexpr std::size_t Block = 1U << 16U;

Draft::Draft(const std::string& target) : target_(target), path_(target) {
    path_.insert(nameIn(path_), ".");
    path_ += ".XXXXXX";
    handle_ = ::mkostemp(path_.data(), O_CLOEXEC);
    if (handle_ < 0) {
        raiseAccess(target_, errno);
    }
    openToTheFolders(handle_, target_);
}

Draft::~Draft() {
    if (handle_ >= 0) {
        ::close(handle_);
    }
    ::unlink(path_.c_str());
}

void Draft::write(std::string_view text) {
    waiting_ += text;
    if (waiting_.size() >= Block) {
        flush();
    }
}

void Draft::replace() {
    close();
    if (::rename(path_.c_str(), target_.c_str()) != 0) {
        raiseAccess(target_, errno);
    }
}

bool Draft::add() {
    close();
    if (::link(path_.c_str(), target_.c_str()) == 0) {
        return true;
    }
    return errno == EEXIST ? false : (raiseAccess(target_, errno), false);
}

void Draft::flush() {
    if (const int error = writeAll(handle_, waiting_); error != 0) {
        raiseAccess(target_, error);
    }
    waiting_.clear();
}

void Draft::close() {
    flush();
    // A full disk may be told as late as here.
    const bool isWritten = ::close(handle_) == 0;
    handle_ = -1;
    if (!isWritten) {
        raiseAccess(target_, errno);
    }
}

}  // namespace files
