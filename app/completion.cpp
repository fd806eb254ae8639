#include "app/completion.h"

namespace oxlade {

Outcome outcomeOf(std::string_view mode, std::int32_t status) {
    const bool succeeded = status == 0;
    if (mode == infoMode) {
        if (succeeded) return {DeviceState::ready, {}, "op.deviceReady", ClosingAlert::none};
        return {DeviceState::failed, {}, "op.checkFailed", ClosingAlert::none};
    }
    if (mode == installMode) {
        if (succeeded) return {{}, 100.0, "op.done", ClosingAlert::done};
        return {{}, {}, "op.error", ClosingAlert::failed};
    }
    return {};
}

} // namespace oxlade
