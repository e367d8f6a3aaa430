#pragma once

#include <QCommandLineParser>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "tools/district/command/answer.h"

namespace tools::district {

// The toolkit's texts carry the bytes of the command line as they are: a folder's name may be in
// any encoding.
[[nodiscard]] QString toParser(const std::string& bytes);
[[nodiscard]] std::string fromParser(const QString& text);

/// What a command was called with.
struct Call {
    const QCommandLineParser& options;
    std::vector<std::string> words;
    std::istream& in;
    std::ostream& out;
    std::ostream& complaints;
    Result result;  ///< null without --json, which never asks anybody

    /// Somebody sits at the terminal and can be asked.
    [[nodiscard]] bool isTyped() const;

    /// Adds to the answer where one is wanted.
    void tell(const char* what, const QJsonValue& value) const;

    /// What an option says; nothing where it is not given.
    [[nodiscard]] std::optional<std::string> text(const char* option) const;
    /// The same as a whole number. Raises Misuse for another text and for one out of bounds.
    [[nodiscard]] std::optional<std::uint64_t> number(const char* option, std::uint64_t least,
                                                      std::uint64_t most) const;
};

}  // namespace tools::district
