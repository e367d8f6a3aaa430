#pragma once

#include <cstdio>
#include <string>

#include "support/temporaryfolder.h"

namespace support {

/// A database server of this program's own, which ends with it. The first one that is asked for
/// takes about a second.
class PrivateServer {
public:
    /// Null where the server's programs are not installed.
    static PrivateServer* find();

    ~PrivateServer();
    PrivateServer(const PrivateServer&) = delete;
    PrivateServer& operator=(const PrivateServer&) = delete;

    /// The place of a district in a new, empty database: "postgresql://vireo@…/one1/".
    [[nodiscard]] std::string newPlace();
    /// Runs a statement as the server's master, outside of any program; its result's first line.
    [[nodiscard]] std::string tell(const std::string& database, const std::string& sql) const;

private:
    PrivateServer();

    TemporaryFolder folder_{TemporaryFolder::Place::Memory};
    std::FILE* life_;
    bool isReady_ = false;
    int places_ = 0;
};

}  // namespace support
