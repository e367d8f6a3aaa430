#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "runedit/map/maprequest.h"
#include "runedit/map/requestline.h"

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// Any bytes are a request list: a run's id holds no bar and no line end, a line that was read is
// written and read as the same, and no run's file lies outside the folder.
void readList(std::string_view list) {
    for (const std::string_view line : runedit::linesOf(list)) {
        require(line.find('\n') == std::string_view::npos);
        const std::string_view run = runedit::runOfLine(line);
        require(run.find('|') == std::string_view::npos && run.size() <= line.size());
        const auto request = runedit::requestIn(line);
        const std::string written = runedit::lineText(request);
        require(std::ranges::count(written, '|') == 7);
        require(runedit::requestIn(written) == request);
        if (runedit::canNameFiles(run)) {
            const std::string file = runedit::WorkFiles("/prog/").ofRun(run, ".dbf");
            require(file.starts_with("/prog/") && file.rfind('/') == 5);
        }
    }
}

// A command is read as nothing, or as a request that is written and read as the same.
void readCommand(std::string_view command) {
    if (const auto request = runedit::requestInCommand(command)) {
        require(runedit::requestInCommand(runedit::commandText(*request)) == request);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    readList(bytes);
    readCommand(bytes);
    return 0;
}
