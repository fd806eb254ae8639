#include "ui/log_keys.h"

#include <QKeyEvent>
#include <QScrollBar>

#include <optional>

namespace oxlade {
namespace {

std::optional<QAbstractSlider::SliderAction> actionOf(int key) {
    switch (key) {
    case Qt::Key_Up:
        return QAbstractSlider::SliderSingleStepSub;
    case Qt::Key_Down:
        return QAbstractSlider::SliderSingleStepAdd;
    case Qt::Key_PageUp:
        return QAbstractSlider::SliderPageStepSub;
    case Qt::Key_PageDown:
        return QAbstractSlider::SliderPageStepAdd;
    case Qt::Key_Home:
        return QAbstractSlider::SliderToMinimum;
    case Qt::Key_End:
        return QAbstractSlider::SliderToMaximum;
    default:
        return std::nullopt;
    }
}

} // namespace

bool scrollByKey(QScrollBar& bar, const QKeyEvent& event) {
    const auto others = Qt::ShiftModifier | Qt::AltModifier | Qt::MetaModifier;
    const auto action = actionOf(event.key());
    if (!action || (event.modifiers() & others)) return false;
    bar.triggerAction(*action);
    return true;
}

bool extendsSelection(const QKeyEvent& event) {
    const bool sideways = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right;
    return (event.modifiers() & Qt::ShiftModifier) && (sideways || actionOf(event.key()));
}

} // namespace oxlade
