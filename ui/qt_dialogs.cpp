#include "ui/qt_dialogs.h"

#include "ui/alert_sheet.h"
#include "ui/chooser.h"
#include "ui/text.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include <utility>

namespace oxlade {
namespace {

/// Disables the window's content and menu bar while a dialog is open, and closes an open menu.
/// Modality would close them to input alone: assistive technology would show the controls as
/// enabled and could press them. The controls' own enabled flags stay as they are.
class WindowBlock final {
  public:
    /// `window` may be null.
    explicit WindowBlock(QWidget* window)
        : focused_{window == nullptr ? nullptr : window->focusWidget()} {
        while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
        if (window == nullptr) return;
        for (auto* child : window->findChildren<QWidget*>(QString{}, Qt::FindDirectChildrenOnly)) {
            if (child->isWindow() || child->testAttribute(Qt::WA_ForceDisabled)) continue;
            child->setEnabled(false);
            blocked_ << child;
        }
    }
    ~WindowBlock() {
        for (const auto& child : blocked_)
            if (child) child->setEnabled(true);
        // Disabling has taken the focus away.
        if (focused_ && focused_->isEnabled()) focused_->setFocus(Qt::OtherFocusReason);
    }
    WindowBlock(const WindowBlock&) = delete;
    WindowBlock& operator=(const WindowBlock&) = delete;

  private:
    QPointer<QWidget> focused_;
    QList<QPointer<QWidget>> blocked_;
};

} // namespace

QtDialogs::QtDialogs(std::function<QWidget*()> parent)
    : parent_{std::move(parent)}, folder_{QDir::homePath()} {}

bool QtDialogs::runAlert(const Alert& alert) {
    QWidget* window = parent_();
    if (window != nullptr && !window->isVisible()) window = nullptr;
    const WindowBlock block{window};
    return AlertSheet{alert, window}.run();
}

std::optional<std::string> QtDialogs::runOpenPanel(const OpenPanel& panel) {
    const WindowBlock block{parent_()};
    const QString path = chooseFile(parent_(), panel, folder_);
    if (path.isEmpty()) return std::nullopt;
    folder_ = QFileInfo{path}.absolutePath();
    return toUtf8(path);
}

} // namespace oxlade
