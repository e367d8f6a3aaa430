#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "platform/base/notcopied.h"
#include "platform/files/files.h"

namespace tools::district {

/// The name with one sign in the place of each number: back-ups of one kind have the same.
[[nodiscard]] std::string kindOf(std::string_view name);

/// A back-up under another name until it is whole. It is held, so that no other one takes it for
/// one that was left behind; those that were are removed.
class NewFile : private base::NotCopied {
public:
    /// Raises base::RunTimeError.
    explicit NewFile(const std::filesystem::path& wanted);
    ~NewFile();

    [[nodiscard]] int handle() const { return handle_; }
    /// Where it stands until it is finished.
    [[nodiscard]] const std::string& path() const { return making_; }

    /// Brings it to the disk and gives it its name. Raises base::RunTimeError where that is taken.
    void finish();

private:
    [[nodiscard]] bool moved() const;
    void removeAbandoned() const;

    std::filesystem::path wanted_;
    std::string making_;
    int handle_ = -1;
    std::unique_ptr<files::Hold> hold_;
    bool finished_ = false;
};

}  // namespace tools::district
