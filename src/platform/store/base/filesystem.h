#pragma once

#include <cstdint>
#include <string>

namespace store {

/// What the system says of the file system that a path lies on; replaced in tests.
class FileSystemPort {
public:
    virtual ~FileSystemPort() = default;
    /// The number by which statfs() tells file systems apart; 0 where it cannot tell.
    [[nodiscard]] virtual std::uint32_t number(const std::string& path) const;
    /// Its name in the table of mounts, "fuse.sshfs"; empty where it is not found.
    [[nodiscard]] virtual std::string mountedAs(const std::string& path) const;
};

/// The port in force, the system's own at first.
[[nodiscard]] FileSystemPort*& fileSystems();

/// What a file system is called that other machines see too ("a network file system (NFS)"); empty
/// where the path lies on this machine.
[[nodiscard]] std::string networkOf(const std::string& path);

}  // namespace store
