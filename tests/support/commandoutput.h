#pragma once

#include <array>
#include <cstdio>
#include <string>

namespace support {

/// What a command writes, with what it complains of; "failed: " before it where it did.
inline std::string outputOf(const std::string& command) {
    std::string output;
    FILE* pipe = ::popen(("{ " + command + "; } 2>&1").c_str(), "r");
    std::array<char, 4096> block{};
    for (std::size_t count = 1; pipe != nullptr && count > 0;) {
        count = std::fread(block.data(), 1, block.size(), pipe);
        output.append(block.data(), count);
    }
    return ::pclose(pipe) == 0 ? output : "failed: " + output;
}

}  // namespace support
