#include "startup/desktop/selfdescription.h"

#include <fmt/format.h>

#include "platform/files/installation.h"

namespace startup {

bool isAnsweredAtOnce(int argc, const char* const* argv, std::string_view help) {
    const std::string_view word = argc > 1 ? argv[1] : "";
    if (word == "--version") {
        const std::string_view program = argv[0];
        fmt::print("{} {}\n", program.substr(program.rfind('/') + 1),
                   files::installation().version);
        return true;
    }
    if (word == "--help") {
        fmt::print("{}\n", help);
        return true;
    }
    return false;
}

}  // namespace startup
