#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Files that are shared with programs to which "Runs.txt" and "runs.txt" are the same: a file is
/// written under the name given, and looked for without regard to the case of its name. Folders are
/// taken as they are written.
namespace files {

/// What stands between the parts of a path.
inline constexpr const char* Separator = "/";

/// The path of the file that is there: of that very name, otherwise the first in byte order whose
/// name differs in ASCII case only. The path as it is given where there is none.
[[nodiscard]] std::string find(const std::string& path);

/// Whether such a file is there. Folders do not count.
[[nodiscard]] bool exists(const std::string& path);

/// Copies a file, over an existing one too. Raises "File not found" (53), "Path/File access
/// error" (75).
void copy(const std::string& from, const std::string& to);

/// Deletes the file; true when it was there and is gone.
bool remove(const std::string& path);

/// The whole of a file. Raises "File not found" (53), "Path/File access error" (75).
[[nodiscard]] std::string read(const std::string& path);

/// Writes a file, over an existing one too; a file that cannot be written whole is not left behind.
/// Raises "Path/File access error" (75) with the system's reason.
void write(const std::string& path, std::string_view contents);

/// The same for a file that must not be there yet, in any letter case: false where it is, and of
/// several programs that make it at once only one is told true.
[[nodiscard]] bool writeNew(const std::string& path, std::string_view contents);

/// Deletes the file unless a program holds it (see Hold); true when it was there and is gone.
bool removeUnheld(const std::string& path);

/// Says to other programs, while it lives, that a file is being worked with. Raises "File not
/// found" (53).
class Hold {
public:
    explicit Hold(const std::string& path);
    ~Hold();
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

private:
    int handle_;
};

/// Adds one line to the end of the file, which is made where there is none. Line ends inside the
/// line become blanks. True when it was written.
bool appendLine(const std::string& path, std::string line);

/// The folders of a list such as PATH, apart by colons; those that are no full path are left out.
[[nodiscard]] std::vector<std::string> folderList(std::string_view list);

/// The folder of the running program, without a separator at its end.
[[nodiscard]] std::string programFolder();

}  // namespace files
