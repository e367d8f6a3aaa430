#include "platform/dbf/memoryfile.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace dbf {

namespace {

thread_local MemoryFile* seenFile = nullptr;

}  // namespace

MemoryFile::MemoryFile(std::string contents) : contents_(std::move(contents)) {
    seenFile = this;
    SASetupDefaultHooks(&hooks_);
    hooks_.FOpen = open;
    hooks_.FRead = read;
    hooks_.FWrite = write;
    hooks_.FSeek = seek;
    hooks_.FTell = tell;
    hooks_.FFlush = [](SAFile) { return 0; };
    hooks_.FClose = [](SAFile) { return 0; };
    hooks_.Remove = [](const char*) { return 0; };
    hooks_.Error = [](const char*) {};
}

MemoryFile::~MemoryFile() { seenFile = nullptr; }

MemoryFile& MemoryFile::of(SAFile file) {
    return *static_cast<MemoryFile*>(static_cast<void*>(file));
}

SAFile MemoryFile::open(const char* name, const char* access) {
    if (seenFile == nullptr || std::string_view(name) != Name) {
        return nullptr;
    }
    if (access[0] == 'w') {
        seenFile->contents_.clear();
    }
    seenFile->position_ = 0;
    return static_cast<SAFile>(static_cast<void*>(seenFile));
}

SAOffset MemoryFile::read(void* to, SAOffset size, SAOffset count, SAFile file) {
    MemoryFile& self = of(file);
    if (size == 0 || self.position_ >= self.contents_.size()) {
        return 0;
    }
    const SAOffset whole = std::min(count, (self.contents_.size() - self.position_) / size);
    std::memcpy(to, self.contents_.data() + self.position_, whole * size);
    self.position_ += whole * size;
    return whole;
}

SAOffset MemoryFile::write(void* from, SAOffset size, SAOffset count, SAFile file) {
    MemoryFile& self = of(file);
    if (const SAOffset bytes = size * count; bytes > 0) {
        self.contents_.resize(std::max(self.contents_.size(), self.position_ + bytes));
        std::memcpy(self.contents_.data() + self.position_, from, bytes);
        self.position_ += bytes;
    }
    return count;
}

SAOffset MemoryFile::seek(SAFile file, SAOffset offset, int whence) {
    MemoryFile& self = of(file);
    self.position_ = offset + (whence == SEEK_CUR   ? self.position_
                               : whence == SEEK_END ? self.contents_.size()
                                                    : 0);
    return 0;
}

SAOffset MemoryFile::tell(SAFile file) { return of(file).position_; }

}  // namespace dbf
