#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace process {

/// The full path of a program: looked for in the folders one after another without regard to letter
/// case ("TARN" finds "tarn"), then in all of them with ".exe" behind its name. "" where there is
/// none that may be run, or the name is no plain file name.
[[nodiscard]] std::string findProgram(std::string_view name,
                                      const std::vector<std::string>& folders);

/// The full path of a program of the suite: of this installation, or on the search path. "" where
/// there is none.
[[nodiscard]] std::string programOfSuite(std::string_view name);

/// The folders of the environment's PATH.
[[nodiscard]] std::vector<std::string> foldersOfPath();

}  // namespace process
