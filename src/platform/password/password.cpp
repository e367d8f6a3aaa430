#include "platform/password/password.h"

#include <algorithm>
#include <array>
#include <memory>

#include <crypt.h>
#include <sys/random.h>

#include "platform/base/error.h"
#include "platform/base/text.h"

namespace password {

namespace {

constexpr const char* Yescrypt = "$y$";

bool canBeHashed(const std::string& password) {
    return !password.empty() && password.size() <= Longest &&
           password.find('\0') == std::string::npos;
}

/// Empty where the library refuses the setting.
std::string cryptWith(const std::string& password, const std::string& setting) {
    const auto work = std::make_unique<crypt_data>();
    const char* result = crypt_rn(password.c_str(), setting.c_str(), work.get(), sizeof(*work));
    return result == nullptr ? std::string() : std::string(result);
}

std::string freshSetting() {
    std::array<char, CRYPT_GENSALT_OUTPUT_SIZE> setting{};
    // Cost and random bytes are the library's own.
    const char* made =
        crypt_gensalt_rn(Yescrypt, 0, nullptr, 0, setting.data(), static_cast<int>(setting.size()));
    if (made == nullptr) {
        throw base::RunTimeError(base::errors::InternalError,
                                 "The system's crypt library makes no yescrypt salts.");
    }
    return made;
}

bool sameInConstantTime(std::string_view a, std::string_view b) {
    unsigned difference = a.size() == b.size() ? 0 : 1;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        difference |= static_cast<unsigned>(a[i] ^ b[i]);
    }
    return difference == 0;
}

}  // namespace

Stored kindOf(std::string_view stored) {
    const std::string text(base::trim(stored));
    if (text.empty()) {
        return Stored::None;
    }
    // The oldest kind of hash has no mark: any text of thirteen letters would look like one.
    const bool known = text.front() == '$' && crypt_checksalt(text.c_str()) == CRYPT_SALT_OK;
    return known ? Stored::Hash : Stored::Foreign;
}

std::string hashed(const std::string& password) {
    if (!canBeHashed(password)) {
        base::raise(base::errors::InvalidProcedureCall);
    }
    std::string hash = cryptWith(password, freshSetting());
    if (hash.empty()) {
        base::raise(base::errors::OutOfMemory);
    }
    return hash;
}

bool matches(const std::string& password, const std::string& stored) {
    if (kindOf(stored) != Stored::Hash || !canBeHashed(password)) {
        return false;
    }
    const std::string expected(base::trim(stored));
    const std::string given = cryptWith(password, expected);
    return !given.empty() && sameInConstantTime(given, expected);
}

const std::string& unknownPassword() {
    static const std::string hash = [] {
        std::array<unsigned char, 16> bytes{};
        [[maybe_unused]] const auto got = getrandom(bytes.data(), bytes.size(), 0);
        std::string text;
        for (const unsigned char byte : bytes) {
            text += static_cast<char>('A' + byte % 26);
        }
        return hashed(text);
    }();
    return hash;
}

}  // namespace password
