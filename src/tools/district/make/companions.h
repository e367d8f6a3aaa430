#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace tools::district {

/// The programs that the suite starts from a district's program folder, under exactly these names.
inline constexpr std::array CompanionPrograms{"Logon.Exe", "DelWrkFiles.exe"};

/// Links those that stand in `from` into a district's program folder, in place of former links; a
/// file of that name that is no link stays. Returns the names linked. Raises base::RunTimeError.
std::vector<std::string> linkCompanions(const std::filesystem::path& from,
                                        const std::filesystem::path& programs);

}  // namespace tools::district
