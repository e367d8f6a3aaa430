#include "platform/store/base/filesystem.h"

#include <algorithm>
#include <fstream>
#include <string_view>

#include <fmt/format.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/sysmacros.h>

namespace store {

namespace {

struct Kind {
    std::uint32_t number;
    std::string_view name;
};

constexpr Kind Networks[] = {{0x6969, "NFS"},      {0x517B, "SMB"},       {0xFF534D42, "SMB/CIFS"},
                             {0xFE534D42, "SMB"},  {0x564C, "NCP"},       {0x5346414F, "AFS"},
                             {0x73757245, "Coda"}, {0x00C36400, "Ceph"},  {0x0BD00BD0, "Lustre"},
                             {0x01021997, "9P"},   {0x786F4256, "vboxsf"}};

constexpr std::uint32_t Fuse = 0x65735546;

/// File systems in user space that keep their files on this machine. Any other may be a share.
constexpr std::string_view LocalFuse[] = {"fuseblk",     "fuse.fuse-overlayfs", "fuse.gocryptfs",
                                          "fuse.encfs",  "fuse.cryfs",          "fuse.bindfs",
                                          "fuse.ntfs-3g"};

std::string fuseShare(const std::string& mountedAs) {
    if (std::ranges::find(LocalFuse, mountedAs) != std::end(LocalFuse)) {
        return {};
    }
    return mountedAs.starts_with("fuse.") ? mountedAs.substr(5) : "FUSE";
}

}  // namespace

std::uint32_t FileSystemPort::number(const std::string& path) const {
    struct statfs status {};
    return statfs(path.c_str(), &status) == 0 ? static_cast<std::uint32_t>(status.f_type) : 0;
}

// A line is "36 35 98:0 /root /where options - name source options".
std::string FileSystemPort::mountedAs(const std::string& path) const {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return {};
    }
    const auto device = fmt::format(" {}:{} ", major(status.st_dev), minor(status.st_dev));
    std::ifstream mounts("/proc/self/mountinfo");
    for (std::string line; std::getline(mounts, line);) {
        const auto dash = line.find(" - ");
        if (dash != std::string::npos && line.find(device) < dash) {
            const auto name = line.substr(dash + 3);
            return name.substr(0, name.find(' '));
        }
    }
    return {};
}

FileSystemPort*& fileSystems() {
    static FileSystemPort system;
    static FileSystemPort* inForce = &system;
    return inForce;
}

std::string networkOf(const std::string& path) {
    const std::uint32_t number = fileSystems()->number(path);
    std::string name;
    if (number == Fuse) {
        name = fuseShare(fileSystems()->mountedAs(path));
    } else if (const auto* at = std::ranges::find(Networks, number, &Kind::number);
               at != std::end(Networks)) {
        name = at->name;
    }
    return name.empty() ? name : fmt::format("a network file system ({})", name);
}

}  // namespace store
