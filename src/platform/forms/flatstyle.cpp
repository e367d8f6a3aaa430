#include "platform/forms/flatstyle.h"

#include <QPainter>
#include <QStyleOption>

namespace forms {

namespace {

constexpr qreal Radius = 4;

QColor mixed(const QColor& a, const QColor& b, qreal share) {
    const auto part = [share](int x, int y) { return static_cast<int>(x + (y - x) * share); };
    return {part(a.red(), b.red()), part(a.green(), b.green()), part(a.blue(), b.blue())};
}

void drawBox(QPainter& painter, const QRect& rect, const QColor& fill, const QColor& line) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(line);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), Radius, Radius);
    painter.restore();
}

QColor lineColour(const QStyleOption& option) {
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const bool focused = option.state.testFlag(QStyle::State_HasFocus);
    if (enabled && focused) {
        return option.palette.color(QPalette::Highlight);
    }
    const QColor line = option.palette.color(QPalette::Active, QPalette::Mid);
    return enabled ? line : mixed(line, option.palette.color(QPalette::Window), 0.5);
}

void drawButton(const QStyleOptionButton& option, QPainter& painter) {
    const QPalette& palette = option.palette;
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const bool accented = enabled && option.features.testFlag(QStyleOptionButton::DefaultButton);
    QColor fill = palette.color(accented ? QPalette::Highlight : QPalette::Button);
    const QColor ink = palette.color(accented ? QPalette::HighlightedText : QPalette::ButtonText);
    if (enabled && (option.state & (QStyle::State_Sunken | QStyle::State_On))) {
        fill = mixed(fill, ink, 0.16);
    } else if (enabled && option.state.testFlag(QStyle::State_MouseOver)) {
        fill = mixed(fill, ink, 0.07);
    }
    drawBox(painter, option.rect, fill, accented ? fill : lineColour(option));
}

void drawHeaderSection(const QStyleOptionHeader& option, QPainter& painter) {
    const QPalette& palette = option.palette;
    QColor fill = mixed(palette.color(QPalette::Window), palette.color(QPalette::Base), 0.4);
    if (option.state.testFlag(QStyle::State_MouseOver)) {
        fill = mixed(fill, palette.color(QPalette::Highlight), 0.12);
    }
    painter.fillRect(option.rect, fill);
    painter.setPen(palette.color(QPalette::Active, QPalette::Mid));
    painter.drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
    painter.drawLine(option.rect.right(), option.rect.top() + 4, option.rect.right(),
                     option.rect.bottom() - 4);
}

}  // namespace

FlatStyle::FlatStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void FlatStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
    if (element == PE_PanelButtonCommand) {
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            drawButton(*button, *painter);
            return;
        }
    }
    if (element == PE_FrameLineEdit || element == PE_PanelLineEdit) {
        const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
        if (frame != nullptr && frame->lineWidth > 0) {
            drawBox(*painter, option->rect, option->palette.color(QPalette::Base),
                    lineColour(*option));
            return;
        }
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void FlatStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
    if (element == CE_HeaderSection) {
        if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option)) {
            drawHeaderSection(*header, *painter);
            return;
        }
    }
    if (element == CE_HeaderEmptyArea) {
        QStyleOptionHeader header;
        static_cast<QStyleOption&>(header) = *option;
        header.state = State_Enabled;
        drawHeaderSection(header, *painter);
        return;
    }
    if (element == CE_PushButtonLabel) {
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        if (button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton)) {
            QStyleOptionButton accented = *button;
            accented.palette.setColor(QPalette::Active, QPalette::ButtonText,
                                      button->palette.color(QPalette::HighlightedText));
            accented.palette.setColor(QPalette::Inactive, QPalette::ButtonText,
                                      button->palette.color(QPalette::HighlightedText));
            QProxyStyle::drawControl(element, &accented, painter, widget);
            return;
        }
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

int FlatStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
    switch (metric) {
        case PM_LayoutHorizontalSpacing:
            return 8;
        case PM_LayoutVerticalSpacing:
            return 6;
        case PM_LayoutLeftMargin:
        case PM_LayoutTopMargin:
        case PM_LayoutRightMargin:
        case PM_LayoutBottomMargin:
            return 10;
        case PM_ButtonShiftHorizontal:
        case PM_ButtonShiftVertical:
            return 0;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int FlatStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* result) const {
    if (hint == SH_ItemView_ShowDecorationSelected) {
        return 1;
    }
    return QProxyStyle::styleHint(hint, option, widget, result);
}

QSize FlatStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                  const QWidget* widget) const {
    QSize fitted = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
        case CT_PushButton:
            return fitted.expandedTo({72, size.height() + 12});
        case CT_LineEdit:
        case CT_ComboBox:
            return fitted.expandedTo({0, size.height() + 10});
        case CT_ItemViewItem:
            fitted.setHeight(fitted.height() + 5);
            return fitted;
        case CT_HeaderSection:
            fitted.setHeight(fitted.height() + 4);
            return fitted;
        default:
            return fitted;
    }
}

}  // namespace forms
