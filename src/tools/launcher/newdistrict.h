#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tools::launcher {

/// A district that is to be made: the sample, or an empty one with a name and an administrator.
struct NewDistrict {
    bool isEmpty = false;
    std::string folder = {};
    std::string name = {};
    std::string administrator = {};
    std::string password = {};
    std::string passwordAgain = {};
};

/// Which of its parts cannot be so, and why in a sentence; no part where all can.
struct Objection {
    enum class Part { None, Folder, Name, Administrator, Password, PasswordAgain };
    Part part = Part::None;
    std::string why = {};
};
[[nodiscard]] Objection objectionTo(const NewDistrict& wanted);

/// What `vireo-district` is called with to make it. It reads the password from its standard input.
[[nodiscard]] std::vector<std::string> creationOf(const NewDistrict& wanted);

/// The user who logs on to it first.
[[nodiscard]] std::string firstUserOf(const NewDistrict& wanted);

/// A folder that is not there yet below the user's own, named after the district.
[[nodiscard]] std::string freeFolderFor(std::string_view name);

}  // namespace tools::launcher
