#include "platform/base/encoding.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <iconv.h>

#include "platform/base/notcopied.h"
#include "platform/base/text.h"

namespace base {

namespace {

class Converter : private base::NotCopied {
public:
    Converter(const char* from, const char* to) : handle_(::iconv_open(to, from)) {}
    ~Converter() { ::iconv_close(handle_); }

    /// Appends what it can convert and takes it from the text; false where it came to a character
    /// that it cannot.
    bool append(std::string& result, std::string_view& text) const {
        std::array<char, 256> block{};
        auto* from = const_cast<char*>(text.data());  // NOLINT: the interface is older than const
        std::size_t left = text.size();
        char* to = block.data();
        std::size_t room = block.size();
        const auto converted = ::iconv(handle_, &from, &left, &to, &room);
        const bool isStopped = converted == static_cast<std::size_t>(-1) && errno != E2BIG;
        result.append(block.data(), to);
        text.remove_prefix(text.size() - left);
        return !isStopped;
    }

private:
    iconv_t handle_;
};

std::size_t sizeOfFirst(std::string_view text, std::string_view encoding) {
    const std::size_t size = encoding == "UTF-8"              ? characterSize(text)
                             : encoding.starts_with("UTF-16") ? 2
                                                              : 1;
    return std::min(size, text.size());
}

}  // namespace

std::string converted(std::string_view text, const char* from, const char* to) {
    const Converter converter(from, to);
    std::string result;
    while (!text.empty()) {
        if (!converter.append(result, text)) {
            result += '?';
            text.remove_prefix(sizeOfFirst(text, from));
        }
    }
    return result;
}

}  // namespace base
