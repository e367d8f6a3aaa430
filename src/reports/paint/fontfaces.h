#pragma once

#include <map>
#include <memory>

#include <cairo.h>

#include "platform/base/notcopied.h"
#include "reports/page/fonts.h"

namespace reports {

/// The files of glyphs as the painters' library opens them, each once.
class FontFaces : private base::NotCopied {
public:
    FontFaces();
    ~FontFaces();

    /// Raises "Path/File access error" (75) where the file has gone.
    [[nodiscard]] cairo_font_face_t* of(const FontFile& file);

private:
    struct Library;
    std::unique_ptr<Library> library_;
    std::map<const FontFile*, cairo_font_face_t*> faces_;
};

}  // namespace reports
