// The controller: the program's state and every rule that changes it.
//
// Main thread only. Other threads post to the main queue, with jobs that lock a weak_ptr
// to the controller.
//
// Setters only store; they accept any value. Whoever changes state calls refreshTexts
// (directly or through setOperation) and updateButtons.
#pragma once

#include "app/completion.h"
#include "app/output_parser.h"
#include "i18n/window_texts.h"
#include "interfaces/system.h"
#include "interfaces/types.h"
#include "interfaces/user_interface.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace oxlade {

class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
  public:
    /// `system` and `userInterface` must outlive the controller. `website` is an https
    /// address. Create it with std::make_shared.
    AppDelegate(System system, UserInterface& userInterface, std::string website);

    // Called by the application.
    /// Builds the window, selects the shipped image and shows the window. Call once.
    /// Before it, only installMainMenu, openWebsite, loaderPath, bundledFirmwarePath,
    /// validateFirmwareAtPath and the plain getters and setters may be called: all other
    /// functions use the window's controls.
    void applicationDidFinishLaunching();
    bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }
    /// Installs the menu bar in the current language.
    void installMainMenu();

    // Called by the controls.
    /// Runs the helper to check the device; ignored during a run.
    void checkDevice();
    /// Asks for confirmation, then flashes firmwarePath; ignored during a run and without
    /// an image. Does not test whether the device is ready: its button is disabled then.
    void installFirmware();
    /// Selects the shipped image; ignored if the bundle has none.
    void useBundledFirmware();
    /// Lets the user choose an image; cancelling changes nothing.
    void chooseFirmware();
    /// Sets CurrentLanguage to the language control's selection, stores it, and replaces
    /// the menu bar and all texts. Lines that are in the log keep their language.
    void languageChanged();
    void openWebsite();

    /// Stores both, then refreshes all texts. An unknown key is its own text. A negative
    /// percentage is not shown; there is no upper limit.
    void setOperation(std::string_view key, std::int32_t percent);
    /// Enables and disables the four action buttons according to the state.
    void updateButtons();
    /// Sets every text and status colour of the window according to the state. Makes one
    /// query to the file system.
    void refreshTexts();
    /// Appends `text` to the log as it is and scrolls to the end; ignores empty text.
    void appendLog(std::string_view text);

    /// The path of the helper to run. Asks the file system at each call.
    std::string loaderPath() const;
    /// The path of the shipped image, empty if the bundle has none. Asks the file system
    /// at each call.
    std::string bundledFirmwarePath() const;
    /// Whether the file may be flashed. If not, sets `*reason` to a sentence in the
    /// current language; `reason` may be null.
    bool validateFirmwareAtPath(const std::string& path, std::string* reason) const;
    /// Validates the file and stores `path` as it is; shows an alert and changes nothing
    /// if the file is refused. Nothing else sets firmwarePath.
    void selectFirmwareAtPath(const std::string& path);

    /// Starts a helper run; ignored during a run. Each run ends in handleTaskFinished,
    /// which is called at once if the helper cannot be launched.
    void runLoaderWithArguments(std::vector<std::string> arguments, const HelperMode& mode);
    /// Takes a decoded chunk of the helper's output, or whole lines of a long one.
    void handleTaskOutput(std::string_view text);
    /// Applies the reports in one chunk, whose carriage returns are line feeds already.
    void parseProgressFromText(std::string_view text);
    /// Ends the current run. Status 0 is success; -1 means that the helper could not be
    /// launched. `mode` may be a reference to currentMode().
    void handleTaskFinished(std::int32_t status, const HelperMode& mode);

    // The state. An empty string means that there is none.
    const std::string& firmwarePath() const { return firmwarePath_; }
    void setFirmwarePath(std::string path) { firmwarePath_ = std::move(path); }
    DeviceState deviceState() const { return deviceState_; }
    void setDeviceState(DeviceState state) { deviceState_ = state; }
    const std::string& deviceGeometry() const { return deviceGeometry_; }
    void setDeviceGeometry(std::string line) { deviceGeometry_ = std::move(line); }
    const std::string& operationKey() const { return operationKey_; }
    void setOperationKey(std::string key) { operationKey_ = std::move(key); }
    std::int32_t operationPercent() const { return operationPercent_; }
    void setOperationPercent(std::int32_t percent) { operationPercent_ = percent; }
    const std::shared_ptr<HelperProcess>& currentTask() const { return currentTask_; }
    void setCurrentTask(std::shared_ptr<HelperProcess> task) { currentTask_ = std::move(task); }
    const HelperMode& currentMode() const { return currentMode_; }
    void setCurrentMode(HelperMode mode) { currentMode_ = std::move(mode); }
    /// The output of the current or last run, in the order it came, before its
    /// carriage returns are replaced: whole chunks, or whole lines of long ones.
    const std::vector<std::string>& taskOutput() const { return taskOutput_; }
    void setTaskOutput(std::vector<std::string> chunks) { taskOutput_ = std::move(chunks); }

  private:
    void setProgress(double percent);
    void apply(const EraseReport& report);
    void apply(const WriteReport& report);
    void apply(const GeometryReport& report);
    void apply(const UploadComplete& report);
    void installCallbacks(const std::shared_ptr<HelperProcess>& task);
    void show(const WindowTexts& texts);
    WindowActions windowActions();

    System system_;
    UserInterface& userInterface_;
    std::string website_;
    std::optional<Controls> controls_; ///< set once the window is built

    std::string firmwarePath_;
    DeviceState deviceState_ = DeviceState::unknown;
    std::string deviceGeometry_;
    std::string operationKey_;
    std::int32_t operationPercent_ = 0;
    std::shared_ptr<HelperProcess> currentTask_; ///< non-null exactly during a run
    HelperMode currentMode_;
    std::vector<std::string> taskOutput_;
};

} // namespace oxlade
