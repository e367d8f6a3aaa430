#include "tools/launcher/newdistrict.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/password/password.h"
#include "tools/district/users/accounts.h"

namespace tools::launcher {

namespace {

namespace fs = std::filesystem;
using Part = Objection::Part;

constexpr auto SampleUser = "PLANNER";

std::string whyNoFolder(const std::string& folder) {
    std::error_code error;
    if (!folder.starts_with('/')) {
        return "Say where the district is to stand, by the whole path of a folder.";
    }
    if (fs::exists(folder, error) && !fs::is_empty(folder, error)) {
        return fmt::format("{} is there already and not empty.  Choose another folder.", folder);
    }
    return {};
}

Objection objectionToAdministrator(const NewDistrict& wanted) {
    if (const std::string why = district::whyNoIdentifier(wanted.administrator); !why.empty()) {
        return {Part::Administrator, why};
    }
    if (wanted.password.empty()) {
        return {Part::Password, "The administrator needs a password."};
    }
    if (wanted.password.size() > password::Longest) {
        return {Part::Password, fmt::format("A password has at most {} bytes.", password::Longest)};
    }
    if (wanted.password != wanted.passwordAgain) {
        return {Part::PasswordAgain, "These are two different passwords."};
    }
    return {};
}

/// A name that makes a folder: what parts paths is left out.
std::string folderNameFor(std::string_view name) {
    std::string folder(base::trim(name));
    std::erase_if(folder, [](unsigned char c) { return c == '/' || c < ' '; });
    const auto start = folder.find_first_not_of('.');
    return start == std::string::npos ? "District" : folder.substr(start);
}

}  // namespace

Objection objectionTo(const NewDistrict& wanted) {
    if (wanted.isEmpty && base::trim(wanted.name).empty()) {
        return {Part::Name, "Give the district a name: the main form and every report show it."};
    }
    if (wanted.isEmpty) {
        if (Objection objection = objectionToAdministrator(wanted); objection.part != Part::None) {
            return objection;
        }
    }
    if (std::string why = whyNoFolder(wanted.folder); !why.empty()) {
        return {Part::Folder, std::move(why)};
    }
    return {};
}

std::vector<std::string> creationOf(const NewDistrict& wanted) {
    std::vector<std::string> words{"create"};
    if (wanted.isEmpty) {
        words.insert(words.end(), {"--empty", "--name=" + std::string(base::trim(wanted.name)),
                                   "--admin=" + std::string(base::trim(wanted.administrator))});
    }
    words.insert(words.end(), {"--", wanted.folder});
    return words;
}

std::string firstUserOf(const NewDistrict& wanted) {
    return wanted.isEmpty ? std::string(base::trim(wanted.administrator)) : SampleUser;
}

std::string freeFolderFor(std::string_view name) {
    const char* home = std::getenv("HOME");
    const fs::path own = fs::path(home == nullptr ? "/" : home) / "Vireo";
    const std::string wanted = folderNameFor(name);
    fs::path folder = own / wanted;
    std::error_code error;
    for (int number = 2; fs::exists(folder, error); ++number) {
        folder = own / fmt::format("{} {}", wanted, number);
    }
    return folder.string();
}

}  // namespace tools::launcher
