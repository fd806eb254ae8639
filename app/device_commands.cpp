// The two things that the user can have done to the sampler.
#include "app/app_delegate.h"
#include "i18n/string_table.h"

namespace oxlade {

void AppDelegate::checkDevice() {
    if (currentTask_ != nullptr) return;
    setDeviceState(DeviceState::checking);
    controls_->progress.setDoubleValue(0.0);
    setOperation("op.checking", -1);
    // The geometry of an earlier check stays until the helper reports a new one.
    runLoaderWithArguments({"--info"}, HelperMode{infoMode});
}

void AppDelegate::installFirmware() {
    if (firmwarePath_.empty()) return;
    if (currentTask_ != nullptr) return;
    const bool confirmed = system_.dialogs.runAlert(
        {AlertStyle::critical,
         std::string{L("confirm.title")},
         std::string{L("confirm.text")},
         {std::string{L("confirm.ok")}, std::string{L("confirm.cancel")}}});
    if (!confirmed) return;
    controls_->progress.setDoubleValue(0.0);
    setOperation("op.flashing", 0);
    // The alert above is the only question: the helper is told not to ask its own.
    runLoaderWithArguments({"--firmware", firmwarePath_, "--yes"}, HelperMode{installMode});
}

} // namespace oxlade
