#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"

namespace tools::district {

/// One kind of fault, how often it was found, and its first cases.
struct CheckFinding {
    static constexpr std::size_t MostExamples = 3;

    std::string what;
    std::int64_t count = 0;
    std::vector<std::string> examples = {};

    void add(std::string example, std::int64_t times = 1);
    /// "Stop trips on a run that does not exist: 3, such as R1; R7."
    [[nodiscard]] std::string text() const;
};

struct CheckReport {
    std::vector<CheckFinding> findings;
    std::int64_t tables = 0;
    std::int64_t rows = 0;
    std::int32_t version = 0;      ///< the lowest of the six files
    std::string versionComplaint;  ///< empty where it is this program's

    [[nodiscard]] bool isSound() const { return findings.empty() && versionComplaint.empty(); }
    /// Every finding on a line, and what was looked at.
    [[nodiscard]] std::string text() const;
    /// Keeps the finding if there is any case of it.
    void add(CheckFinding finding);
};

/// Reads the whole of a district's files and says what breaks their keys, references and rules, and
/// whether its streets can be driven on. A file that cannot be opened is a finding too; what
/// depends on it is left out, and all tables of a district that is newer. Raises Interrupted.
[[nodiscard]] CheckReport checkDistrict(const Folders& folders, Progress& progress);

}  // namespace tools::district
