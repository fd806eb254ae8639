#include "platform/desktop_settings.h"

#include "platform/portal_settings.h"

#include <QSettings>
#include <QStandardPaths>

#include <utility>

namespace oxlade {

namespace {

const auto appearance = QLatin1String("org.freedesktop.appearance");
const auto reducedMotion = QLatin1String("reduced-motion");
const auto colorSchemeKey = QLatin1String("color-scheme");
const auto gnomeInterface = QLatin1String("org.gnome.desktop.interface");
const auto enableAnimations = QLatin1String("enable-animations");

// A value of another type than the key's is no value.
std::optional<unsigned> asNumber(const QVariant& value) {
    if (value.typeId() != QMetaType::UInt && value.typeId() != QMetaType::Int) return {};
    return value.toUInt();
}

std::optional<bool> asTruth(const QVariant& value) {
    if (value.typeId() != QMetaType::Bool) return {};
    return value.toBool();
}

bool kdeAnimatesNothing() {
    const auto file =
        QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QStringLiteral("kdeglobals"));
    if (file.isEmpty()) return false;
    const QSettings settings(file, QSettings::IniFormat);
    bool isNumber = false;
    const double factor =
        settings.value(QStringLiteral("KDE/AnimationDurationFactor")).toDouble(&isNumber);
    return isNumber && factor <= 0;
}

} // namespace

class DesktopSettings::Source final {
  public:
    Source() : portal_([this](const auto&... setting) { take(setting...); }) {
        portal_.ask(appearance, colorSchemeKey);
        portal_.ask(appearance, reducedMotion);
        portal_.ask(gnomeInterface, enableAnimations);
    }

    bool shouldReduceMotion() const {
        if (reducedMotion_) return *reducedMotion_ == 1;
        if (animations_) return !*animations_;
        return kdeAnimatesNothing();
    }

    std::optional<ColorScheme> colorScheme() const {
        if (scheme_ == 1u) return ColorScheme::dark;
        if (scheme_ == 2u) return ColorScheme::light;
        return std::nullopt;
    }

    std::function<void()> onChange;

  private:
    void take(const QString& group, const QString& key, const QVariant& value) {
        const auto before = known();
        if (group == appearance && key == reducedMotion) reducedMotion_ = asNumber(value);
        if (group == appearance && key == colorSchemeKey) scheme_ = asNumber(value);
        if (group == gnomeInterface && key == enableAnimations) animations_ = asTruth(value);
        // A copy: the handler may put another in its place.
        if (const auto handler = onChange; handler && known() != before) handler();
    }

    std::pair<bool, std::optional<ColorScheme>> known() const {
        return {shouldReduceMotion(), colorScheme()};
    }

    std::optional<unsigned> reducedMotion_;
    std::optional<bool> animations_;
    std::optional<unsigned> scheme_;
    PortalSettings portal_;
};

DesktopSettings::DesktopSettings() : source_(std::make_unique<Source>()) {}
DesktopSettings::~DesktopSettings() = default;

bool DesktopSettings::shouldReduceMotion() const { return source_->shouldReduceMotion(); }

std::optional<ColorScheme> DesktopSettings::colorScheme() const { return source_->colorScheme(); }

void DesktopSettings::setChangeHandler(std::function<void()> handler) {
    source_->onChange = std::move(handler);
}

} // namespace oxlade
