#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "startup/session.h"

namespace startup {

/// Reports the error that is being handled as that of "Procedure of Module: Module." and then ends
/// the program, unless the module is one that stays open. Called by trapped() only.
void reportTrapped(std::string_view procedure, std::string_view module);

/// Reports the error that is being handled in the same way and lets the program go on: for a
/// question that is not understood because of what the planner typed into it. Throws the error on
/// where errors are not trapped.
void reportTyped(std::string_view procedure, std::string_view module);

/// Runs the body of a procedure under the error trap: the whole convention for run-time errors.
///
///     void frmTarn::cmdSearch_Click() {
///         trapped("cmdSearch_Click", "frmTarn", [this] { ... });
///     }
///
/// With gErrorHandling on, an error is reported by gErrHandler and the program shut down (throws
/// base::EndProgram); the main form stays open, and the procedure then returns a value of its
/// type's default. With gErrorHandling off, errors pass to the caller. EndProgram always passes.
template <class Body>
std::invoke_result_t<Body> trapped(std::string_view procedure, std::string_view module,
                                   Body&& body) {
    using Result = std::invoke_result_t<Body>;
    if (!gErrorHandling || !gErrHandler) {
        return std::forward<Body>(body)();
    }
    try {
        return std::forward<Body>(body)();
    } catch (const std::exception&) {
        reportTrapped(procedure, module);
    }
    if constexpr (!std::is_void_v<Result>) {
        return Result{};
    }
}

}  // namespace startup
