#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/notcopied.h"

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

/// Writes a file, also in the place of one that another account has made. It is written beside and
/// gets its name at once: nobody reads half of it, and one that cannot be written whole changes
/// nothing. Whoever its folder lets in may read and write it. Raises "Path/File access error" (75)
/// with the system's reason.
void write(const std::string& path, std::string_view contents);

/// The same for a file that must not be there yet, in any letter case: false where it is, and of
/// several programs that make it at once only one is told true.
[[nodiscard]] bool writeNew(const std::string& path, std::string_view contents);

/// Deletes the file unless a program holds it (see Hold); true when it was there and is gone.
bool removeUnheld(const std::string& path);

/// Says to other programs, while it lives, that a file is being worked with. Raises "File not
/// found" (53).
class Hold : private base::NotCopied {
public:
    explicit Hold(const std::string& path);
    ~Hold();

private:
    int handle_;
};

/// Keeps other programs that ask for it, of any account, out of a folder while it lives. It leaves
/// no file, and the system lifts it however the program ends.
class FolderLock : private base::NotCopied {
public:
    /// Waits that long for another program, while forms repaint. Raises "Path/File access error"
    /// (75) where that one does not come to its end, and without such a folder.
    FolderLock(const std::string& folder, std::chrono::milliseconds patience);
    ~FolderLock();

private:
    int handle_;
};

/// How long ago the file was written, by the system's clock; nothing where there is none.
[[nodiscard]] std::optional<std::chrono::milliseconds> age(const std::string& path);

/// Adds one line to the end of the file, which is made where there is none, for whom its folder
/// lets in. Line ends inside the line become blanks. True when it was written.
bool appendLine(const std::string& path, std::string line);

/// Gives a file that has grown to so many bytes the name `older`, in the place of what stood there;
/// of several programs that do it at once only one does.
void setAside(const std::string& path, const std::string& older, std::uintmax_t bytes);

/// The folders of a list such as PATH, apart by colons; those that are no full path are left out.
[[nodiscard]] std::vector<std::string> folderList(std::string_view list);

/// The folder of the running program, without a separator at its end.
[[nodiscard]] std::string programFolder();

}  // namespace files
