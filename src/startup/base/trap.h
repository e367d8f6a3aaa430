#pragma once

#include <exception>
#include <string_view>
#include <type_traits>
#include <utility>

#include "platform/base/notcopied.h"
#include "startup/base/plainwords.h"
#include "startup/base/session.h"

namespace startup {

/// "Procedure of Module: Module.", as errors are reported.
[[nodiscard]] std::string operationName(std::string_view procedure, std::string_view module);

/// What an error leads to, once it is reported.
enum class AfterError { ProgramEnds, FormStays };

/// Reports the error that is being handled as that of the procedure, by gErrHandler. Throws the
/// error on where errors are not trapped.
void report(std::string_view procedure, std::string_view module,
            AfterError afterError = AfterError::FormStays);

/// Whether the error that is being handled is that another program holds the database for longer
/// than a connection waits.
[[nodiscard]] bool lockedElsewhere();

/// Lives while a form's procedure runs: the form tells its planner where the store refuses to
/// write, so that such an error inside a module passes through.
class DoorOfForm : private base::NotCopied {
public:
    DoorOfForm() { ++open_; }
    ~DoorOfForm() { --open_; }
    [[nodiscard]] static bool isOpen() { return open_ > 0; }

private:
    static inline int open_ = 0;
};

/// Reports the error that is being handled and ends the program. Called by trapped() only.
void reportTrapped(std::string_view procedure, std::string_view module);

/// Runs the body of a module's procedure under the error trap; a form's procedures have that of
/// TrappedForm.
///
///     std::string GetRun(const std::string& run) {
///         return trapped("GetRun", "mdlGetItems", [&] { ... });
///     }
///
/// With gErrorHandling on, an error is reported by gErrHandler and the program shut down (throws
/// base::EndProgram). With gErrorHandling off, errors pass to the caller. EndProgram always passes,
/// and so does a refusal of the store that a form will tell of (see refusedByStore).
template <class Body>
std::invoke_result_t<Body> trapped(std::string_view procedure, std::string_view module,
                                   Body&& body) {
    using Result = std::invoke_result_t<Body>;
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
