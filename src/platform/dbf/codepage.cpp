#include "platform/dbf/codepage.h"

#include <array>
#include <cerrno>

#include <iconv.h>

#include "platform/base/text.h"

namespace dbf {

namespace {

class Converter {
public:
    Converter(const char* to, const char* from) : handle_(::iconv_open(to, from)) {}
    ~Converter() { ::iconv_close(handle_); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    std::string operator()(std::string_view text) const {
        std::string result;
        std::string rest(text);
        char* from = rest.data();
        std::size_t left = rest.size();
        while (left > 0) {
            std::array<char, 256> block{};
            char* to = block.data();
            std::size_t room = block.size();
            const auto converted = ::iconv(handle_, &from, &left, &to, &room);
            result.append(block.data(), to);
            if (converted == static_cast<std::size_t>(-1) && errno != E2BIG) {
                result += '?';
                const std::size_t length = base::firstCharacters({from, left}, 1).size();
                from += length;
                left -= length;
            }
        }
        return result;
    }

private:
    iconv_t handle_;
};

}  // namespace

std::string toCodePage(std::string_view utf8) { return Converter("CP1252", "UTF-8")(utf8); }

std::string fromCodePage(std::string_view bytes) { return Converter("UTF-8", "CP1252")(bytes); }

}  // namespace dbf
