#pragma once

#include <QKeyCombination>

namespace controls {

inline constexpr QKeyCombination CopyWithoutCaptions{Qt::ControlModifier | Qt::ShiftModifier,
                                                     Qt::Key_C};

}  // namespace controls
