#include "reports/page/fontfiles.h"

#include <algorithm>
#include <array>
#include <optional>

#include <fontconfig/fontconfig.h>
#include <hb-ot.h>
#include <hb.h>

#include "platform/base/error.h"

namespace reports {

namespace {

struct Cut {
    const char* family;
    int weight;
    int slant;
    int width;
};

/// In the order of Face: first the cut that is wanted, then the one that stands in for it.
constexpr std::array Cuts = {
    std::array{Cut{"Roboto", FC_WEIGHT_REGULAR, FC_SLANT_ROMAN, FC_WIDTH_NORMAL},
               Cut{"DejaVu Sans", FC_WEIGHT_REGULAR, FC_SLANT_ROMAN, FC_WIDTH_NORMAL}},
    std::array{Cut{"Roboto", FC_WEIGHT_MEDIUM, FC_SLANT_ROMAN, FC_WIDTH_NORMAL},
               Cut{"DejaVu Sans", FC_WEIGHT_REGULAR, FC_SLANT_ROMAN, FC_WIDTH_NORMAL}},
    std::array{Cut{"Roboto", FC_WEIGHT_BOLD, FC_SLANT_ROMAN, FC_WIDTH_NORMAL},
               Cut{"DejaVu Sans", FC_WEIGHT_BOLD, FC_SLANT_ROMAN, FC_WIDTH_NORMAL}},
    std::array{Cut{"Roboto", FC_WEIGHT_REGULAR, FC_SLANT_ITALIC, FC_WIDTH_NORMAL},
               Cut{"DejaVu Sans", FC_WEIGHT_REGULAR, FC_SLANT_OBLIQUE, FC_WIDTH_NORMAL}},
    std::array{Cut{"Roboto Condensed", FC_WEIGHT_REGULAR, FC_SLANT_ROMAN, FC_WIDTH_NORMAL},
               Cut{"DejaVu Sans", FC_WEIGHT_REGULAR, FC_SLANT_ROMAN, FC_WIDTH_SEMICONDENSED}},
    std::array{Cut{"Roboto Condensed", FC_WEIGHT_BOLD, FC_SLANT_ROMAN, FC_WIDTH_NORMAL},
               Cut{"DejaVu Sans", FC_WEIGHT_BOLD, FC_SLANT_ROMAN, FC_WIDTH_SEMICONDENSED}},
};

using Pattern = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;

struct Found {
    std::string family;
    std::string path;
    int index = 0;
    bool isOutline = false;
};

std::string stringOf(FcPattern* pattern, const char* object) {
    FcChar8* text = nullptr;
    return FcPatternGetString(pattern, object, 0, &text) == FcResultMatch
               ? reinterpret_cast<const char*>(text)
               : std::string();
}

bool yesNoOf(FcPattern* pattern, const char* object) {
    FcBool value = FcFalse;
    return FcPatternGetBool(pattern, object, 0, &value) == FcResultMatch && value == FcTrue;
}

std::optional<Found> matchOf(FcPattern* wanted) {
    FcPatternAddBool(wanted, FC_SCALABLE, FcTrue);
    FcPatternAddBool(wanted, FC_VARIABLE, FcFalse);
    FcPatternAddBool(wanted, FC_COLOR, FcFalse);
    FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
    FcDefaultSubstitute(wanted);
    FcResult result = FcResultNoMatch;
    const Pattern match(FcFontMatch(nullptr, wanted, &result), &FcPatternDestroy);
    if (!match) {
        return std::nullopt;
    }
    Found found{stringOf(match.get(), FC_FAMILY), stringOf(match.get(), FC_FILE), 0,
                yesNoOf(match.get(), FC_SCALABLE) && !yesNoOf(match.get(), FC_COLOR)};
    FcPatternGetInteger(match.get(), FC_INDEX, 0, &found.index);
    return found.path.empty() ? std::nullopt : std::optional(std::move(found));
}

std::optional<Found> matchOf(const Cut& cut) {
    const Pattern wanted(FcPatternCreate(), &FcPatternDestroy);
    FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(cut.family));
    FcPatternAddInteger(wanted.get(), FC_WEIGHT, cut.weight);
    FcPatternAddInteger(wanted.get(), FC_SLANT, cut.slant);
    FcPatternAddInteger(wanted.get(), FC_WIDTH, cut.width);
    return matchOf(wanted.get());
}

}  // namespace

OpenFont::OpenFont(const std::string& path, int index) : file_{path, index, 0}, font_(nullptr) {
    const std::unique_ptr<hb_blob_t, decltype(&hb_blob_destroy)> blob(
        hb_blob_create_from_file_or_fail(path.c_str()), &hb_blob_destroy);
    if (!blob) {
        base::raise(base::errors::PathFileAccess);
    }
    const std::unique_ptr<hb_face_t, decltype(&hb_face_destroy)> face(
        hb_face_create(blob.get(), static_cast<unsigned>(index)), &hb_face_destroy);
    file_.unitsPerEm = hb_face_get_upem(face.get());
    font_ = hb_font_create(face.get());
}

OpenFont::~OpenFont() { hb_font_destroy(font_); }

bool OpenFont::has(char32_t character) const {
    hb_codepoint_t glyph = 0;
    return hb_font_get_nominal_glyph(font_, character, &glyph) != 0;
}

FontFiles::FontFiles() {
    for (const auto& cuts : Cuts) {
        auto& face = faces_.emplace_back();
        std::optional<Found> any;
        for (const Cut& cut : cuts) {
            any = matchOf(cut);
            if (any && any->family == cut.family) {
                face.push_back(&opened(any->path, any->index));
            }
        }
        if (face.empty() && any) {
            face.push_back(&opened(any->path, any->index));
        }
        if (face.empty()) {
            base::raise(base::errors::PathFileAccess);
        }
    }
}

const OpenFont& FontFiles::opened(const std::string& path, int index) {
    const auto known = std::ranges::find_if(fonts_, [&](const auto& font) {
        return font->file().path == path && font->file().index == index;
    });
    return known != fonts_.end() ? **known
                                 : *fonts_.emplace_back(std::make_unique<OpenFont>(path, index));
}

const OpenFont& FontFiles::of(Face face, char32_t character) {
    const auto& own = faces_[static_cast<std::size_t>(face)];
    const auto having =
        std::ranges::find_if(own, [&](const OpenFont* font) { return font->has(character); });
    if (having != own.end()) {
        return **having;
    }
    const auto [other, isNew] = others_.try_emplace(character);
    if (isNew) {
        other->second = covering(character);
    }
    return other->second != nullptr ? *other->second : *own.front();
}

const OpenFont* FontFiles::covering(char32_t character) {
    const Pattern wanted(FcPatternCreate(), &FcPatternDestroy);
    const std::unique_ptr<FcCharSet, decltype(&FcCharSetDestroy)> set(FcCharSetCreate(),
                                                                      &FcCharSetDestroy);
    FcCharSetAddChar(set.get(), character);
    FcPatternAddCharSet(wanted.get(), FC_CHARSET, set.get());
    const auto found = matchOf(wanted.get());
    if (!found || !found->isOutline) {
        return nullptr;
    }
    const OpenFont& font = opened(found->path, found->index);
    return font.has(character) ? &font : nullptr;
}

}  // namespace reports
