#pragma once

#include <QApplication>

namespace forms {

enum class Scheme { FollowDesktop, Light, Dark };

/// The one look of all forms: a flat style, comfortable spacing, one accent colour, in light or
/// dark as the desktop is. This is the only place that knows colours and sizes.
void applyLook(QApplication& application, Scheme scheme = Scheme::FollowDesktop);

}  // namespace forms
