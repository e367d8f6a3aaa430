#pragma once

#include <map>
#include <memory>
#include <vector>

#include "platform/base/notcopied.h"
#include "reports/page/fonts.h"

struct hb_font_t;

namespace reports {

/// A face of a font that is installed, opened for measuring.
class OpenFont : private base::NotCopied {
public:
    /// Raises "Path/File access error" (75) where the file cannot be read.
    OpenFont(const std::string& path, int index);
    ~OpenFont();

    [[nodiscard]] const FontFile& file() const { return file_; }
    [[nodiscard]] hb_font_t* font() const { return font_; }
    [[nodiscard]] bool has(char32_t character) const;

private:
    FontFile file_;
    hb_font_t* font_;
};

/// The installed fonts that the faces are drawn with.
class FontFiles {
public:
    /// Raises "Path/File access error" (75) where the system has no font.
    FontFiles();

    /// What draws a character: the face's own font, otherwise one that has the character, and the
    /// face's own again where none has.
    [[nodiscard]] const OpenFont& of(Face face, char32_t character);

private:
    const OpenFont& opened(const std::string& path, int index);
    const OpenFont* covering(char32_t character);

    std::vector<std::unique_ptr<OpenFont>> fonts_;
    std::vector<std::vector<const OpenFont*>> faces_;
    std::map<char32_t, const OpenFont*> others_;
};

}  // namespace reports
