#include "platform/store/base/location.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/store/base/database.h"

namespace store {

namespace {

constexpr std::array<std::string_view, 2> Schemes{"postgresql://", "postgres://"};

std::string_view schemeOf(std::string_view path) {
    const auto* scheme = std::ranges::find_if(Schemes, [&](std::string_view one) {
        return base::equalsNoCase(path.substr(0, one.size()), one);
    });
    return scheme == Schemes.end() ? std::string_view() : path.substr(0, scheme->size());
}

/// The path without its options, and these with their question mark.
struct Cut {
    std::string_view path;
    std::string_view options;
};

Cut cut(std::string_view path) {
    const auto mark = std::min(path.find('?'), path.size());
    return {path.substr(0, mark), path.substr(mark)};
}

[[noreturn]] void raiseNoDistrict(std::string_view path) {
    throw StoreError(Fault::Unreachable,
                     fmt::format("\"{}\" does not say which database of the server the district "
                                 "is in: postgresql://server/database/ is wanted.",
                                 path));
}

/// Settings are read by many, and a password in them would be, too.
void refusePassword(std::string_view authority, std::string_view options) {
    const auto user = authority.substr(0, authority.rfind('@'));
    const bool hasUser = authority.find('@') != std::string_view::npos;
    if ((hasUser && user.find(':') != std::string_view::npos) ||
        options.find("password=") != std::string_view::npos) {
        throw StoreError(Fault::Unreachable,
                         "A password does not belong into the place of a district. Put it into the "
                         "file .pgpass of this account, or use a certificate.");
    }
}

}  // namespace

bool isServer(std::string_view path) { return !schemeOf(path).empty(); }

std::string pathIn(std::string_view folder, std::string_view file) {
    const bool isThere = isServer(folder);
    const Cut parts = isThere ? cut(folder) : Cut{folder, {}};
    const std::string_view slash = isThere && !parts.path.ends_with('/') ? "/" : "";
    return fmt::format("{}{}{}{}", parts.path, slash, file, parts.options);
}

std::string pathBeside(std::string_view path, std::string_view file) {
    const Cut parts = isServer(path) ? cut(path) : Cut{path, {}};
    const auto slash = parts.path.rfind('/');
    const std::string_view folder =
        slash == std::string_view::npos ? std::string_view() : parts.path.substr(0, slash + 1);
    return fmt::format("{}{}{}", folder, file, parts.options);
}

ServerPath serverPathOf(std::string_view path) {
    const std::string_view scheme = schemeOf(path);
    const Cut parts = cut(path.substr(scheme.size()));
    const auto first = parts.path.find('/');
    const auto last = parts.path.rfind('/');
    const bool isService = parts.options.find("service=") != std::string_view::npos;
    if (first == std::string_view::npos || (first == last && !isService)) {
        raiseNoDistrict(path);
    }
    const auto database =
        parts.path.substr(std::min(first + 1, last), last - std::min(first + 1, last));
    if ((database.empty() && !isService) || database.find('/') != std::string_view::npos) {
        raiseNoDistrict(path);
    }
    refusePassword(parts.path.substr(0, first), parts.options);
    return {fmt::format("{}{}{}", scheme, parts.path.substr(0, last), parts.options),
            std::string(parts.path.substr(last + 1))};
}

}  // namespace store
