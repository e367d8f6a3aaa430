#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/base/text.h"
#include "platform/ini/ini.h"

// Any bytes are a profile: a value is never longer than promised, holds no line end, and the same
// bytes give the same value.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::string profile = ini::decoded(std::string(bytes));
    for (const char* key : {"datapath", "key", "", "="}) {
        const std::string value = ini::valueIn(profile, "AppPaths", key, "fallback  ");
        if (value.find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos ||
            base::firstCharacters(value, ini::MaxCharacters) != value ||
            value != ini::valueIn(profile, "APPPATHS", key, "fallback")) {
            std::abort();
        }
    }
    return 0;
}
