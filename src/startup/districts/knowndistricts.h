#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/date.h"

namespace startup {

/// A district that somebody works on at this desktop.
struct KnownDistrict {
    std::string folder;         ///< that holds "vireo/route.ini", without a separator at its end
    std::string name = {};      ///< as the district calls itself; empty where it was never read
    std::string lastUser = {};  ///< who worked on it last
    std::optional<base::Date> lastUsed = {};

    /// Its name, or else its folder's.
    [[nodiscard]] std::string shownName() const;
};

/// The user's list of districts, "vireo/districts.ini" in the user's configuration folder. Programs
/// may change it at the same time: each change is merged with what stands there and written whole.
/// A list that cannot be read is empty, one that cannot be written stays as it is.
class KnownDistricts {
public:
    KnownDistricts();
    explicit KnownDistricts(std::string file) : file_(std::move(file)) {}

    /// The last one used first, then by name: those on the list, and those of the configuration
    /// folders of user and machine unless they were taken from it.
    [[nodiscard]] std::vector<KnownDistrict> all() const;
    /// Nothing but the folder where it is not on the list.
    [[nodiscard]] KnownDistrict find(const std::string& folder) const;

    /// Puts a district on the list, or a new name where it stands there already.
    void add(const std::string& folder, std::string_view name) const;
    /// The same, as one on which that user works from now on.
    void use(const std::string& folder, std::string_view name, std::string_view user) const;
    /// Takes it from the list; its files stay as they are.
    void remove(const std::string& folder) const;

private:
    [[nodiscard]] std::vector<KnownDistrict> listed(bool taken) const;

    std::string file_;
};

/// Where the settings of the district in a folder stand.
[[nodiscard]] std::string settingsIn(const std::string& folder);

/// The folder of the district whose settings are in force (gIniFile).
[[nodiscard]] std::string districtInForce();

}  // namespace startup
