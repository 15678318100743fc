#include "ChromeStyle.h"
#include "Appearance.h"
#include "ChromeColors.h"
#include "ChromePainting.h"
#include "ComboItemDelegate.h"
#include <ui/system/WindowSystem.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOption>
#include <QToolButton>

using namespace Qt::StringLiterals;
using ChromePainting::Role;
using ChromePainting::roleOf;

namespace
{
constexpr int PushButtonHeight = 30;
constexpr int TabHeight = 28;
constexpr int PushButtonPadding = 16;
constexpr int TabPadding = 14;
constexpr int LineEditHeight = 30;
constexpr int ComboBoxHeight = 28;
constexpr int ComboBoxExtraWidth = 40;
constexpr int PillHeight = 22;
constexpr int PillExtraWidth = 30;
constexpr QSize MenuButtonSize{26, 22};
constexpr int LineEditMargin = 7;

template <class Option>
const Option *as(const QStyleOption *option)
{
    return qstyleoption_cast<const Option *>(option);
}

/// A scene gives text sizes relative to the desktop's font, as the dynamic property `relativeSize`, and says
/// of quiet texts that their role is "secondary".
void applySceneText(QWidget &widget)
{
    if (widget.property("role") == u"secondary"_s)
        widget.setForegroundRole(QPalette::PlaceholderText);
    const QVariant relativeSize = widget.property("relativeSize");
    if (!relativeSize.isValid())
        return;
    const QFont base = QApplication::font(&widget);
    QFont font = widget.font();
    if (base.pointSizeF() > 0)
        font.setPointSizeF(base.pointSizeF() * relativeSize.toDouble());
    else // a desktop that gives its font in pixels
        font.setPixelSize(qMax(1, qRound(base.pixelSize() * relativeSize.toDouble())));
    widget.setFont(font);
}
} // namespace

ChromeStyle::ChromeStyle() : QProxyStyle(QStyleFactory::create(u"fusion"_s)) {}

void ChromeStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    applySceneText(*widget);
    if (qobject_cast<QAbstractButton *>(widget) || qobject_cast<QComboBox *>(widget) ||
        qobject_cast<QScrollBar *>(widget))
        widget->setAttribute(Qt::WA_Hover);
    else if (qobject_cast<QMenu *>(widget))
        widget->setAttribute(Qt::WA_TranslucentBackground, WindowSystem::shared().isComposited());
    if (auto *combo = qobject_cast<QComboBox *>(widget)) {
        // Set it now, because the list's height is computed before the list is shown.
        if (combo->itemDelegate()->inherits("QComboBoxDelegate"))
            combo->setItemDelegate(new ComboItemDelegate(combo));
    }
}

void ChromeStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                const QWidget *widget) const
{
    switch (element) {
    case PE_PanelLineEdit:
        if (const auto *frame = as<QStyleOptionFrame>(option))
            ChromePainting::drawLineEdit(*painter, *frame);
        return;
    case PE_FrameLineEdit:
    case PE_PanelButtonTool:
    case PE_FrameButtonTool:
    case PE_FrameFocusRect: // every control shows the focus in its own frame
    case PE_FrameMenu:
        return;
    case PE_IndicatorCheckBox:
        return ChromePainting::drawCheckBoxIndicator(*painter, *option);
    case PE_PanelMenu:
        return ChromePainting::drawMenuPanel(*painter, *option,
                                             widget && widget->testAttribute(Qt::WA_TranslucentBackground));
    case PE_Frame:
        if (roleOf(widget) == Role::Box)
            return ChromePainting::drawBox(*painter, *option);
        return ChromePainting::drawPlainFrame(*painter, *option);
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void ChromeStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    if (const auto *button = as<QStyleOptionButton>(option)) {
        if (element == CE_PushButtonBevel)
            return ChromePainting::drawPushButton(*painter, *button, roleOf(widget));
        if (element == CE_PushButtonLabel)
            return ChromePainting::drawPushButtonLabel(*painter, *button, roleOf(widget), *proxy());
    }
    if (const auto *combo = as<QStyleOptionComboBox>(option); combo && element == CE_ComboBoxLabel)
        return ChromePainting::drawComboBoxLabel(*painter, *combo, roleOf(widget), *proxy());
    if (const auto *item = as<QStyleOptionMenuItem>(option); item && element == CE_MenuItem)
        return ChromePainting::drawMenuItem(*painter, *item, *proxy());
    if (element == CE_HeaderSection || element == CE_HeaderEmptyArea)
        return ChromePainting::drawHeaderGround(*painter, *option);
    if (element == CE_Splitter)
        return;
    QProxyStyle::drawControl(element, option, painter, widget);
}

void ChromeStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                     QPainter *painter, const QWidget *widget) const
{
    if (const auto *combo = as<QStyleOptionComboBox>(option))
        return ChromePainting::drawComboBox(*painter, *combo, roleOf(widget));
    if (const auto *button = as<QStyleOptionToolButton>(option))
        return ChromePainting::drawToolButton(*painter, *button, roleOf(widget), *proxy());
    if (const auto *slider = as<QStyleOptionSlider>(option); slider && control == CC_ScrollBar)
        return ChromePainting::drawScrollBar(*painter, *slider, ChromePainting::scrollBarSlider(*slider));
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect ChromeStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                                  const QWidget *widget) const
{
    if (const auto *combo = as<QStyleOptionComboBox>(option); combo && part == SC_ComboBoxEditField)
        return ChromePainting::comboBoxTextRect(*combo, roleOf(widget));
    const auto *slider = as<QStyleOptionSlider>(option);
    if (!slider || control != CC_ScrollBar)
        return QProxyStyle::subControlRect(control, option, part, widget);
    const QRect handle = ChromePainting::scrollBarSlider(*slider);
    const QRect &bar = slider->rect;
    const bool horizontal = slider->orientation == Qt::Horizontal;
    switch (part) {
    case SC_ScrollBarSlider:
        return handle;
    case SC_ScrollBarGroove:
        return bar;
    case SC_ScrollBarSubPage:
        return horizontal ? QRect(bar.left(), bar.top(), handle.left() - bar.left(), bar.height())
                          : QRect(bar.left(), bar.top(), bar.width(), handle.top() - bar.top());
    case SC_ScrollBarAddPage:
        return horizontal
                   ? QRect(handle.right() + 1, bar.top(), bar.right() - handle.right(), bar.height())
                   : QRect(bar.left(), handle.bottom() + 1, bar.width(), bar.bottom() - handle.bottom());
    default:
        return {};
    }
}

QRect ChromeStyle::subElementRect(SubElement element, const QStyleOption *option, const QWidget *widget) const
{
    if (element == SE_LineEditContents) {
        const auto *frame = as<QStyleOptionFrame>(option);
        const int margin = frame && frame->lineWidth > 0 ? LineEditMargin : 0;
        return option->rect.adjusted(margin, 0, -margin, 0);
    }
    return QProxyStyle::subElementRect(element, option, widget);
}

QSize ChromeStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                    const QWidget *widget) const
{
    const Role role = roleOf(widget);
    switch (type) {
    case CT_PushButton:
        if (role == Role::Tab)
            return {contents.width() + 2 * TabPadding, qMax(TabHeight, contents.height())};
        return {contents.width() + 2 * PushButtonPadding, qMax(PushButtonHeight, contents.height())};
    case CT_ComboBox:
        if (role == Role::Pill)
            return {contents.width() + PillExtraWidth, qMax(PillHeight, contents.height())};
        return {contents.width() + ComboBoxExtraWidth, qMax(ComboBoxHeight, contents.height() + 8)};
    case CT_LineEdit:
        return {contents.width() + 2 * LineEditMargin, qMax(LineEditHeight, contents.height() + 8)};
    case CT_ToolButton:
        if (role == Role::Menu)
            return MenuButtonSize;
        return QProxyStyle::sizeFromContents(type, option, contents, widget);
    case CT_MenuItem:
        if (const auto *item = as<QStyleOptionMenuItem>(option))
            return ChromePainting::menuItemSize(*item, contents);
        return contents;
    default:
        return QProxyStyle::sizeFromContents(type, option, contents, widget);
    }
}

int ChromeStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    switch (metric) {
    case PM_ScrollBarExtent:
    case PM_ScrollView_ScrollBarOverlap: // it lies over the content, which keeps the whole width
        return 10;
    case PM_ScrollBarSliderMin:
        return 28;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
        return 16;
    case PM_CheckBoxLabelSpacing:
        return 8;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_MenuHMargin:
    case PM_MenuPanelWidth:
        return 0;
    case PM_MenuVMargin:
        return 5;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int ChromeStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                           QStyleHintReturn *result) const
{
    switch (hint) {
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_EtchDisabledText:
    case SH_ComboBox_Popup:
    case SH_Menu_FlashTriggeredItem:
        return 0;
    case SH_Menu_MouseTracking:
    case SH_ScrollBar_LeftClickAbsolutePosition:
        return 1;
    case SH_Widget_Animation_Duration:
        if (Appearance::shared().prefersReducedMotion())
            return 0;
        break;
    default:
        break;
    }
    return QProxyStyle::styleHint(hint, option, widget, result);
}

QIcon ChromeStyle::standardIcon(StandardPixmap icon, const QStyleOption *option, const QWidget *widget) const
{
    const QIcon own = ChromePainting::dialogIcon(icon);
    return own.isNull() ? QProxyStyle::standardIcon(icon, option, widget) : own;
}
