#pragma once

#include <functional>
#include <string>

namespace startup {

/// Runs a program of the suite on the desktop: under the title of applicationInfo(), with the
/// suite's look, with window places kept in "NAME-windows.ini" of the user's configuration.
/// `start` shows the first form; the event loop then runs until the program ends. Where no window
/// can be opened, standard error says so. Returns the exit status.
int runOnDesktop(int& argc, char** argv, const std::string& name,
                 const std::function<void()>& start);

}  // namespace startup
