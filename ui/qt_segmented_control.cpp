#include "ui/qt_segmented_control.h"

#include "ui/interface_style.h"
#include "ui/palette.h"
#include "ui/text.h"

#include <QPainter>
#include <QRadioButton>

#include <algorithm>

namespace oxlade {
namespace {

/// Only the chosen one is reached by Tab.
class Segment final : public QRadioButton {
  public:
    using QRadioButton::QRadioButton;
    void updateTabStop() { setFocusPolicy(isChecked() ? Qt::StrongFocus : Qt::ClickFocus); }

  protected:
    void focusInEvent(QFocusEvent* event) override {
        QRadioButton::focusInEvent(event); // makes the one with the focus the Tab stop
        updateTabStop();
    }
};

} // namespace

QtSegmentedControl::QtSegmentedControl(const QStringList& titles, int chosen,
                                       const std::function<void()>& action, QWidget* parent)
    : QWidget{parent} {
    for (const QString& title : titles) {
        auto* segment = new Segment{title, this};
        segments_.push_back(segment);
        segment->setFont(interfaceFont(13));
        segment->setChecked(static_cast<int>(segments_.size()) - 1 == chosen);
        segment->updateTabStop();
        connect(segment, &QRadioButton::toggled, segment, &Segment::updateTabStop);
        connect(segment, &QRadioButton::clicked, this, action);
    }
}

int QtSegmentedControl::selectedSegment() const {
    const auto chosen = std::find_if(segments_.begin(), segments_.end(),
                                     [](const auto* segment) { return segment->isChecked(); });
    return chosen == segments_.end() ? -1 : static_cast<int>(chosen - segments_.begin());
}

void QtSegmentedControl::resizeEvent(QResizeEvent*) {
    const int count = static_cast<int>(segments_.size());
    for (int i = 0; i < count; ++i) {
        const int from = width() * i / count, to = width() * (i + 1) / count;
        segments_[static_cast<std::size_t>(i)]->setGeometry(from, 0, to - from, height());
    }
}

void QtSegmentedControl::paintEvent(QPaintEvent*) {
    constexpr double radius = 7;
    QPainter painter{this};
    const QColor ground = palette().color(QPalette::Active, backgroundRole());
    drawPanel(painter, rect(), radius, over(segmentColors(palette()).groove, ground));
}

} // namespace oxlade
