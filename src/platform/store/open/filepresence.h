#pragma once

#include <string>
#include <vector>

#include "platform/base/notcopied.h"

namespace store {

/// Says by a small file beside a database which record is open here, and finds what others say. A
/// file is locked while its program lives, so that one that was killed leaves no ghost. Whoever
/// shares the folder sees it; where it cannot be written nothing is said.
class FilePresence : private base::NotCopied {
public:
    /// `who`: how this program is called to others.
    FilePresence(const std::string& databasePath, std::string who);
    ~FilePresence();

    /// Empty: none is open any more.
    void open(const std::string& record);
    /// Who else has the record open that is open here.
    [[nodiscard]] std::vector<std::string> others() const;

private:
    void withdraw();
    [[nodiscard]] bool makeFolder() const;

    std::string folder_;
    std::string who_;
    std::string record_;
    std::string file_;  ///< empty while nothing is said
    int handle_ = -1;
};

}  // namespace store
