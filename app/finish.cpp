// The end of every run, whether the helper exited, could not be found or could
// not be started.
#include "app/app_delegate.h"
#include "app/completion.h"
#include "i18n/string_table.h"

namespace oxlade {

namespace {

Alert closingAlert(ClosingAlert kind) {
    const bool done = kind == ClosingAlert::done;
    return {done ? AlertStyle::informational : AlertStyle::warning,
            std::string{L(done ? "done.title" : "failed.title")},
            std::string{L(done ? "done.text" : "failed.text")},
            {}};
}

} // namespace

void AppDelegate::handleTaskFinished(std::int32_t status, const HelperMode& mode) {
    // First: `mode` may be the very state that is cleared next.
    const auto outcome = outcomeOf(mode, status);
    const bool hadProcess = currentTask_ != nullptr;
    setCurrentTask(nullptr);
    setCurrentMode({});
    controls_->girlView.stopWaiting();

    if (outcome.deviceState) setDeviceState(*outcome.deviceState);
    if (outcome.progress) controls_->progress.setDoubleValue(*outcome.progress);
    if (outcome.operationKey) setOperation(*outcome.operationKey, -1);
    if (hadProcess) appendLog(filled(L("log.exit"), std::to_string(status)) + '\n');
    updateButtons();
    if (outcome.alert != ClosingAlert::none) system_.dialogs.runAlert(closingAlert(outcome.alert));
}

} // namespace oxlade
