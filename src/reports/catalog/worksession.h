#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/ado/connection.h"
#include "platform/ado/session.h"
#include "platform/base/date.h"
#include "platform/base/notcopied.h"

namespace reports {

/// The process that this is, as nobody else is called as long as the machine runs, and after that.
[[nodiscard]] std::string processMark();
/// Whether the process of a mark is surely gone. Of one behind the walls of another container
/// nobody knows.
[[nodiscard]] bool isGone(const std::string& mark);

/// A key for the rows of one preparation. Its end removes them, where the file allows it; otherwise
/// they wait for the next beginning after this process has ended.
class WorkSession : private base::NotCopied {
public:
    /// Removes what processes that are gone have left behind. Raises store::StoreError.
    WorkSession(ado::Connection& work, base::Date now);
    ~WorkSession();

    [[nodiscard]] std::int64_t key() const { return key_; }
    /// All rows that were put in so far. Raises store::StoreError.
    void removeRows();

private:
    std::weak_ptr<ado::Session> file_;  ///< a form may outlive the connection
    std::int64_t key_ = 0;
};

}  // namespace reports
