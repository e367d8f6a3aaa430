#pragma once

#include <string>

#include <shapefil.h>

#include "platform/base/notcopied.h"

namespace dbf {

/// The one file that the table library sees while this lives: bytes in memory, so that writing to
/// the disk, and failing at it, is the caller's. Any other name (a code page beside the table) is
/// not there. One at a time in a thread.
class MemoryFile : private base::NotCopied {
public:
    explicit MemoryFile(std::string contents = {});
    ~MemoryFile();

    static constexpr const char* Name = "table.dbf";

    [[nodiscard]] SAHooks* hooks() { return &hooks_; }
    [[nodiscard]] std::string& contents() { return contents_; }

private:
    static MemoryFile& of(SAFile file);
    static SAFile open(const char* name, const char* access);
    static SAOffset read(void* to, SAOffset size, SAOffset count, SAFile file);
    static SAOffset write(void* from, SAOffset size, SAOffset count, SAFile file);
    static SAOffset seek(SAFile file, SAOffset offset, int whence);
    static SAOffset tell(SAFile file);

    std::string contents_;
    std::size_t position_ = 0;
    SAHooks hooks_{};
};

}  // namespace dbf
