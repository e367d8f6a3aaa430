#include "tools/district/backup/newfile.h"

#include <cctype>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include "tools/district/base/refuse.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view Making = ".making-";

}  // namespace

std::string kindOf(std::string_view name) {
    std::string kind;
    for (const char c : name) {
        if (std::isdigit(static_cast<unsigned char>(c)) == 0) {
            kind += c;
        } else if (!kind.ends_with('#')) {
            kind += '#';
        }
    }
    return kind;
}

NewFile::NewFile(const fs::path& wanted)
    : wanted_(wanted), making_(wanted.string() + std::string(Making) + "XXXXXX") {
    removeAbandoned();
    handle_ = ::mkostemp(making_.data(), O_CLOEXEC);
    if (handle_ < 0) {
        refuse(fmt::format("{} cannot be made: {}.", wanted.string(), std::strerror(errno)));
    }
    hold_ = std::make_unique<files::Hold>(making_);
}

NewFile::~NewFile() {
    ::close(handle_);
    if (!finished_) {
        ::unlink(making_.c_str());
    }
}

void NewFile::finish() {
    if (::fsync(handle_) != 0 || !moved()) {
        refuse(fmt::format("{} cannot be written: {}.", wanted_.string(), std::strerror(errno)));
    }
    finished_ = true;
}

/// Not every file system can move without replacing.
bool NewFile::moved() const {
    if (::renameat2(AT_FDCWD, making_.c_str(), AT_FDCWD, wanted_.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    return errno == EINVAL && !fs::exists(wanted_) &&
           ::rename(making_.c_str(), wanted_.c_str()) == 0;
}

void NewFile::removeAbandoned() const {
    const std::string kind = kindOf(wanted_.filename().string());
    for (const auto& entry : fs::directory_iterator(wanted_.parent_path())) {
        const std::string name = entry.path().filename().string();
        const auto making = name.find(Making);
        if (making != std::string::npos && kindOf(name.substr(0, making)) == kind) {
            files::removeUnheld(entry.path().string());
        }
    }
}

}  // namespace tools::district
