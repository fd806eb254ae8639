#include "ui/slim_scroll_bar.h"

#include "ui/palette.h"

#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionSlider>

#include <algorithm>

namespace oxlade {
namespace {

constexpr int thickness = 6;
constexpr int margin = 5; ///< from the thumb to the edges
constexpr int shortest = 24;

/// The parts of the bar for drawing and for the mouse: a thumb, and the trough before
/// and after it.
class ThumbStyle final : public QProxyStyle {
  public:
    ThumbStyle() : QProxyStyle{QStringLiteral("fusion")} {}

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override {
        const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        if (control != CC_ScrollBar || bar == nullptr)
            return QProxyStyle::subControlRect(control, option, part, widget);
        const QRect trough = bar->rect.adjusted(0, margin, 0, -margin);
        const QRect thumb = thumbOf(*bar, trough);
        switch (part) {
        case SC_ScrollBarGroove:
            return trough;
        case SC_ScrollBarSlider:
            return thumb;
        case SC_ScrollBarSubPage:
            return {trough.topLeft(), QSize{trough.width(), thumb.top() - trough.top()}};
        case SC_ScrollBarAddPage:
            return {thumb.left(), thumb.bottom() + 1, trough.width(),
                    trough.bottom() - thumb.bottom()};
        default:
            return {};
        }
    }

  private:
    static QRect thumbOf(const QStyleOptionSlider& bar, const QRect& trough) {
        const double range = double(bar.maximum) - bar.minimum;
        const double share = bar.pageStep / std::max(1.0, range + bar.pageStep);
        const int length = range <= 0 ? trough.height()
                                      : std::max(std::min(shortest, trough.height()),
                                                 int(trough.height() * share));
        const int start = sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                  trough.height() - length, bar.upsideDown);
        return {trough.left(), trough.top() + start, trough.width(), length};
    }
};

} // namespace

SlimScrollBar::SlimScrollBar(QWidget* parent) : QScrollBar{Qt::Vertical, parent} {
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    // The toolkit's own menu would speak another language than the window.
    setContextMenuPolicy(Qt::PreventContextMenu);
    auto* style = new ThumbStyle;
    style->setParent(this);
    setStyle(style);
}

QSize SlimScrollBar::sizeHint() const {
    return {margin + thickness + margin, QScrollBar::sizeHint().height()};
}

QRect SlimScrollBar::thumb() const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect slider =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    return {width() - margin - thickness, slider.top(), thickness, slider.height()};
}

void SlimScrollBar::paintEvent(QPaintEvent*) {
    if (maximum() <= minimum()) return;
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const bool awake = isSliderDown() || underMouse();
    painter.setBrush(color(
        awake ? SemanticColor::secondaryLabelColor : SemanticColor::tertiaryLabelColor, palette()));
    painter.drawRoundedRect(thumb(), thickness / 2.0, thickness / 2.0);
}

} // namespace oxlade
