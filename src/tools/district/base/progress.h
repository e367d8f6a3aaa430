#pragma once

#include <cstdint>
#include <string>

#include "platform/base/notcopied.h"

namespace tools::district {

/// One line on standard error that is written over as work goes on; silent where standard error is
/// no terminal. Raises Interrupted from all but `clear` once the user has pressed Ctrl+C.
class Progress : private base::NotCopied {
public:
    Progress();
    ~Progress();

    /// A new piece of work of so many steps.
    void begin(std::string what, std::int64_t steps);
    void step();
    /// So many of so many steps are done.
    void reach(std::int64_t done, std::int64_t steps);
    /// Takes the line away, for what is written on the terminal next.
    void clear() const;

private:
    void show();

    bool terminal_;
    std::string what_;
    std::int64_t steps_ = 0;
    std::int64_t done_ = 0;
};

/// Thrown to give up what was begun; everything unfinished is removed on the way out.
struct Interrupted {};

}  // namespace tools::district
