#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace controls {

/// UTF-8 text of the cores as the toolkit's text, and back.
[[nodiscard]] inline QString toQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
[[nodiscard]] inline std::string fromQt(const QString& text) { return text.toStdString(); }

}  // namespace controls
