#pragma once

#include <cstdint>
#include <string>

#include "platform/ado/connection.h"

namespace ado {

/// A set-based change, run by Execute on its connection.
class Command {
public:
    void ActiveConnection(Connection* connection) { connection_ = connection; }
    void CommandText(const std::string& sql) { text_ = sql; }
    [[nodiscard]] const std::string& CommandText() const { return text_; }
    /// Returns the number of rows changed. Raises ObjectClosed without an open connection.
    std::int64_t Execute();

private:
    Connection* connection_ = nullptr;
    std::string text_;
};

}  // namespace ado
