#pragma once

#include <string_view>

#include "platform/base/error.h"

namespace ado {

/// What `work` returns; an error that it raises carries the statement.
template <class Work>
auto raisedBy(std::string_view statement, Work work) {
    try {
        return work();
    } catch (base::RunTimeError& error) {
        error.raisedBy(statement);
        throw;
    }
}

}  // namespace ado
