#pragma once

#include <string>
#include <vector>

/// The companion programs of the suite: starting them and seeing whether one is at work.
namespace process {

class ProcessHost {
public:
    virtual ~ProcessHost() = default;
    /// Starts the program of that full path in a session of its own and does not wait for it.
    /// Raises "File not found" (53), "Permission denied" (70), "Path/File access error" (75).
    virtual void start(const std::string& program, const std::vector<std::string>& arguments) = 0;
    /// Whether a program of that name is running: the whole name as the system keeps it, which is
    /// its first 15 characters. One that has ended and waits to be collected does not count.
    [[nodiscard]] virtual bool isRunning(const std::string& name) = 0;
};

/// The host in force; the system's own unless a test or a script has set one.
ProcessHost& host();

/// Puts another host in force; null goes back to the system's own.
void setHost(ProcessHost* host);

}  // namespace process
