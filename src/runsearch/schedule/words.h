#pragma once

#include <QFont>
#include <QPainter>
#include <QPixmap>
#include <QStaticText>
#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace schedule {

/// How large and heavy a word of the schedule is.
enum class Type { Normal, Bold, Small, SmallBold, Caption, CaptionBold, Title };

/// The words of the schedule, laid out once: what costs most in a picture full of short texts.
class Words {
public:
    /// `unit` is the size of a pixel of the measures: 1 for a form's font of usual size.
    Words(const QFont& base, double unit);

    [[nodiscard]] double width(std::string_view text, Type type);
    /// With its left edge at x and its middle at y; in the painter's pen.
    void draw(QPainter& painter, double x, double y, std::string_view text, Type type);
    void drawRight(QPainter& painter, double right, double y, std::string_view text, Type type);
    void drawMiddle(QPainter& painter, double x, double y, std::string_view text, Type type);
    /// Cut with an ellipsis where it is wider than that.
    void drawWithin(QPainter& painter, double x, double y, double width, std::string_view text,
                    Type type);
    [[nodiscard]] const QFont& font(Type type) const;
    /// A sign that stands in a picture many times; painted once. `ratio` is pixels of the device
    /// for one of the sign.
    const QPixmap& sign(QSizeF size, double ratio, const std::function<void(QPainter&)>& painted);

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>{}(text);
        }
    };
    struct Laid {
        QStaticText text;
        QSizeF size;
    };
    const Laid& laid(std::string_view text, Type type);

    static constexpr std::size_t Types = 7;
    QPixmap sign_;
    std::array<QFont, Types> fonts_;
    std::array<std::unordered_map<std::string, Laid, Hash, std::equal_to<>>, Types> laid_;
};

}  // namespace schedule
