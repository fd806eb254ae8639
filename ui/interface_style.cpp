#include "ui/interface_style.h"

#include <QApplication>
#include <QIcon>
#include <QMenuBar>
#include <QProxyStyle>

namespace oxlade {
namespace {

class InterfaceStyle final : public QProxyStyle {
  public:
    using QProxyStyle::QProxyStyle;

    /// Every menu bar asks for the icon of the button that stands for menus without
    /// room. Ours have room, and the first icon of a program makes the toolkit load all
    /// of its picture formats, which the first frame would wait for.
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                       const QWidget* widget) const override {
        if (icon == SP_ToolBarHorizontalExtensionButton &&
            qobject_cast<const QMenuBar*>(widget) != nullptr)
            return {};
        return QProxyStyle::standardIcon(icon, option, widget);
    }
};

} // namespace

void useInterfaceStyle() {
    QStyle* style = QApplication::style();
    if (dynamic_cast<InterfaceStyle*>(style) == nullptr)
        QApplication::setStyle(new InterfaceStyle{style}); // which takes it over
}

} // namespace oxlade
