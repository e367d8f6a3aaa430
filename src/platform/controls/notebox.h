#pragma once

#include <QLabel>
#include <optional>
#include <string_view>

#include "platform/controls/signs.h"
#include "platform/controls/tones.h"

namespace controls {

/// A text as it stands in rich text.
[[nodiscard]] QString toRich(std::string_view text);

/// A text of some lines in a form, with a mark before it and its tone's ground behind it where it
/// has to be seen. Plain, it is a label. Rich text is taken; what comes from elsewhere is escaped
/// by the caller.
class NoteBox : public QLabel {
    Q_OBJECT
    Q_PROPERTY(QString plainText READ plainText)

public:
    explicit NoteBox(QWidget* parent = nullptr);

    void say(Tone tone, const QString& text, std::optional<Sign> sign = {});
    [[nodiscard]] Tone tone() const { return tone_; }
    /// Without its markup.
    [[nodiscard]] QString plainText() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void applyMargins();

    Tone tone_ = Tone::Plain;
    std::optional<Sign> sign_;
};

}  // namespace controls
