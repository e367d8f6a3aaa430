#pragma once

#include <QApplication>
#include <QDBusMessage>
#include <functional>
#include <memory>

namespace forms {

/// How a desktop wants programs to look.
struct DesktopWish {
    bool dark = false;
    bool highContrast = false;

    bool operator==(const DesktopWish&) const = default;
};

/// What the desktop wishes, now and whenever that changes. The settings portal of the session's
/// message bus is asked; where there is none, the GTK settings of the user and the palette that the
/// toolkit took over from the desktop say whether it is dark.
///
/// Made before the program's own palette is set. A bus that does not answer costs a moment, once:
/// whoever answers later is heard then.
class Desktop : public QObject {
    Q_OBJECT

public:
    explicit Desktop(QApplication* application);
    ~Desktop() override;

    [[nodiscard]] DesktopWish wish() const;
    void onChange(std::function<void()> told) { told_ = std::move(told); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Portal;

    Q_SLOT void hear(const QDBusMessage& changed);

    void tell();

    std::unique_ptr<Portal> portal_;
    std::function<void()> told_;
    bool isDarkByPalette_;
    bool isReading_ = false;
};

}  // namespace forms
