#pragma once

#include <functional>
#include <string>

namespace ado {

/// Does a piece of work that writes. Where another program holds the file for longer than the
/// connection waits, the user is told in a message box and may try again: false then. Everything
/// else that the work raises passes.
bool unlessLocked(const std::function<void()>& work, const std::string& text,
                  const std::string& title);

}  // namespace ado
