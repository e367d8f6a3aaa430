#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

struct sqlite3;

namespace store::sqlite {

/// Notices that another program wrote over a database file in place, "cp old.mdb routing.mdb": the
/// file is the same one then, its content is not. While write-ahead logging is on, programs of this
/// kind write the file only where they bring the log into it, and the memory that they share says
/// that they do; a file that was written without that was written by somebody else.
class OverwriteWatch {
public:
    /// Looks at the file now. `name` is what it is attached as.
    OverwriteWatch(sqlite3* handle, std::string name, std::string path);

    /// One look at the folder's entry and at shared memory. What is written between a program's
    /// last look and a bringing in that comes before the next one stays unnoticed, unless the
    /// file's length gives it away.
    [[nodiscard]] bool isOverwritten();
    /// The same for the sake of the next look, once a second at most.
    void glance();

private:
    /// How far the log was brought into the file, as all programs see it.
    struct Progress {
        std::uint32_t salts[2] = {};
        std::uint32_t done = 0;
        std::uint32_t begun = 0;
        std::uint32_t frames = 0;  ///< in the log
        std::int64_t bytes = 0;    ///< of a file that has all of them; 0 where that is not known

        [[nodiscard]] bool isSettled() const { return done == begun; }
        /// Whether a file of that length can have what was brought in.
        [[nodiscard]] bool fits(std::int64_t length) const {
            return done != frames || bytes == 0 || bytes == length;
        }
        [[nodiscard]] bool isSame(const Progress& other) const;
    };
    struct Written {
        timespec time = {};
        std::int64_t bytes = -1;

        [[nodiscard]] bool isSame(const Written& other) const;
    };
    [[nodiscard]] std::optional<Progress> progress() const;
    [[nodiscard]] Written written() const;

    sqlite3* handle_;
    std::string name_;
    std::string path_;
    Written written_;
    std::time_t glanced_ = 0;
    std::optional<Progress> progress_;  ///< empty where it was not certain
};

}  // namespace store::sqlite
