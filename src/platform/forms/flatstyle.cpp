#include "platform/forms/flatstyle.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QIcon>
#include <QPainter>
#include <QStyleOption>

#include "platform/base/lookup.h"
#include "platform/controls/refused.h"
#include "platform/controls/tones.h"

namespace forms {

namespace {

constexpr qreal Radius = 4;

int lineHeight() { return QFontMetrics(QApplication::font()).height(); }

/// Pixels of so many lines of text.
int lines(qreal count) { return qRound(lineHeight() * count); }

/// The grid that distances are counted in, 3.5 to a line of text.
int steps(qreal count) { return lines(count / 3.5); }

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

bool hasFocus(const QStyleOption& option) {
    return option.state.testFlag(QStyle::State_Enabled) &&
           option.state.testFlag(QStyle::State_HasFocus);
}

/// The width of the ring around what has the focus.
int ringWidth(const QPalette& palette) { return controls::isHighContrast(palette) ? 3 : 2; }

void drawRing(QPainter& painter, const QRect& rect, const QColor& colour, int width) {
    const qreal half = width / 2.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect).adjusted(half, half, -half, -half), Radius - 1,
                            Radius - 1);
    painter.restore();
}

QColor lineColour(const QStyleOption& option) {
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
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
    if (hasFocus(option)) {
        const int width = ringWidth(palette);
        const QRect inside = option.rect.adjusted(width, width, -width, -width);
        drawRing(painter, accented ? inside : option.rect,
                 accented ? palette.color(QPalette::HighlightedText) : controls::focusInk(palette),
                 width);
    }
}

/// The edge of a field and what it says of it: the focus, or that its content was refused.
void drawField(const QStyleOption& option, QPainter& painter, QPalette::ColorRole ground,
               const QWidget* widget) {
    drawBox(painter, option.rect, option.palette.color(ground), lineColour(option));
    if (widget != nullptr && controls::isRefused(*widget)) {
        drawRing(painter, option.rect, option.palette.color(QPalette::Text),
                 ringWidth(option.palette));
        const int side = lines(0.8);
        controls::drawWarning(painter,
                              {option.rect.right() - side - steps(1),
                               option.rect.center().y() - side / 2, side, side},
                              option.palette.color(QPalette::Text));
    } else if (hasFocus(option)) {
        drawRing(painter, option.rect, controls::focusInk(option.palette),
                 ringWidth(option.palette));
    }
}

/// Of what scrolls. A list shows its focus on the row that keys go on from, if there is one.
void drawAreaEdge(const QStyleOption& option, QPainter& painter, const QAbstractScrollArea& area) {
    const auto* list = qobject_cast<const QAbstractItemView*>(&area);
    const bool rings = hasFocus(option) && (list == nullptr || !list->currentIndex().isValid());
    const QColor outer = option.palette.color(QPalette::Active, QPalette::Mid);
    const QColor inner = option.palette.color(QPalette::Base);
    const QColor accent = option.palette.color(QPalette::Highlight);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(rings ? accent : outer);
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
    painter.setPen(rings ? accent : inner);
    painter.drawRect(option.rect.adjusted(1, 1, -2, -2));
}

/// Around a part of a control: the accent, and its own ink on the accent.
void drawFocus(const QStyleOption& option, QPainter& painter) {
    const QColor accent = option.palette.color(QPalette::Highlight);
    const auto* focus = qstyleoption_cast<const QStyleOptionFocusRect*>(&option);
    const bool onAccent = focus != nullptr && focus->backgroundColor == accent;
    drawRing(painter, option.rect,
             onAccent ? option.palette.color(QPalette::HighlightedText)
                      : controls::focusInk(option.palette),
             ringWidth(option.palette));
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

QColor paneColour(const QPalette& palette) {
    return mixed(palette.color(QPalette::Window), palette.color(QPalette::Base), 0.55);
}

void drawTab(const QStyleOptionTab& option, QPainter& painter) {
    const QPalette& palette = option.palette;
    const QRect rect = option.rect.adjusted(1, 2, -1, 0);
    if (option.state.testFlag(QStyle::State_Selected)) {
        painter.fillRect(rect.adjusted(0, 0, 0, 1), paneColour(palette));
        painter.fillRect(QRect(rect.left(), rect.top(), rect.width(), 2),
                         palette.color(QPalette::Highlight));
        painter.setPen(palette.color(QPalette::Active, QPalette::Mid));
        painter.drawLine(rect.left(), rect.top() + 2, rect.left(), rect.bottom());
        painter.drawLine(rect.right(), rect.top() + 2, rect.right(), rect.bottom());
    } else if (option.state.testFlag(QStyle::State_MouseOver)) {
        painter.fillRect(rect.adjusted(0, 2, 0, -1), paneColour(palette));
    }
}

void drawStroke(QPainter& painter, const QPolygonF& points, const QColor& colour, qreal width) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(points);
    painter.restore();
}

enum class Points { Up, Down };

void drawChevron(QPainter& painter, const QRect& rect, const QColor& colour, Points points) {
    const qreal half = lineHeight() * 0.22;
    const qreal tip = half * (points == Points::Down ? 0.43 : -0.43);
    const QPointF middle = QRectF(rect).center();
    drawStroke(
        painter,
        {middle + QPointF(-half, -tip), middle + QPointF(0, tip), middle + QPointF(half, -tip)},
        colour, 1.5);
}

/// The box or disc of a check box or an option: the accent colour where it is on.
QColor drawIndicatorGround(const QStyleOption& option, QPainter& painter, qreal radius) {
    const QPalette& palette = option.palette;
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const bool on = option.state & (QStyle::State_On | QStyle::State_NoChange);
    // An empty box has nothing but its edge.
    const QColor line =
        mixed(palette.color(QPalette::Active, QPalette::Text), palette.color(QPalette::Base), 0.5);
    QColor fill = on ? palette.color(QPalette::Highlight) : palette.color(QPalette::Base);
    if (option.state.testFlag(QStyle::State_MouseOver)) {
        fill = mixed(fill, palette.color(QPalette::Text), 0.08);
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(on ? fill : enabled ? line : mixed(line, fill, 0.5));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.restore();
    return palette.color(QPalette::HighlightedText);
}

void drawCheckBox(const QStyleOption& option, QPainter& painter) {
    const QColor ink = drawIndicatorGround(option, painter, 3);
    const QPointF middle = QRectF(option.rect).center();
    const qreal unit = option.rect.width() / 14.0;
    if (option.state.testFlag(QStyle::State_On)) {
        drawStroke(painter,
                   {middle + QPointF(-3.5, 0) * unit, middle + QPointF(-1, 2.5) * unit,
                    middle + QPointF(3.5, -3) * unit},
                   ink, 1.8 * unit);
    } else if (option.state.testFlag(QStyle::State_NoChange)) {
        drawStroke(painter, {middle + QPointF(-3, 0) * unit, middle + QPointF(3, 0) * unit}, ink,
                   1.8 * unit);
    }
}

void drawOption(const QStyleOption& option, QPainter& painter) {
    const QColor ink = drawIndicatorGround(option, painter, option.rect.width() / 2.0);
    if (option.state.testFlag(QStyle::State_On)) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink);
        painter.drawEllipse(QRectF(option.rect).center(), option.rect.width() * 0.2,
                            option.rect.width() * 0.2);
        painter.restore();
    }
}

void drawProgress(const QStyleOptionProgressBar& bar, QPainter& painter) {
    const qreal share = static_cast<qreal>(bar.progress - bar.minimum) /
                        static_cast<qreal>(bar.maximum - bar.minimum);
    QRect done = bar.rect.adjusted(1, 1, -1, -1);
    done.setWidth(static_cast<int>(done.width() * share));
    if (done.width() > 0) {
        const QColor accent = bar.palette.color(QPalette::Highlight);
        drawBox(painter, done, accent, accent);
    }
}

struct BoxSign {
    QColor colour;
    const char* text;
};

/// A coloured disc with a sign, for message boxes.
QIcon discIcon(const BoxSign& sign) {
    QIcon icon;
    for (const int size : {32, 48, 64}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(sign.colour);
        painter.drawEllipse(pixmap.rect().adjusted(1, 1, -1, -1));
        QFont font = painter.font();
        font.setBold(true);
        font.setPixelSize(size * 5 / 8);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(pixmap.rect(), Qt::AlignCenter, QString::fromUtf8(sign.text));
        icon.addPixmap(pixmap);
    }
    return icon;
}

/// Of a menu, which has the ground of what lies below it.
void drawStrongEdge(const QStyleOption& option, QPainter& painter) {
    painter.save();
    painter.setPen(option.palette.color(QPalette::Active, QPalette::Mid));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
    painter.restore();
}

}  // namespace

FlatStyle::FlatStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void FlatStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
    const QPalette& palette = option->palette;
    switch (element) {
        case PE_IndicatorCheckBox:
            return drawCheckBox(*option, *painter);
        case PE_IndicatorRadioButton:
            return drawOption(*option, *painter);
        case PE_FrameTabWidget:
            return drawBox(*painter, option->rect, paneColour(palette),
                           palette.color(QPalette::Active, QPalette::Mid));
        case PE_FrameTabBarBase:
            return;
        case PE_PanelButtonCommand:
            if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
                return drawButton(*button, *painter);
            }
            break;
        case PE_IndicatorHeaderArrow:
            if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option)) {
                // The toolkit calls the ascending arrow "down".
                const bool ascending = header->sortIndicator == QStyleOptionHeader::SortDown;
                return drawChevron(*painter, option->rect, palette.color(QPalette::Highlight),
                                   ascending ? Points::Up : Points::Down);
            }
            break;
        case PE_FrameLineEdit:
        case PE_PanelLineEdit:
            if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
                frame != nullptr && frame->lineWidth > 0) {
                return drawField(*option, *painter, QPalette::Base, widget);
            }
            break;
        case PE_Frame:
            if (const auto* area = qobject_cast<const QAbstractScrollArea*>(widget)) {
                return drawAreaEdge(*option, *painter, *area);
            }
            break;
        case PE_FrameFocusRect:
            return drawFocus(*option, *painter);
        case PE_PanelMenu:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
            if (controls::isHighContrast(palette)) {
                drawStrongEdge(*option, *painter);
            }
            return;
        default:
            break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void FlatStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
    const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
    const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option);
    const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element == CE_HeaderSection && header != nullptr) {
        drawHeaderSection(*header, *painter);
    } else if (element == CE_HeaderEmptyArea) {
        QStyleOptionHeader empty;
        static_cast<QStyleOption&>(empty) = *option;
        empty.state = State_Enabled;
        drawHeaderSection(empty, *painter);
    } else if (element == CE_TabBarTabShape && tab != nullptr) {
        drawTab(*tab, *painter);
    } else if (element == CE_ProgressBarGroove) {
        drawBox(*painter, option->rect, option->palette.color(QPalette::Base),
                option->palette.color(QPalette::Active, QPalette::Mid));
    } else if (element == CE_ProgressBarContents && bar != nullptr && bar->maximum > bar->minimum) {
        drawProgress(*bar, *painter);
    } else if (element == CE_PushButtonLabel && button != nullptr &&
               button->features.testFlag(QStyleOptionButton::DefaultButton)) {
        QStyleOptionButton accented = *button;
        const QColor ink = button->palette.color(QPalette::HighlightedText);
        accented.palette.setColor(QPalette::Active, QPalette::ButtonText, ink);
        accented.palette.setColor(QPalette::Inactive, QPalette::ButtonText, ink);
        QProxyStyle::drawControl(element, &accented, painter, widget);
    } else {
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void FlatStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
    const auto* combo =
        control == CC_ComboBox ? qstyleoption_cast<const QStyleOptionComboBox*>(option) : nullptr;
    if (combo == nullptr || !combo->frame) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    drawField(*option, *painter, combo->editable ? QPalette::Base : QPalette::Button, widget);
    drawChevron(*painter,
                subControlRect(CC_ComboBox, option, SC_ComboBoxArrow, widget).adjusted(2, 0, -2, 0),
                option->palette.color(QPalette::ButtonText), Points::Down);
}

QRect FlatStyle::subElementRect(SubElement element, const QStyleOption* option,
                                const QWidget* widget) const {
    QRect rect = QProxyStyle::subElementRect(element, option, widget);
    if (element == SE_LineEditContents) {
        const bool marked = widget != nullptr && controls::isRefused(*widget);
        rect.adjust(steps(0.6), 0, marked ? -lines(1.2) : -steps(0.6), 0);
    } else if (element == SE_HeaderArrow) {
        rect.moveTop(option->rect.top() + (option->rect.height() - rect.height()) / 2);
    }
    return rect;
}

QIcon FlatStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                              const QWidget* widget) const {
    static const std::pair<StandardPixmap, BoxSign> Discs[] = {
        {SP_MessageBoxInformation, {"#1f6fd1", "i"}},
        {SP_MessageBoxQuestion, {"#1f6fd1", "?"}},
        {SP_MessageBoxWarning, {"#d98200", "!"}},
        {SP_MessageBoxCritical, {"#c62828", "\u00d7"}}};
    const auto disc = base::lookUp(Discs, which, {});
    return disc.colour.isValid() ? discIcon(disc)
                                 : QProxyStyle::standardIcon(which, option, widget);
}

int FlatStyle::layoutSpacing(QSizePolicy::ControlType, QSizePolicy::ControlType,
                             Qt::Orientation orientation, const QStyleOption*,
                             const QWidget*) const {
    return orientation == Qt::Horizontal ? steps(1.5) : steps(1.2);
}

int FlatStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
    switch (metric) {
        case PM_LayoutHorizontalSpacing:
            return steps(1.5);
        case PM_LayoutVerticalSpacing:
            return steps(1.2);
        case PM_LayoutLeftMargin:
        case PM_LayoutTopMargin:
        case PM_LayoutRightMargin:
        case PM_LayoutBottomMargin:
            return steps(2.2);
        case PM_HeaderMargin:
            return steps(1.4);
        case PM_HeaderMarkSize:
            return lines(0.6);
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
        case PM_ExclusiveIndicatorWidth:
        case PM_ExclusiveIndicatorHeight:
            return lines(0.85);
        case PM_DefaultFrameWidth:
            return qobject_cast<const QAbstractScrollArea*>(widget) != nullptr
                       ? ringWidth(QApplication::palette())
                       : QProxyStyle::pixelMetric(metric, option, widget);
        case PM_FocusFrameHMargin:
            return 5;
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
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons || hint == SH_Widget_Animation_Duration) {
        return 0;
    }
    if (hint == SH_FormLayoutLabelAlignment) {
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    }
    return QProxyStyle::styleHint(hint, option, widget, result);
}

QSize FlatStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                  const QWidget* widget) const {
    QSize fitted = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
        case CT_PushButton: {
            const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
            const QSize least(lines(4.5), size.height() + lines(0.7));
            // One sign needs no room for words.
            return button != nullptr && button->text.size() == 1 ? QSize(lines(2.2), least.height())
                                                                 : fitted.expandedTo(least);
        }
        case CT_LineEdit:
        case CT_ComboBox:
            return fitted.expandedTo({0, size.height() + lines(0.6)});
        case CT_MenuItem: {
            const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
            const bool hasKey = item != nullptr && item->text.contains('\t');
            return hasKey ? fitted.grownBy({lines(1), 0, 0, 0}) : fitted;
        }
        case CT_ItemViewItem:
            fitted.setHeight(fitted.height() + lines(0.4));
            return fitted;
        default:
            return fitted;
    }
}

}  // namespace forms
