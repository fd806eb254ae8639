#include "ui/segmented_switch.h"

#include "ui/control_drawing.h"
#include "ui/fonts.h"
#include "ui/palette.h"
#include "ui/text_drawing.h"

#include <QPainter>

namespace oxlade {
namespace {

constexpr double troughCorner = 7;
constexpr double thumbCorner = 5;
constexpr int thumbInset = 2;

} // namespace

Segment::Segment(const QString& title, SegmentedSwitch& parent) : QRadioButton{&parent} {
    // Not by the base, which would show itself to screen readers before it is a segment.
    setText(title);
    setFont(interfaceFont(13));
    setFocusPolicy(Qt::StrongFocus);
}

bool Segment::event(QEvent* event) {
    focusRing_.follow(*event);
    return QRadioButton::event(event);
}

void Segment::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    const SwitchColors colors = switchColors(palette());
    const QRectF thumb = rect().adjusted(thumbInset, thumbInset, -thumbInset, -thumbInset);
    if (isChecked())
        drawPanel(painter, thumb, thumbCorner, colors.thumb, over(colors.thumbEdge, colors.thumb));
    if (focusRing_.isShownOn(*this))
        drawFocusRing(painter, thumb.adjusted(1, 1, -1, -1), thumbCorner - 1, palette());
    painter.setFont(interfaceFont(13, isChecked() ? QFont::Medium : QFont::Normal));
    painter.setPen(isChecked() || isDown() ? colors.chosenText : colors.otherText);
    drawLine(painter, rect(), text(), Qt::AlignHCenter);
}

SegmentedSwitch::SegmentedSwitch(const QStringList& titles, int chosen,
                                 const std::function<void()>& action, QWidget* parent)
    : QWidget{parent} {
    for (const QString& title : titles) {
        auto* segment = segments_.emplace_back(new Segment{title, *this});
        connect(segment, &QRadioButton::clicked, this, action);
        connect(segment, &QRadioButton::toggled, this, [this] { update(); });
    }
    if (chosen >= 0 && chosen < titles.size()) segments_[std::size_t(chosen)]->setChecked(true);
}

int SegmentedSwitch::selectedSegment() const {
    for (std::size_t i = 0; i < segments_.size(); ++i)
        if (segments_[i]->isChecked()) return int(i);
    return -1;
}

void SegmentedSwitch::resizeEvent(QResizeEvent*) {
    const int count = int(segments_.size());
    for (int i = 0; i < count; ++i) {
        const int from = width() * i / count, to = width() * (i + 1) / count;
        segments_[std::size_t(i)]->setGeometry(from, 0, to - from, height());
    }
}

void SegmentedSwitch::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(over(switchColors(palette()).trough, groundColor(schemeOf(palette()))));
    painter.drawRoundedRect(rect(), troughCorner, troughCorner);
}

} // namespace oxlade
