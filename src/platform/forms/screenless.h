#pragma once

#include <QByteArray>
#include <QSize>
#include <QTemporaryFile>

#include "platform/base/notcopied.h"

namespace forms {

/// Gives the toolkit's platform without a screen ("offscreen") one of that size, in pixels, where
/// it would have a small square. It lives while the application is made; other platforms keep their
/// screens.
class ScreenlessScreen : private base::NotCopied {
public:
    explicit ScreenlessScreen(QSize size);
    ~ScreenlessScreen();

private:
    QByteArray platform_;
    QTemporaryFile description_;
};

}  // namespace forms
