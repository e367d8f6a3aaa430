#include "platform/forms/look.h"

#include <QPalette>

#include "platform/controls/signs.h"
#include "platform/forms/flatstyle.h"

namespace forms {

namespace {

struct Colours {
    QColor window, base, alternate, text, quiet, pale, button, line, accent, onAccent, tip, link;
};

const Colours Light{"#f4f5f7", "#ffffff", "#f2f6fb", "#1d2126", "#5f6771", "#8b929b",
                    "#ffffff", "#c3c8cf", "#1f6fd1", "#ffffff", "#fffbe6", "#1f6fd1"};
const Colours Dark{"#23262b", "#1a1c20", "#212429", "#e7e9ec", "#a3abb5", "#7d848e",
                   "#32363d", "#4a5059", "#2f73c8", "#ffffff", "#3a3d43", "#7fb0ee"};

QPalette paletteOf(const Colours& colours) {
    QPalette palette(colours.text, colours.button, colours.base.lighter(130), colours.line,
                     colours.line.darker(115), colours.text, Qt::white, colours.base,
                     colours.window);
    palette.setColor(QPalette::AlternateBase, colours.alternate);
    palette.setColor(QPalette::Mid, colours.line);
    palette.setColor(QPalette::Midlight, colours.alternate);
    palette.setColor(QPalette::Highlight, colours.accent);
    palette.setColor(QPalette::HighlightedText, colours.onAccent);
    palette.setColor(QPalette::Link, colours.link);
    palette.setColor(QPalette::PlaceholderText, colours.quiet);
    palette.setColor(QPalette::ToolTipBase, colours.tip);
    palette.setColor(QPalette::ToolTipText, colours.text);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText}) {
        palette.setColor(QPalette::Disabled, role, colours.pale);
    }
    palette.setColor(QPalette::Disabled, QPalette::Base, colours.window);
    palette.setColor(QPalette::Disabled, QPalette::Button, colours.window);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colours.line);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, colours.text);
    return palette;
}

bool desktopIsDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < 128;
}

}  // namespace

void applyLook(QApplication& application, Scheme scheme) {
    const bool dark = scheme == Scheme::Dark ||
                      (scheme == Scheme::FollowDesktop && desktopIsDark(application.palette()));
    application.setStyle(new FlatStyle);
    application.setPalette(paletteOf(dark ? Dark : Light));
    application.setWindowIcon(controls::programIcon());
}

}  // namespace forms
