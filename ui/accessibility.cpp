#include "ui/accessibility.h"

#include "ui/labels.h"
#include "ui/log_access.h"
#include "ui/log_text_view.h"
#include "ui/segmented_switch.h"
#include "ui/sprites/wait_girl_view.h"
#include "ui/status_views.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace oxlade {
namespace {

/// A text: its name is what it shows, whole.
class TextAccess final : public QAccessibleWidget {
  public:
    explicit TextAccess(TextField& field)
        : QAccessibleWidget{&field, QAccessible::StaticText}, field_{field} {}

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name) return field_.text();
        const auto* file = dynamic_cast<const FileTextLabel*>(&field_);
        if (kind == QAccessible::Description && file != nullptr) return file->plainToolTip();
        return QAccessibleWidget::text(kind);
    }

  private:
    TextField& field_;
};

class ProgressAccess final : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    explicit ProgressAccess(ProgressBar& bar)
        : QAccessibleWidget{&bar, QAccessible::ProgressBar}, bar_{bar} {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    QAccessible::State state() const override {
        QAccessible::State result = QAccessibleWidget::state();
        result.readOnly = true;
        return result;
    }
    QVariant currentValue() const override { return bar_.doubleValue(); }
    void setCurrentValue(const QVariant&) override {}
    QVariant maximumValue() const override { return ProgressBar::maximum; }
    QVariant minimumValue() const override { return ProgressBar::minimum; }
    QVariant minimumStepSize() const override { return 0.0; }

  private:
    ProgressBar& bar_;
};

/// A segment: pressing it chooses it, as a click does.
class SegmentAccess final : public QAccessibleWidget {
  public:
    explicit SegmentAccess(Segment& segment)
        : QAccessibleWidget{&segment, QAccessible::RadioButton}, segment_{segment} {}

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name) return segment_.text();
        return QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State result = QAccessibleWidget::state();
        result.checkable = true;
        result.checked = segment_.isChecked();
        return result;
    }
    QStringList actionNames() const override {
        return QStringList{toggleAction(), pressAction()} + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& action) override {
        if (action == toggleAction() || action == pressAction())
            segment_.click();
        else
            QAccessibleWidget::doAction(action);
    }

  private:
    Segment& segment_;
};

bool isDecoration(const QObject& object) {
    return dynamic_cast<const WaitGirlView*>(&object) != nullptr ||
           dynamic_cast<const StatusLight*>(&object) != nullptr;
}

bool isGroup(const QObject& object) {
    return dynamic_cast<const CardView*>(&object) != nullptr ||
           dynamic_cast<const SegmentedSwitch*>(&object) != nullptr;
}

QAccessibleInterface* interfaceFor(const QString&, QObject* object) {
    if (auto* field = dynamic_cast<TextField*>(object)) return new TextAccess{*field};
    if (auto* bar = dynamic_cast<ProgressBar*>(object)) return new ProgressAccess{*bar};
    if (auto* log = dynamic_cast<LogTextView*>(object)) return makeLogAccess(*log);
    if (auto* segment = dynamic_cast<Segment*>(object)) return new SegmentAccess{*segment};
    auto* widget = qobject_cast<QWidget*>(object);
    if (widget == nullptr) return nullptr;
    // A filler is what screen readers pass over in silence.
    if (isDecoration(*object)) return new QAccessibleWidget{widget, QAccessible::Whitespace};
    if (isGroup(*object)) return new QAccessibleWidget{widget, QAccessible::Grouping};
    return nullptr;
}

} // namespace

void installAccessibility() { QAccessible::installFactory(interfaceFor); }

} // namespace oxlade
