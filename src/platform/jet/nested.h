#pragma once

#include <cstdint>
#include <string_view>

#include "platform/base/notcopied.h"
#include "platform/jet/parser.h"
#include "platform/jet/report.h"

namespace jet {

/// Counts one level of parentheses or SELECTs while it lives; raises SqlError beyond 200.
class Parser::Nested : private base::NotCopied {
public:
    Nested(int& level, std::string_view sql, std::uint32_t offset) : level_(level) {
        if (level_ == Most) {
            failSyntax("Parentheses stand too deep inside each other", sql, offset);
        }
        ++level_;
    }
    ~Nested() { --level_; }

private:
    static constexpr int Most = 200;
    int& level_;
};

}  // namespace jet
