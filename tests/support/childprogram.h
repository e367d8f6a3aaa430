#pragma once

#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace support {

/// A program that runs beside a test, ended with it. Its standard output can be waited for.
class ChildProgram {
public:
    using Variables = std::vector<std::pair<std::string, std::string>>;

    /// Starts a program, found as a shell finds it, with variables added to the environment.
    explicit ChildProgram(const std::string& program,
                          const std::vector<std::string>& arguments = {},
                          const Variables& variables = {});
    ~ChildProgram();
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    /// The next line of its output; empty where it has ended.
    std::string readLine();
    /// Reads lines until one begins with that text; false where the program ended before.
    bool waitForLine(const std::string& beginning);
    void kill();

private:
    pid_t child_ = 0;
    int output_ = -1;
};

/// The full path of a program of the build.
[[nodiscard]] std::string programOfBuild(const std::string& name);

}  // namespace support
