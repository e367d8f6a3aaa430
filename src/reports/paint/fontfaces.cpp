#include "reports/paint/fontfaces.h"

#include <cairo-ft.h>

#include "platform/base/error.h"

namespace reports {

namespace {

/// The library's files live as long as any face of them: a finished page may still hold one.
struct OpenFile {
    std::shared_ptr<FT_LibraryRec_> library;
    FT_Face face = nullptr;

    static void close(void* file) {
        const std::unique_ptr<OpenFile> open(static_cast<OpenFile*>(file));
        FT_Done_Face(open->face);
    }
};

constexpr cairo_user_data_key_t FileKey = {};

}  // namespace

struct FontFaces::Library {
    std::shared_ptr<FT_LibraryRec_> shared;
};

FontFaces::FontFaces() : library_(std::make_unique<Library>()) {
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) {
        base::raise(base::errors::OutOfMemory);
    }
    library_->shared.reset(library, &FT_Done_FreeType);
}

FontFaces::~FontFaces() {
    for (const auto& [file, face] : faces_) {
        cairo_font_face_destroy(face);
    }
}

cairo_font_face_t* FontFaces::of(const FontFile& file) {
    const auto known = faces_.find(&file);
    if (known != faces_.end()) {
        return known->second;
    }
    auto open = std::make_unique<OpenFile>();
    open->library = library_->shared;
    if (FT_New_Face(open->library.get(), file.path.c_str(), file.index, &open->face) != 0) {
        base::raise(base::errors::PathFileAccess);
    }
    cairo_font_face_t* face = cairo_ft_font_face_create_for_ft_face(open->face, 0);
    cairo_font_face_set_user_data(face, &FileKey, open.release(), &OpenFile::close);
    return faces_.emplace(&file, face).first->second;
}

}  // namespace reports
