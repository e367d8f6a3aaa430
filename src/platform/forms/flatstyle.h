#pragma once

#include <QProxyStyle>

namespace forms {

/// The drawing behind applyLook(): flat buttons, boxes and headers with one line width and one
/// corner radius, all in colours of the palette.
class FlatStyle : public QProxyStyle {
    Q_OBJECT

public:
    FlatStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
    [[nodiscard]] QRect subElementRect(SubElement element, const QStyleOption* option,
                                       const QWidget* widget) const override;
    [[nodiscard]] QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                                     const QWidget* widget) const override;
    [[nodiscard]] int layoutSpacing(QSizePolicy::ControlType, QSizePolicy::ControlType,
                                    Qt::Orientation, const QStyleOption*,
                                    const QWidget*) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const override;
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* result) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option,
                                         const QSize& size, const QWidget* widget) const override;
};

}  // namespace forms
