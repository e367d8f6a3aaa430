#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/base/error.h"
#include "streets/file/streetfile.h"

// Any bytes are a street file, with its heading and with one that fits: they are refused with a
// reason, or hold a map that can be written and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view given(reinterpret_cast<const char*>(data), size);
    for (const std::string& bytes : {std::string(given), streets::framed(given)}) {
        try {
            const std::string written = streets::bytesOf(streets::streetMapIn(bytes));
            if (streets::bytesOf(streets::streetMapIn(written)) != written) {
                std::abort();
            }
        } catch (const base::RunTimeError& error) {
            if (*error.what() == '\0') {
                std::abort();
            }
        }
    }
    return 0;
}
