#include "map/small/formtheme.h"

#include "platform/controls/tones.h"

namespace map {

const Theme& themeOf(const QPalette& palette) {
    return themeFor(controls::isDark(palette),
                    controls::isHighContrast(palette) ? Contrast::High : Contrast::Usual);
}

}  // namespace map
