#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/process/process.h"

namespace script {

/// The system's programs, but for the logon program: its form is nobody's to fill, and it would
/// outlive the script with the caller's output open. A start of it is told instead.
class ProgramsButLogon : public process::ProcessHost {
public:
    explicit ProgramsButLogon(std::function<void(const std::string& line)> tell)
        : tell_(std::move(tell)), others_(process::host()) {}

    void start(const std::string& program, const std::vector<std::string>& arguments) override {
        if (std::filesystem::path(program).filename() == "Logon.Exe") {
            return tell_("The user is not known; the logon program is not started for a script.");
        }
        others_.start(program, arguments);
    }
    [[nodiscard]] bool isRunning(const std::string& name) override {
        return others_.isRunning(name);
    }

private:
    std::function<void(const std::string& line)> tell_;
    process::ProcessHost& others_;
};

}  // namespace script
