#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

#include "platform/base/notcopied.h"

namespace tools::district {

/// Where a program that comes with the database server is ("pg_dump"): that of the server's own
/// version where Debian keeps it, otherwise on the search path, otherwise Debian's newest. Raises
/// base::RunTimeError where there is none.
[[nodiscard]] std::string serverProgram(std::string_view name, int serverVersion);

/// Such a program at work, its input and output in our hands: where this program ends, that one
/// does, too. Everything raises base::RunTimeError.
class ServerTool : private base::NotCopied {
public:
    /// Told now and then while the tool is waited for; may raise to give up.
    using Waiting = std::function<void()>;

    ServerTool(std::string program, std::vector<std::string> arguments, Waiting waiting);
    ~ServerTool();

    /// The next bytes of its output, valid until the next call; empty at its end.
    [[nodiscard]] std::string_view read();
    void write(std::string_view bytes);
    /// Ends its input and reads its output to the end. Raises what it complained of unless all went
    /// well.
    void finish();

private:
    void wait(int handle, short event) const;
    [[nodiscard]] std::string complaint() const;

    std::string program_;
    Waiting waiting_;
    int input_ = -1;
    int output_ = -1;
    int complaints_ = -1;
    pid_t process_ = -1;
    std::array<char, 1 << 16> buffer_{};
};

}  // namespace tools::district
