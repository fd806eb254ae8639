// The runs of the helper: the two commands that start one, its output, its end.
#include "app/app_delegate.h"
#include "app/chunk_decoder.h"
#include "app/completion.h"
#include "firmware/bundle_paths.h"
#include "i18n/string_table.h"
#include "interfaces/path_names.h"

#include <algorithm>

namespace oxlade {

namespace {

std::string echoLine(const std::string& helperPath, const std::vector<std::string>& arguments) {
    std::string line{"$ "};
    line += lastPathComponent(helperPath);
    line += ' ';
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (i > 0) line += ' ';
        line += arguments[i];
    }
    return line + '\n';
}

double halfOfBar(std::uint32_t n) { return std::min(static_cast<double>(n) * 0.5, 50.0); }

std::int32_t percentage(std::uint32_t n) {
    return static_cast<std::int32_t>(std::min(n, std::uint32_t{100}));
}

Alert closingAlert(ClosingAlert kind) {
    const bool done = kind == ClosingAlert::done;
    return {done ? AlertStyle::informational : AlertStyle::warning,
            std::string{L(done ? "done.title" : "failed.title")},
            std::string{L(done ? "done.text" : "failed.text")},
            {}};
}

} // namespace

void AppDelegate::checkDevice() {
    if (currentTask_ != nullptr) return;
    setDeviceState(DeviceState::checking);
    controls_->progress->setDoubleValue(0.0);
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
    controls_->progress->setDoubleValue(0.0);
    setOperation("op.flashing", 0);
    // The alert above is the only question: the helper is told not to ask its own.
    runLoaderWithArguments({"--firmware", firmwarePath_, "--yes"}, HelperMode{installMode});
}

std::string AppDelegate::loaderPath() const {
    return oxlade::loaderPath(system_.bundle, system_.fileSystem);
}

void AppDelegate::runLoaderWithArguments(std::vector<std::string> arguments,
                                         const HelperMode& mode) {
    if (currentTask_ != nullptr) return;
    const auto helperPath = loaderPath();
    if (!system_.fileSystem.isExecutableFile(helperPath)) {
        appendLog(filled(L("log.helperMissing"), helperPath) + '\n');
        handleTaskFinished(-1, mode);
        return;
    }
    setCurrentMode(mode);
    setTaskOutput({});
    appendLog(echoLine(helperPath, arguments));
    const auto task = system_.helperProcesses.make(helperPath, std::move(arguments));
    setCurrentTask(task);
    updateButtons();
    installCallbacks(task);
    if (const auto error = task->launch()) {
        task->setReadabilityHandler({});
        appendLog(filled(L("log.helperFailed"), *error) + '\n');
        handleTaskFinished(-1, mode);
        return;
    }
    controls_->girlView->startWaiting();
}

// The callbacks run off the main thread: they touch nothing of the controller and
// do not keep it alive; what they post looks for it again.
void AppDelegate::installCallbacks(const std::shared_ptr<HelperProcess>& task) {
    const std::weak_ptr<AppDelegate> weakSelf = weak_from_this();
    // The task owns its callbacks and must not own itself through them.
    const std::weak_ptr<HelperProcess> weakTask = task;
    const auto queue = system_.mainQueue;
    task->setReadabilityHandler([weakSelf, queue](std::string_view bytes) {
        if (bytes.empty()) return; // the end of the stream says nothing about the run
        queue->post([weakSelf, text = decodeChunk(bytes)] {
            if (const auto self = weakSelf.lock()) self->handleTaskOutput(text);
        });
    });
    task->setTerminationHandler([weakSelf, weakTask, queue] {
        const auto ended = weakTask.lock();
        if (ended == nullptr) return;
        ended->setReadabilityHandler({});
        queue->post([weakSelf, ended] {
            const auto self = weakSelf.lock();
            if (self == nullptr) return;
            const auto mode = self->currentMode();
            self->handleTaskFinished(ended->terminationStatus(), mode);
        });
    });
}

void AppDelegate::handleTaskOutput(const std::string& text) {
    if (text.empty()) return;
    taskOutput_.append(text);
    std::string lines = text;
    std::replace(lines.begin(), lines.end(), '\r', '\n');
    appendLog(lines);
    parseProgressFromText(lines);
}

void AppDelegate::parseProgressFromText(std::string_view text) {
    forEachReport(text, [this](const Report& report) {
        std::visit([this](const auto& each) { apply(each); }, report);
    });
}

void AppDelegate::apply(const EraseReport& report) {
    controls_->progress->setDoubleValue(halfOfBar(report.n));
    setOperation("op.erase", percentage(report.n));
}

void AppDelegate::apply(const WriteReport& report) {
    controls_->progress->setDoubleValue(50.0 + halfOfBar(report.n));
    setOperation("op.write", percentage(report.n));
}

void AppDelegate::apply(const GeometryReport& report) {
    // Shown by the refresh at the end of the check, if it succeeds.
    setDeviceGeometry(std::string{report.line});
}

void AppDelegate::apply(const UploadComplete&) {
    controls_->progress->setDoubleValue(100.0);
    setOperation("op.done", -1);
}

void AppDelegate::handleTaskFinished(std::int32_t status, const HelperMode& mode) {
    // First: `mode` may be the very state that is cleared next.
    const auto outcome = outcomeOf(mode, status);
    const bool hadProcess = currentTask_ != nullptr;
    setCurrentTask(nullptr);
    setCurrentMode({});
    controls_->girlView->stopWaiting();

    if (outcome.deviceState) setDeviceState(*outcome.deviceState);
    if (outcome.progress) controls_->progress->setDoubleValue(*outcome.progress);
    if (outcome.operationKey) setOperation(*outcome.operationKey, -1);
    if (hadProcess) appendLog(filled(L("log.exit"), std::to_string(status)) + '\n');
    updateButtons();
    if (outcome.alert != ClosingAlert::none) system_.dialogs.runAlert(closingAlert(outcome.alert));
}

} // namespace oxlade
