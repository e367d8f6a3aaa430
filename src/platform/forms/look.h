#pragma once

#include <QApplication>
#include <QString>

namespace forms {

/// Which look the user wants: the desktop's, or one of the program's own whatever the desktop does.
enum class Scheme { FollowDesktop, Light, Dark, HighContrast };

/// The one look of all forms: a flat style, comfortable spacing, one accent colour, in light, dark
/// or high contrast. This is the only place that knows colours and sizes.
///
/// The desktop is looked at as it is now and no more; followDesktop() goes on looking.
void applyLook(QApplication& application, Scheme scheme = Scheme::FollowDesktop);

/// From now on the look changes with the desktop, while the program runs, and what the user wants
/// is kept in a file (an INI file; without a name for the session only). Waits for the desktop's
/// word a moment at most.
void followDesktop(QApplication& application, const QString& file = {});

/// What the user wants; followDesktop() has read it.
[[nodiscard]] Scheme wantedScheme();
/// Takes another look at once, for all forms that are open, and remembers it for the user. Other
/// programs of the suite take it when they start.
void wantScheme(Scheme scheme);

}  // namespace forms
