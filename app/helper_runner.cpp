// One run of the helper: start it, take its output, see its end.
#include "app/app_delegate.h"
#include "app/chunk_decoder.h"
#include "firmware/path_names.h"
#include "i18n/string_table.h"

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

} // namespace

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
    controls_->girlView.startWaiting();
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

} // namespace oxlade
