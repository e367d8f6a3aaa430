#include "reports/paint/catalogentry.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <optional>
#include <string_view>

#include <fmt/format.h>

#include "reports/paint/paintfile.h"

namespace reports {

namespace {

using Offset = std::int64_t;
constexpr Offset TailBytes = 1024;
constexpr Offset XrefLineBytes = 20;
constexpr Offset ObjectBytes = 4096;

std::string readAt(std::istream& file, Offset offset, Offset count) {
    std::string bytes(static_cast<std::size_t>(count), '\0');
    file.clear();
    file.seekg(offset);
    file.read(bytes.data(), count);
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

/// The number that stands behind the last of such words.
std::optional<Offset> numberBehind(std::string_view text, std::string_view word) {
    const auto found = text.rfind(word);
    const auto digits = found == std::string_view::npos
                            ? std::string_view::npos
                            : text.find_first_of("0123456789", found + word.size());
    Offset number = 0;
    if (digits == std::string_view::npos ||
        std::from_chars(text.data() + digits, text.data() + text.size(), number).ec !=
            std::errc{}) {
        return std::nullopt;
    }
    return number;
}

struct Trailer {
    Offset xref = 0;
    Offset size = 0;
    Offset root = 0;
    Offset info = 0;
};

std::optional<Trailer> trailerOf(std::string_view tail) {
    const auto xref = numberBehind(tail, "startxref");
    const auto size = numberBehind(tail, "/Size");
    const auto root = numberBehind(tail, "/Root");
    const auto info = numberBehind(tail, "/Info");
    return xref && size && root && info ? std::optional(Trailer{*xref, *size, *root, *info})
                                        : std::nullopt;
}

/// What stands between "<<" and the last ">>" of the catalog.
std::string catalogOf(std::istream& file, const Trailer& trailer) {
    const std::string head = readAt(file, trailer.xref, 64);
    const auto firstLine = head.find('\n', head.find('\n') + 1);
    if (!head.starts_with("xref\n0 ") || firstLine == std::string::npos) {
        return {};
    }
    const Offset line =
        trailer.xref + static_cast<Offset>(firstLine) + 1 + trailer.root * XrefLineBytes;
    const auto offset = numberBehind(' ' + readAt(file, line, XrefLineBytes / 2), " ");
    const std::string object = offset ? readAt(file, *offset, ObjectBytes) : std::string();
    const auto begin = object.find("<<");
    const auto end = object.rfind(">>", object.find("endobj"));
    const bool isWhole = object.starts_with(fmt::format("{} 0 obj", trailer.root)) && begin < end &&
                         end != std::string::npos;
    return isWhole ? object.substr(begin + 2, end - begin - 2) : std::string();
}

std::string update(const Trailer& trailer, const std::string& catalog, Offset at) {
    const bool isMarked = catalog.find("/MarkInfo") != std::string::npos;
    const std::string object = fmt::format(
        "{} 0 obj\n<<{}{}/Lang (en-US)\n/ViewerPreferences << /DisplayDocTitle true >>\n>>\n"
        "endobj\n",
        trailer.root, catalog, isMarked ? "" : "/MarkInfo << /Marked true >>\n");
    return fmt::format(
        "{}xref\n{} 1\n{:010} 00000 n \ntrailer\n<< /Size {} /Root {} 0 R /Info {} 0 R /Prev {} "
        ">>\nstartxref\n{}\n%%EOF\n",
        object, trailer.root, at, trailer.size, trailer.root, trailer.info, trailer.xref,
        at + static_cast<Offset>(object.size()));
}

}  // namespace

void completeCatalog(const std::string& path) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekg(0, std::ios::end);
    const Offset size = file.tellg();
    const Offset tail = std::min(size, TailBytes);
    const auto trailer = trailerOf(readAt(file, size - tail, tail));
    const std::string catalog = trailer ? catalogOf(file, *trailer) : std::string();
    if (catalog.empty()) {
        return;
    }
    file.clear();
    file.seekp(size);
    file << update(*trailer, catalog, size) << std::flush;
    if (!file) {
        raiseFor(path, errno);
    }
}

}  // namespace reports
