// One run of the helper, in the order of its steps: command, launch, output, exit.
#include "app/app_delegate.h"
#include "app/chunk_decoder.h"
#include "app/completion.h"
#include "firmware/firmware.h"
#include "i18n/string_table.h"
#include "interfaces/path_names.h"

#include <algorithm>
#include <utility>

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

// How many bytes of a chunk one job handles: some hundred progress lines, about two
// milliseconds. A chunk is cut at line ends only, so that each line is parsed whole.
constexpr std::size_t jobSize = 4096;

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
    // deviceGeometry keeps the line of the last check until the helper prints another.
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
    // "--yes": the helper must not ask for confirmation as well.
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
    system_.desktopSession.beginRun(L(operationKey_));
    controls_->girlView->startWaiting();
}

// The callbacks run on another thread: they use nothing of the controller. The jobs that
// they post lock a weak_ptr to it.
void AppDelegate::installCallbacks(const std::shared_ptr<HelperProcess>& task) {
    const std::weak_ptr<AppDelegate> weakSelf = weak_from_this();
    // A weak_ptr: the task owns its callbacks.
    const std::weak_ptr<HelperProcess> weakTask = task;
    const auto queue = system_.mainQueue;
    task->setReadabilityHandler([weakSelf, queue](const SharedBytes& bytes) {
        const auto chunk = decodeChunk(bytes);
        for (auto rest = chunk.view; !rest.empty();) // empty at the end of the stream
            queue->post([weakSelf, owner = chunk.owner, text = takeLines(rest, jobSize)] {
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

void AppDelegate::handleTaskOutput(std::string_view text) {
    if (text.empty()) return;
    taskOutput_.emplace_back(text);
    std::string lines{text};
    std::replace(lines.begin(), lines.end(), '\r', '\n');
    appendLog(lines);
    parseProgressFromText(lines);
}

void AppDelegate::parseProgressFromText(std::string_view text) {
    forEachReport(text, [this](const Report& report) {
        std::visit([this](const auto& each) { apply(each); }, report);
    });
}

void AppDelegate::setProgress(double percent) {
    controls_->progress->setDoubleValue(percent);
    system_.desktopSession.showProgress(percent);
}

void AppDelegate::apply(const EraseReport& report) {
    setProgress(halfOfBar(report.n));
    setOperation("op.erase", percentage(report.n));
}

void AppDelegate::apply(const WriteReport& report) {
    setProgress(50.0 + halfOfBar(report.n));
    setOperation("op.write", percentage(report.n));
}

void AppDelegate::apply(const GeometryReport& report) {
    // No refresh: it is shown once the check has succeeded.
    setDeviceGeometry(std::string{report.line});
}

void AppDelegate::apply(const UploadComplete&) {
    setProgress(100.0);
    setOperation("op.done", -1);
}

void AppDelegate::handleTaskFinished(std::int32_t status, const HelperMode& mode) {
    // Before currentMode is cleared: `mode` may refer to it.
    const auto outcome = outcomeOf(mode, status);
    const bool hadProcess = currentTask_ != nullptr;
    setCurrentTask(nullptr);
    setCurrentMode({});
    controls_->girlView->stopWaiting();
    system_.desktopSession.endRun();

    if (outcome.deviceState) setDeviceState(*outcome.deviceState);
    if (outcome.progress) controls_->progress->setDoubleValue(*outcome.progress);
    if (outcome.operationKey) setOperation(*outcome.operationKey, -1);
    if (hadProcess) appendLog(filled(L("log.exit"), std::to_string(status)) + '\n');
    updateButtons();
    if (outcome.alert != ClosingAlert::none) system_.dialogs.runAlert(closingAlert(outcome.alert));
}

} // namespace oxlade
