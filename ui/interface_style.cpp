#include "ui/interface_style.h"

#include "ui/palette.h"
#include "ui/text.h"

#include <QApplication>
#include <QFocusEvent>
#include <QIcon>
#include <QMenuBar>
#include <QPainter>
#include <QProxyStyle>
#include <QScrollBar>
#include <QStyleOption>

#include <algorithm>

namespace oxlade {
namespace {

constexpr double buttonRadius = 6;
constexpr int buttonMargin = 4; ///< from the widget's edges to the shape
constexpr double thumbRadius = 5;
constexpr int thumbInset = 2;
constexpr int scrollThickness = 6, scrollMargin = 5, shortestThumb = 24;
constexpr int menuPadding = 14, menuInset = 4, menuRowHeight = 24, menuSeparatorHeight = 9;
/// A multiple of 4: what is below starts on a whole device pixel at 1.25, 1.5 and 1.75, too.
constexpr int menuBarHeight = 24;
constexpr int checkColumn = 16, shortcutGap = 28;

/// Whether the focus was last moved by a key; neither if only another window was active.
bool focusByKeyboard = false;

void followFocus(const QFocusEvent& event) {
    const Qt::FocusReason reason = event.reason();
    if (reason == Qt::MouseFocusReason) focusByKeyboard = false;
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
        reason == Qt::ShortcutFocusReason)
        focusByKeyboard = true;
}

bool has(const QStyleOption& option, QStyle::StateFlag flag) { return option.state & flag; }

bool showsFocus(const QStyleOption& option) {
    return focusByKeyboard && has(option, QStyle::State_HasFocus);
}

/// The text without the marks of mnemonics.
QString withoutMnemonics(const QString& text) {
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&' && i + 1 < text.size()) ++i;
        result += text[i];
    }
    return result;
}

QRect buttonShape(const QRect& widget) {
    const int above = widget.height() < 40 ? buttonMargin - 1 : buttonMargin;
    return widget.adjusted(buttonMargin, above, -buttonMargin, -above);
}

/// A control under the pointer that is not pressed looks raised.
bool isLifted(const QStyleOption& option) {
    return has(option, QStyle::State_Enabled) && has(option, QStyle::State_MouseOver) &&
           !has(option, QStyle::State_Sunken);
}

void drawLink(QPainter& painter, const QStyleOptionButton& link) {
    painter.setPen(color(SemanticColor::linkColor, link.palette));
    QFont font = painter.font();
    font.setUnderline(has(link, QStyle::State_Sunken) || isLifted(link));
    painter.setFont(font);
    drawLine(painter, link.rect, withoutMnemonics(link.text), Qt::AlignLeft);
}

void drawButton(QPainter& painter, const QStyleOptionButton& button, const QColor& ground) {
    const bool filled = button.features & QStyleOptionButton::DefaultButton;
    const ButtonColors colors = buttonColors(
        button.palette, {has(button, QStyle::State_Enabled), has(button, QStyle::State_MouseOver),
                         has(button, QStyle::State_Sunken), filled});
    const QRect shape = buttonShape(button.rect);
    const QColor fill = over(colors.fill, ground);
    if (isLifted(button))
        drawPanel(painter, shape.translated(0, 1), buttonRadius, shadowColor(ground));
    drawPanel(painter, shape, buttonRadius, fill, over(colors.edge, fill));
    if (showsFocus(button)) drawFocusRing(painter, shape, buttonRadius, button.palette);
    painter.setPen(colors.text);
    drawLine(painter, shape, withoutMnemonics(button.text), Qt::AlignHCenter);
}

void drawSegment(QPainter& painter, const QStyleOptionButton& segment) {
    const SegmentColors colors = segmentColors(segment.palette);
    const bool chosen = has(segment, QStyle::State_On);
    const QRectF thumb = segment.rect.adjusted(thumbInset, thumbInset, -thumbInset, -thumbInset);
    if (chosen)
        drawPanel(painter, thumb, thumbRadius, colors.thumb, over(colors.thumbEdge, colors.thumb));
    else if (isLifted(segment))
        drawPanel(painter, thumb, thumbRadius, colors.liftedThumb);
    if (showsFocus(segment))
        drawFocusRing(painter, thumb.adjusted(1, 1, -1, -1), thumbRadius - 1, segment.palette);
    QFont font = painter.font();
    font.setWeight(chosen ? QFont::Medium : QFont::Normal);
    painter.setFont(font);
    const bool strong = chosen || has(segment, QStyle::State_Sunken) || isLifted(segment);
    painter.setPen(strong ? colors.chosenText : colors.otherText);
    drawLine(painter, segment.rect, segment.text, Qt::AlignHCenter);
}

/// A scroll bar without arrow buttons: its thumb runs from one end of the groove to the other.
class ScrollBarParts {
  public:
    explicit ScrollBarParts(const QStyleOptionSlider& bar)
        : bar_{bar}, length_{(isHorizontal() ? bar.rect.width() : bar.rect.height()) -
                             2 * scrollMargin} {
        const double range = static_cast<double>(bar.maximum) - bar.minimum;
        const double share = bar.pageStep / std::max(1.0, range + bar.pageStep);
        thumbLength_ = range <= 0 ? length_
                                  : std::max(std::min(shortestThumb, length_),
                                             static_cast<int>(length_ * share));
        thumbStart_ = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                      length_ - thumbLength_, bar.upsideDown);
    }
    QRect part(QStyle::SubControl part) const {
        const int thumbEnd = thumbStart_ + thumbLength_;
        switch (part) {
        case QStyle::SC_ScrollBarGroove:
            return along(0, length_);
        case QStyle::SC_ScrollBarSlider:
            return along(thumbStart_, thumbEnd);
        case QStyle::SC_ScrollBarSubPage:
            return along(0, thumbStart_);
        case QStyle::SC_ScrollBarAddPage:
            return along(thumbEnd, length_);
        default:
            return {};
        }
    }
    void draw(QPainter& painter) const {
        if (bar_.maximum <= bar_.minimum) return;
        const bool awake = has(bar_, QStyle::State_MouseOver) || has(bar_, QStyle::State_Sunken);
        const QRectF thumb = part(QStyle::SC_ScrollBarSlider);
        const QRectF shown = isHorizontal() ? thumb.adjusted(0, scrollMargin, 0, -scrollMargin)
                                            : thumb.adjusted(scrollMargin, 0, -scrollMargin, 0);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(
            color(awake ? SemanticColor::secondaryLabelColor : SemanticColor::tertiaryLabelColor,
                  bar_.palette));
        painter.drawRoundedRect(shown, scrollThickness / 2.0, scrollThickness / 2.0);
    }

  private:
    bool isHorizontal() const { return bar_.orientation == Qt::Horizontal; }
    QRect along(int from, int to) const {
        const QRect& all = bar_.rect;
        if (isHorizontal())
            return {all.left() + scrollMargin + from, all.top(), to - from, all.height()};
        return {all.left(), all.top() + scrollMargin + from, all.width(), to - from};
    }

    const QStyleOptionSlider& bar_;
    int length_, thumbLength_ = 0, thumbStart_ = 0;
};

void drawMenuBarItem(QPainter& painter, const QStyleOptionMenuItem& item, const QStyle& style) {
    const bool chosen = has(item, QStyle::State_Selected);
    if (chosen) painter.fillRect(item.rect, item.palette.highlight());
    style.drawItemText(&painter, item.rect,
                       Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine, item.palette,
                       has(item, QStyle::State_Enabled), item.text,
                       chosen ? QPalette::HighlightedText : QPalette::WindowText);
}

/// A menu or a tool tip.
void drawPopup(QPainter& painter, const QRect& rect, const QColor& fill, const QPalette& palette) {
    painter.fillRect(rect, popupEdgeColor(fill, palette));
    painter.fillRect(rect.adjusted(1, 1, -1, -1), fill);
}

void drawMenuItem(QPainter& painter, const QStyleOptionMenuItem& item) {
    const QRect row = item.rect.adjusted(menuInset, 0, -menuInset, 0);
    if (item.menuItemType == QStyleOptionMenuItem::Separator) {
        painter.fillRect(row.left(), row.center().y(), row.width(), 1,
                         color(SemanticColor::separatorColor, item.palette));
        return;
    }
    const bool enabled = has(item, QStyle::State_Enabled);
    const bool chosen = enabled && has(item, QStyle::State_Selected);
    if (chosen) drawPanel(painter, row, buttonRadius - 2, item.palette.color(QPalette::Highlight));
    const QColor text =
        item.palette.color(enabled ? QPalette::Normal : QPalette::Disabled,
                           chosen ? QPalette::HighlightedText : QPalette::WindowText);
    painter.setPen(text);
    painter.setFont(item.font);
    QRect place = item.rect.adjusted(menuPadding, 0, -menuPadding, 0);
    if (item.menuHasCheckableItems) {
        if (item.checked) drawLine(painter, place, QStringLiteral("\u2713"), Qt::AlignLeft);
        place.adjust(checkColumn, 0, 0, 0);
    }
    const QStringList parts = withoutMnemonics(item.text).split(u'\t');
    drawLine(painter, place, parts.first(), Qt::AlignLeft);
    if (enabled && !chosen) painter.setPen(color(SemanticColor::secondaryLabelColor, item.palette));
    if (parts.size() > 1) drawLine(painter, place, parts.last(), Qt::AlignRight);
    if (item.menuItemType == QStyleOptionMenuItem::SubMenu)
        drawLine(painter, place, QStringLiteral("\u203A"), Qt::AlignRight);
}

QSize menuItemSize(const QStyleOptionMenuItem& item, const QSize& text) {
    if (item.menuItemType == QStyleOptionMenuItem::Separator) return {1, menuSeparatorHeight};
    const bool hasShortcut = item.text.contains(u'\t');
    return {text.width() + 2 * menuPadding + (hasShortcut ? shortcutGap : 0) +
                (item.menuHasCheckableItems ? checkColumn : 0),
            std::max(menuRowHeight, text.height() + 6)};
}

class InterfaceStyle final : public QProxyStyle {
  public:
    InterfaceStyle() : QProxyStyle{QStringLiteral("fusion")} {}

    void polish(QWidget* widget) override {
        QProxyStyle::polish(widget);
        if (widget->focusPolicy() != Qt::NoFocus) widget->installEventFilter(this);
        // A scroll bar shows what is below it.
        if (qobject_cast<QScrollBar*>(widget) != nullptr)
            widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
    }
    using QProxyStyle::polish;
    void unpolish(QWidget* widget) override {
        widget->removeEventFilter(this);
        QProxyStyle::unpolish(widget);
    }
    using QProxyStyle::unpolish;

    bool eventFilter(QObject* watched, QEvent* event) override {
        // A dialog that is shown sends such an event without moving the focus.
        if (event->type() == QEvent::FocusIn && static_cast<const QWidget*>(watched)->hasFocus())
            followFocus(static_cast<const QFocusEvent&>(*event));
        return QProxyStyle::eventFilter(watched, event);
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (element == CE_PushButton && button != nullptr) {
            if (button->features & QStyleOptionButton::Flat) return drawLink(*painter, *button);
            return drawButton(*painter, *button, groundOf(*button, widget));
        }
        if (element == CE_RadioButton && button != nullptr) return drawSegment(*painter, *button);
        if (element == CE_MenuBarItem && item != nullptr)
            return drawMenuBarItem(*painter, *item, *this);
        if (element == CE_MenuItem && item != nullptr) return drawMenuItem(*painter, *item);
        if (element == CE_MenuBarEmptyArea || element == CE_MenuEmptyArea) return;
        QProxyStyle::drawControl(element, option, painter, widget);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        const QPalette& palette = option->palette;
        switch (element) {
        case PE_PanelMenu:
            return drawPopup(*painter, option->rect, palette.color(QPalette::Button), palette);
        case PE_PanelTipLabel:
            return drawPopup(*painter, option->rect, palette.color(QPalette::ToolTipBase), palette);
        case PE_FrameMenu: // part of PE_PanelMenu
            return;
        case PE_PanelMenuBar: // one line for the whole bar, below its items
            return painter->fillRect(option->rect.adjusted(0, option->rect.height() - 1, 0, 0),
                                     color(SemanticColor::separatorColor, palette));
        default:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
        }
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override {
        const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
        if (control == CC_ScrollBar && slider != nullptr)
            return ScrollBarParts{*slider}.draw(*painter);
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override {
        const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
        if (control == CC_ScrollBar && slider != nullptr) return ScrollBarParts{*slider}.part(part);
        return QProxyStyle::subControlRect(control, option, part, widget);
    }

    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget) const override {
        if (element == SE_PushButtonContents) return buttonShape(option->rect);
        if (element == SE_RadioButtonClickRect) return option->rect;
        return QProxyStyle::subElementRect(element, option, widget);
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override {
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        if (type == CT_PushButton && button != nullptr) {
            if (button->features & QStyleOptionButton::Flat) return contents;
            constexpr int leastWidth = 96, padding = 18, height = 32;
            return {std::max(leastWidth, contents.width() + 2 * (padding + buttonMargin)), height};
        }
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (type == CT_MenuItem && item != nullptr) return menuItemSize(*item, contents);
        if (type == CT_MenuBarItem)
            return {QProxyStyle::sizeFromContents(type, option, contents, widget).width(),
                    menuBarHeight};
        if (type == CT_MenuBar) // less what PM_MenuBarPanelWidth adds
            return QProxyStyle::sizeFromContents(type, option, contents, widget) - QSize{0, 1};
        return QProxyStyle::sizeFromContents(type, option, contents, widget);
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
        switch (metric) {
        case PM_ScrollBarExtent:
            return scrollMargin + scrollThickness + scrollMargin;
        case PM_MenuBarPanelWidth: // only then is PE_PanelMenuBar drawn
            return 1;
        case PM_MenuBarHMargin:
        case PM_MenuBarVMargin: // takes back the room that the panel's width adds
            return -1;
        case PM_MenuVMargin:
            return 4;
        case PM_ToolTipLabelFrameWidth:
            return 6;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override {
        switch (hint) {
        case SH_ComboBox_Popup: // a list, not a menu: its items have icons
        case SH_DialogButtonBox_ButtonsHaveIcons:
            return 0;
        case SH_ToolTipLabel_Opacity:
            return 255;
        default:
            return QProxyStyle::styleHint(hint, option, widget, result);
        }
    }

    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                       const QWidget* widget) const override {
        // For the button that replaces menus without room. Every menu bar asks for it, and the
        // first icon of a program makes Qt load all image formats: too slow for the first
        // frame. This window has room for its menus.
        if (icon == SP_ToolBarHorizontalExtensionButton &&
            qobject_cast<const QMenuBar*>(widget) != nullptr)
            return {};
        return QProxyStyle::standardIcon(icon, option, widget);
    }

  private:
    /// The opaque colour below a control.
    static QColor groundOf(const QStyleOption& option, const QWidget* widget) {
        const QWidget* parent = widget == nullptr ? nullptr : widget->parentWidget();
        return option.palette.color(QPalette::Active, parent == nullptr ? QPalette::Window
                                                                        : parent->backgroundRole());
    }
};

} // namespace

void useInterfaceStyle() {
    if (dynamic_cast<InterfaceStyle*>(QApplication::style()) == nullptr)
        QApplication::setStyle(new InterfaceStyle); // takes ownership
}

void drawPanel(QPainter& painter, const QRectF& frame, double radius, const QColor& fill,
               const QColor& edge) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(frame, radius, radius);
    if (!edge.isValid()) return;
    painter.setPen(QPen{edge, 1});
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
}

void drawFocusRing(QPainter& painter, const QRectF& shape, double radius, const QPalette& palette) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen{markColor(palette), 2});
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(shape.adjusted(-2, -2, 2, 2), radius + 2, radius + 2);
}

bool showsKeyboardFocus(const QWidget& widget) { return focusByKeyboard && widget.hasFocus(); }

} // namespace oxlade
