#pragma once

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "operations.h"
#include "snapshots.h"

namespace killing {

/// A folder, or a database server "postgresql://user@host", with a district "before", and the
/// districts that are made from it.
class Workshop {
public:
    explicit Workshop(std::string folder);

    [[nodiscard]] bool isOnServer() const { return isOnServer_; }

    [[nodiscard]] std::string path(const std::string& district) const;
    /// A district as it is before any operation, in the place of what stood there.
    void renew(const std::string& district) const;
    /// What `vireo-district check` finds; empty where there is nothing to find.
    [[nodiscard]] std::string faultsOf(const std::string& district) const;
    /// Puts a copy aside for whoever looks for the fault; returns its path.
    [[nodiscard]] std::string keep(const std::string& district) const;
    /// Waits until the server has noticed that nobody uses a district any more, and has got over
    /// the death of a part of it.
    void settle(const std::string& district) const;

private:
    friend class ServerKiller;
    [[nodiscard]] std::FILE* psql() const;
    [[nodiscard]] bool ask(const std::string& statements) const;

    std::string folder_;
    bool isOnServer_;
};

/// Is connected to the server beforehand: that takes longer than some operations.
class ServerKiller {
public:
    explicit ServerKiller(const Workshop& workshop) : psql_(workshop.psql()) {}
    /// Kills what of the server works for a district; the server then begins anew by itself.
    void kill(const std::string& district) const;

private:
    std::FILE* psql_;
};

enum class Ending { Finished, Killed, Failed };

/// A program of its own that performs an operation on a district. Nothing of the district may be
/// open here when it is started.
class Performer {
public:
    /// Returns when the program has opened the district's databases.
    Performer(const Operation& operation, const std::string& folder);
    void kill() const;
    /// Waits; a program that needs more than a minute is ended and has failed.
    [[nodiscard]] Ending wait() const;

private:
    int process_ = -1;
};

}  // namespace killing
