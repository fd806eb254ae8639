#include "ui/attention.h"

#include <QApplication>
#include <QWidget>

#ifdef OXLADE_XDG_ACTIVATION

#include <QSocketNotifier>
#include <QWindow>

#include <memory>
#include <string_view>
#include <wayland-client.h>
#include <xdg-activation-v1.h>

namespace oxlade {
namespace {

template <auto destroy>
struct Destroy final {
    template <class Object>
    void operator()(Object* object) const {
        destroy(object);
    }
};
template <class Object, auto destroy>
using Owned = std::unique_ptr<Object, Destroy<destroy>>;

/// Requests a token and activates the window with it. Qt 6.4 requests tokens only while a window
/// of the program has the focus, so this uses a connection of its own. Deletes itself, at the
/// latest with `widget`.
class ActivationRequest final : public QObject {
  public:
    explicit ActivationRequest(QWidget* widget) : QObject{widget}, widget_{widget} {
        if (display_)
            listGlobals();
        else
            deleteLater();
    }

  private:
    void listGlobals() {
        registry_.reset(wl_display_get_registry(display_.get()));
        static constexpr wl_registry_listener globals{bindActivation, [](auto...) {}};
        wl_registry_add_listener(registry_.get(), &globals, this);
        allListed_.reset(wl_display_sync(display_.get()));
        static constexpr wl_callback_listener allListed{endUnlessBound};
        wl_callback_add_listener(allListed_.get(), &allListed, this);
        wl_display_flush(display_.get());
        connect(&incoming_, &QSocketNotifier::activated, this, &ActivationRequest::read);
        incoming_.setSocket(wl_display_get_fd(display_.get()));
        incoming_.setEnabled(true);
    }
    static void bindActivation(void* self, wl_registry* registry, uint32_t name,
                               const char* interface, uint32_t /*version*/) {
        if (std::string_view{interface} != xdg_activation_v1_interface.name) return;
        auto* request = static_cast<ActivationRequest*>(self);
        request->activation_.reset(static_cast<xdg_activation_v1*>(
            wl_registry_bind(registry, name, &xdg_activation_v1_interface, 1)));
        request->requestToken();
    }
    static void endUnlessBound(void* self, wl_callback* /*callback*/, uint32_t /*data*/) {
        auto* request = static_cast<ActivationRequest*>(self);
        if (!request->activation_) request->deleteLater();
    }

    void requestToken() {
        token_.reset(xdg_activation_v1_get_activation_token(activation_.get()));
        static constexpr xdg_activation_token_v1_listener done{activate};
        xdg_activation_token_v1_add_listener(token_.get(), &done, this);
        xdg_activation_token_v1_commit(token_.get());
    }
    static void activate(void* self, xdg_activation_token_v1* /*token*/, const char* text) {
        auto* request = static_cast<ActivationRequest*>(self);
        request->deleteLater();
        QWindow* window = request->widget_->window()->windowHandle();
        if (window->isActive()) return;
        constexpr const char* variable = "XDG_ACTIVATION_TOKEN";
        qputenv(variable, text); // Qt looks for it there
        window->requestActivate();
        qunsetenv(variable);
    }

    /// Never blocks.
    void read() {
        if (wl_display_prepare_read(display_.get()) == 0) wl_display_read_events(display_.get());
        wl_display_dispatch_pending(display_.get());
        wl_display_flush(display_.get());
        if (wl_display_get_error(display_.get()) == 0) return;
        incoming_.setEnabled(false);
        deleteLater();
    }

    QWidget* const widget_;
    // Destroyed from the last to the first: the display outlives its objects.
    const Owned<wl_display, wl_display_disconnect> display_{wl_display_connect(nullptr)};
    Owned<wl_registry, wl_registry_destroy> registry_;
    Owned<wl_callback, wl_callback_destroy> allListed_;
    Owned<xdg_activation_v1, xdg_activation_v1_destroy> activation_;
    Owned<xdg_activation_token_v1, xdg_activation_token_v1_destroy> token_;
    QSocketNotifier incoming_{QSocketNotifier::Read};
};

} // namespace

void askForAttention(QWidget* widget) {
    if (!QGuiApplication::platformName().startsWith(QLatin1String{"wayland"}))
        QApplication::alert(widget->window());
    else if (!widget->isActiveWindow())
        new ActivationRequest{widget};
}

} // namespace oxlade

#else

namespace oxlade {

void askForAttention(QWidget* widget) { QApplication::alert(widget->window()); }

} // namespace oxlade

#endif
